// session/controller_grids.cpp — the window's procedures over the preview
// and the mapping panels: ActuGrillas, ActuGridConc, ActuGridTliq,
// ActuGridLiquida, cbAgrQuit, btBorraTodosVinc, btCargaAutomat. The work is
// done by preview::StagedPreview and mapping::MappingPanel; here the session
// hands them its connections, month range, ConcCrear and message boxes.
#include "session/main_controller.h"

namespace session {
namespace {

// The mapping panels' messages as the session's message boxes.
class PanelMessages final : public mapping::MappingMessages {
 public:
  explicit PanelMessages(UserInterface& ui) : ui_(ui) {}
  void warning(const std::string& text) override { ui_.warning(text); }
  bool ask_yes_no(const std::string& text) override { return ui_.ask_yes_no(text, QuestionIcon::kWarning); }
  void information(const std::string& text) override { ui_.information(text); }

 private:
  UserInterface& ui_;
};

}  // namespace

std::optional<mapping::Databases> MainWindowController::mapping_databases() {
  if (!staging || !staging->is_open() || !destination || !destination->is_open()) return std::nullopt;
  return mapping::Databases{*staging, *destination};
}

void MainWindowController::ActuGrillas() {
  preview::PreviewInputs in;
  in.staging = staging.get();
  in.destination = destination.get();
  // The months go as "yyyy-MM-01", a text Jet's CDate reads in any locale.
  in.desde = state.period.desde.IsoFirstDay();
  in.hasta = state.period.hasta.IsoFirstDay();
  in.txtRuta = view.txtRuta;
  in.conc_crear = &state.ConcCrear;
  // Between groups the bar moves on while a load shows it; otherwise the
  // window only repaints.
  in.advance = [this] {
    if (view.Barra.visible()) {
      AF_GenImp();
    } else {
      ui_.repaint();
    }
  };
  preview_.ActuGrillas(in, mapping_);
}

void MainWindowController::ActuGridConc(int Col) {
  if (auto dbs = mapping_databases()) mapping_.refresh_concepts(*dbs, Col, state.ConcCrear);
}

void MainWindowController::ActuGridTliq() {
  if (auto dbs = mapping_databases()) mapping_.refresh_types(*dbs);
}

void MainWindowController::ActuGridLiquida(int Col) {
  if (staging && staging->is_open()) preview_.browser.refresh(*staging, Col);
}

void MainWindowController::GridLiq_RowColChange(int row) {
  if (staging && staging->is_open()) preview_.browser.set_current_row(*staging, row);
}

void MainWindowController::cbAgrQuit_Click(int index) {
  auto dbs = mapping_databases();
  if (!dbs) return;
  PanelMessages messages(ui_);
  switch (index) {
    case 0:
      mapping_.add_concept_relation(*dbs, messages, state.ConcCrear);
      break;
    case 1:
      mapping_.remove_concept_relation(*dbs, messages, state.ConcCrear);
      break;
    case 2:
      mapping_.add_type_relation(*dbs, messages);
      break;
    case 3:
      mapping_.remove_type_relation(*dbs, messages);
      break;
    default:
      break;
  }
}

void MainWindowController::btBorraTodosVinc_Click() {
  auto dbs = mapping_databases();
  if (!dbs) return;
  PanelMessages messages(ui_);
  mapping_.delete_automatic_links(*dbs, messages, state.relations, state.ConcCrear);
}

void MainWindowController::btCargaAutomat_Click() {
  PanelMessages messages(ui_);
  mapping_.request_automatic_links(messages, state.ConcCrear);
}

}  // namespace session
