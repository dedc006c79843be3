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
  load.set_aside_bad_rows = ApartarRechazados;
  if (!staging_folder_.empty()) load.rejects_folder = staging_folder_ / "rechazados";
  last_load_warnings.clear();
  last_load_notes.clear();
  last_load_stats = {};
  last_load_failed = true;  // until the load says otherwise (it may throw)
  staging::CargarDatos(load);
  last_load_warnings = std::move(load.warnings);
  last_load_notes = std::move(load.notes);
  last_load_stats = load.stats;
  if (!staging || !staging->is_open()) return;

  tell_unmatched_source_files(last_load_warnings, last_load_notes);
  // Staged nothing: the transfer would carry the previous content, or none.
  last_load_failed = !last_load_stats.emptied || last_load_stats.statements_run == 0;
  if (last_load_stats.emptied && last_load_stats.statements_run == 0)
    last_load_warnings.push_back("No se cargó ningún dato desde " + view.txtRuta + ": no se importa nada");
  if (!last_load_warnings.empty())
    ui_.warning_list("La carga de la base auxiliar dejó afuera lo siguiente:", last_load_warnings);
}

}  // namespace session
