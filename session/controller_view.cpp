// session/controller_view.cpp — what the user types and ticks on the main
// window: the source path box, the option boxes, the month range, the
// concept combo and the BPS relation editor. Each procedure changes the view,
// the session state or a model; the window redraws from them afterwards.

#include "mapping/bps_relations.h"
#include "session/main_controller.h"

namespace session {

void MainWindowController::txtRuta_Change(const std::string& text) { view.txtRuta = text; }

void MainWindowController::ChkOP_Click(int index, bool checked) {
  if (index < 0 || index >= static_cast<int>(state.ChkOP.size())) return;
  state.ChkOP[static_cast<std::size_t>(index)] = checked;
}

void MainWindowController::chkConFech_Click(int index, bool checked) {
  if (index == 0) state.period.desde_checked = checked;
  if (index == 1) state.period.hasta_checked = checked;
  CargarMes(state.period);
}

void MainWindowController::cbMesAnt_Click(int index) { cbMesAnt(state.period, index); }

void MainWindowController::cbMesSig_Click(int index) { cbMesSig(state.period, index); }

void MainWindowController::chkImpSoloConUtil_Click(bool checked) { preview_.chkImpSoloConUtil = checked; }

void MainWindowController::cmbImportar_Click(int index) { mapping_.cmbImportar = index < 0 ? 0 : index; }

void MainWindowController::cmbCodBPS_Click(int index) { view.cmbCodBPS_index = index; }

void MainWindowController::txtCodKEL_Change(const std::string& text) { view.txtCodKEL = text; }

void MainWindowController::lstRelaciones_Click(int index) {
  const int count = static_cast<int>(state.lstRelaciones.entries.size());
  state.lstRelaciones.selected = index >= 0 && index < count ? index : -1;
}

void MainWindowController::cmbMasMenos_Click(int index) {
  if (index == 0) {
    const int row = view.cmbCodBPS_index;
    // The window's combo only offers its items; a row outside them is a
    // code typed by hand, which names no relation: nothing changes.
    if (row < 0 || row >= static_cast<int>(view.cmbCodBPS.size())) return;
    mapping::AddRelation(state.relations, state.lstRelaciones, view.cmbCodBPS[static_cast<std::size_t>(row)], row,
                         view.txtCodKEL);
  } else if (index == 1) {
    const std::string problem = mapping::RemoveRelation(state.relations, state.lstRelaciones);
    if (!problem.empty()) ui_.warning(problem);
  }
}

}  // namespace session
