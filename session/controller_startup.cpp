// session/controller_startup.cpp — the main window's start-up, format choice
// and end: Form_Load with its command line, Form_Activate, Form_Unload,
// cmbFormato_Click, TipoImp_Click, cbConfig_Click, cbSalir_Click.
#include <string>
#include <vector>

#include "base/number.h"
#include "mapping/bps_relations.h"
#include "session/format_selection.h"
#include "session/main_controller.h"
#include "settings/strings.h"

namespace session {

MainWindowController::MainWindowController(std::filesystem::path program_folder, UserInterface& ui,
                                           transfer::StepRunner& transfer, preview::StagedPreview& preview,
                                           mapping::MappingPanel& mapping)
    : program_folder_(std::move(program_folder)), ui_(ui), transfer_(transfer), preview_(preview), mapping_(mapping) {
  state.program_folder = program_folder_;
  view.Barra.yield = [this] { ui_.repaint(); };
}

MainWindowController::~MainWindowController() {
  // The preview outlives the controller; its open cursor must not outlive the
  // staging connection.
  preview_.browser.release();
  // The connections go before the busy handlers they point to.
  source.reset();
  staging.reset();
  destination.reset();
}

void MainWindowController::show_pending_warnings() {
  std::vector<std::string> pending;
  pending.swap(state.warnings);
  for (const std::string& w : pending) ui_.warning(w);
}

void MainWindowController::Form_Load(const std::string& command_line) {
  state.period = DefaultPeriod(Month::Current());

  LoadFormatList(state);
  show_pending_warnings();

  view.cmbCodBPS.assign(mapping::CodBpsItems().begin(), mapping::CodBpsItems().end());

  std::string line = settings::Trim(command_line);
  std::erase(line, '"');
  line = settings::Trim(line);
  if (line.empty()) {
    SelEmpresaAImp("");
  } else if (line.find('*') != std::string::npos) {
    std::vector<std::string> fields = settings::SplitChar(line, '*');
    SelEmpresaAImp(fields[0]);
    if (fields.size() > 1) {
      view.txtRuta = fields[1];
      auto_refresh = true;
    }
    if (fields.size() > 2) select_command_line_format(fields[2]);
  } else {
    std::error_code ec;
    if (std::filesystem::exists(line, ec))
      SelEmpresaAImp(line);
    else
      ui_.warning("Ruta de Base de Datos Inexistente");
  }

  if (state.cmbFormato_index < 0 && !state.cmbFormato.empty()) cmbFormato_Click(0);
  view.LblEmpresa = PathDeEmp;
  CargarMes(state.period);
}

// The format index of the command line counts from 0. An index that names no
// format (past the end of the list, or negative) is a mistake in a shortcut or
// script, not a reason to stop: the first format is used and the user is told
// so, since staging with another format than intended shows only as missing
// data otherwise.
void MainWindowController::select_command_line_format(const std::string& field) {
  const int index = base::ValInt32(field);
  const int count = static_cast<int>(state.cmbFormato.size());
  if (index >= 0 && index < count) {
    cmbFormato_Click(index);
    return;
  }
  std::string text = "El formato número " + std::to_string(index) + " no existe";
  ui_.warning(count > 0 ? text + "; se usa el primero" : text + "; no hay formatos en ConfIMP.ini");
  if (count > 0) cmbFormato_Click(0);
}

void MainWindowController::Form_Activate() {
  ui_.repaint();
  // The command line's source is staged once, at the first activation; later
  // activations (the window regaining focus) must not load it again.
  if (!auto_refresh) return;
  auto_refresh = false;
  if (!settings::Trim(view.txtRuta).empty()) cbActualizar_Click(0);
}

void MainWindowController::Form_Unload() {
  SaveFormatKeys(state);
  show_pending_warnings();
}

void MainWindowController::cmbFormato_Click(int index) {
  state.cmbFormato_index = index;
  session::cmbFormato_Click(state);
  show_pending_warnings();
}

void MainWindowController::TipoImp_Click(int index) {
  ui_.repaint();
  session::TipoImp_Click(state, index);
}

void MainWindowController::cbConfig_Click() { view.AreConf_visible = !view.AreConf_visible; }

void MainWindowController::cbSalir_Click() {
  if (source && source->is_open()) source->close();
  source.reset();
  Form_Unload();
  ended_ = true;
}

}  // namespace session
