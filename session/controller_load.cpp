// session/controller_load.cpp — CargarDatos: hands the session's state to the
// staging loader, which empties the staging database and fills it again from
// the matched source entries.
#include "session/main_controller.h"
#include "staging/staging_load.h"

namespace session {

void MainWindowController::CargarDatos() {
  // The load empties the tables the browser's open cursor reads.
  preview_.browser.release();
  staging::StagingLoad load;
  load.staging = staging.get();
  load.program_folder = program_folder_;
  load.TablaNoBorrar = state.TablaNoBorrar;
  load.catalogue = &state.ColArchTablas;
  load.ChkOP = state.ChkOP;
  load.total_lines = total_lines;
  load.values.destination = PathDeEmp;
  load.values.relation_ids = state.relations.KelIds();
  load.values.conc_crear = state.ConcCrear;
  load.values.desde = state.period.desde_bound();
  load.values.hasta = state.period.hasta_bound();
  load.ActuBarra = [this](float argument) { ActuBarra(argument); };
  load.hide_lblDatosCP = [this] { preview_.lblDatosCP_visible = false; };
  load.ActuGrillas = [this] { ActuGrillas(); };
  load.CargarMes = [this] { CargarMes(state.period); };
  last_load_warnings.clear();
  last_load_stats = {};
  staging::CargarDatos(load);
  last_load_warnings = std::move(load.warnings);
  last_load_stats = load.stats;
}

}  // namespace session
