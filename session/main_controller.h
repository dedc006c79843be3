// session/main_controller.h — the main window's logic, without a display.
//
// MainWindowController is the import session: it owns the session state, the
// three connections (destination, staging, source), the progress bar and the
// window's boxes and labels, and runs the window's event procedures under
// their usual names (Form_Load, cbActualizar_Click, cbImportar_Click ...).
// Everything it tells or asks the user goes through a UserInterface, so the
// same controller serves the window, batch runs and tests.
//
// The five transfer steps (transfer::StepRunner), the preview of the staged
// data and the mapping panels (preview::StagedPreview, mapping::MappingPanel)
// are required collaborators, given at construction: a controller without a
// transfer or without its grids cannot be built. The controller fills the
// grid models; the window draws them. The ODBC picker lists the machine's
// data sources through db::odbc_data_sources and asks the UserInterface.
//
// The procedures live in several files by concern: controller_startup.cpp
// (start-up, format choice, window end), controller_source.cpp (source choice
// and staging preparation), controller_load.cpp (the staging load's inputs),
// controller_valido.cpp (the company check), controller_grids.cpp (the
// preview and mapping grids), controller_import.cpp (the import run),
// controller_view.cpp (what the user types and ticks) and
// controller_errors.cpp with error_report.{h,cpp} (what an error that stops a
// run leaves behind).
//
// The window's binding: each event calls one procedure here, then the window
// redraws from `view` (window_view.h), `state` and the models. While a
// staging load or an import runs, view.running is true and the progress bar's
// yield lets the window repaint.
//
// Ending the program: cbSalir_Click (which runs Form_Unload itself) and an
// error report (SessionAborted, thrown after the report was written) both
// make ended() true; the window closes, batch mode exits.
#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "db/connection.h"
#include "mapping/mapping_panel.h"
#include "preview/staged_preview.h"
#include "session/busy_notice.h"
#include "db/source_reader.h"
#include "session/error_report.h"
#include "session/progress.h"
#include "session/run_lock.h"
#include "session/session_state.h"
#include "session/user_interface.h"
#include "session/window_view.h"
#include "staging/staging_load.h"
#include "transfer/importer.h"

namespace session {

// One transfer step of an import run and what it did.
struct StepRun {
  int group = 0;                 // 0..4, the ChkOP box
  transfer::StepReport report;   // its statements and table counts
  double seconds = 0;            // how long it took
};

// What cbImportar_Click did.
struct ImportResult {
  bool confirmed = false;        // the company check passed (every answer Yes)
  bool finished = false;         // every ticked step ran to its end and the closing box was shown
  std::vector<StepRun> steps;    // the steps run, in the order they ran
  std::filesystem::path safety_copy;  // the copy of the KEL file taken before the first step ("" when none)
  bool restored = false;         // an error stopped the run and the copy was put back
};

class MainWindowController {
 public:
  // `program_folder` is the folder beside the program where ConfIMP.ini, the
  // format and statement files and Generica/Pasaje.mdb live; `ui` must outlive
  // the controller. `transfer` runs the step of each ticked group (the
  // program gives a transfer::Importer); the preview and the mapping panels
  // are filled by the controller and drawn by the window. All three must
  // outlive the controller.
  MainWindowController(std::filesystem::path program_folder, UserInterface& ui, transfer::StepRunner& transfer,
                       preview::StagedPreview& preview, mapping::MappingPanel& mapping);
  ~MainWindowController();
  MainWindowController(const MainWindowController&) = delete;
  MainWindowController& operator=(const MainWindowController&) = delete;

  // ---- State of the window -------------------------------------------------
  SessionState state;                          // formats, catalogue, ChkOP, months ...
  std::unique_ptr<db::Connection> destination; // the KEL company database
  std::unique_ptr<db::Connection> staging;     // <program folder>/<company folder>/Pasaje.mdb
  std::unique_ptr<db::Connection> source;      // an ODBC data source, when one was chosen
  WindowView view;                             // the boxes, labels and bar the window shows
  std::string PathDeEmp;                       // the destination database file
  bool auto_refresh = false;                   // the command line named the source
  long long total_lines = 0;                   // lines of the matched files (sizes the load's steps)
  // When an error stops a run that made a safety copy: true puts the copy
  // back, false keeps the file as the error left it (and says how to restore
  // it); unset asks the user (the window). Batch mode sets it.
  std::optional<bool> restore_on_error;

  // ---- Start-up and end (controller_startup.cpp) ---------------------------
  // Form_Load: default months, the format list, cmbCodBPS, the command line
  // ("destination", or "destination*source*format index"; trimmed, double
  // quotes removed), the first format when none was chosen, LblEmpresa, the
  // months. A format index past the list selects the first format and warns.
  void Form_Load(const std::string& command_line);
  // Form_Activate: repaints; the first time after a command line that named a
  // source, stages it (cbActualizar_Click(0)).
  void Form_Activate();
  // Form_Unload: stores Relaciones and ConcCrear in the current format's file.
  void Form_Unload();
  // cmbFormato_Click for the format at `index` (-1: none selected).
  void cmbFormato_Click(int index);
  // TipoImp_Click: the source kind button `index` (0 database, 1 folder).
  void TipoImp_Click(int index);
  // cbConfig_Click: shows or hides the configuration panel.
  void cbConfig_Click();
  // cbSalir_Click: closes the source connection, unloads the window and ends
  // the program (ended() becomes true).
  void cbSalir_Click();
  // True once the program was ended (cbSalir, or an error report).
  bool ended() const { return ended_; }

  // ---- Source and staging (controller_source.cpp) --------------------------
  // cbBuscar_Click: index 1 picks the destination database; index 0 picks the
  // source (folder browser or ODBC picker) and stages it when one was chosen.
  void cbBuscar_Click(int index);
  // SelEmpresaAImp: opens the destination at `path` (asks for one when the
  // path is empty or missing) and prepares its staging database. The path is
  // made absolute and normal first; a file that is not a usable KEL company,
  // a company another run holds, or one in a folder named Generica is told
  // and neither the company nor a staging database is opened.
  void SelEmpresaAImp(const std::string& path);
  // PrepararBDAux: makes <program folder>/<name>/Pasaje.mdb from the template
  // when missing or empty (an existing one is kept) and opens the staging connection on
  // it; true when open. Only the part of `name` after its last "\" or "/" is
  // used. Warns "Falta Base Genérica ..." and returns false without template;
  // returns false when another run holds the staging database, or when it was
  // prepared for another company and the user does not want to reuse it.
  bool PrepararBDAux(const std::string& name);
  // cbActualizar_Click: index 0 matches the source folder and runs the staging
  // load; any other index reopens the destination connection. An error that
  // escapes the load is reported (see error_report.h) and ends the program.
  void cbActualizar_Click(int index);
  // BuscarArchivos: matches the files of `folder` to the catalogue (ticked
  // groups only), one progress point per entry; ChkOP keeps ticked only the
  // groups whose sources were found; total_lines sizes the staging load.
  void BuscarArchivos(const std::string& folder);
  // The ODBC side of BuscarArchivos: opens the source connection on txtRuta
  // (a data source name or a connection text) when it is not open, matches
  // the data source's table names to the catalogue, and returns the reader
  // that serves `in '<connection text>'` to the staging load; nullptr, after
  // a warning, when the source cannot be opened or no table matches (nothing
  // changed then).
  std::shared_ptr<db::SourceReader> BuscarTablasODBC();
  // CargarDatos: the staging load over the session's state (staging/
  // staging_load.h). Errors before its first statement propagate.
  void CargarDatos();
  // What the last staging load ignored (Spanish) and counted; the window keeps
  // them for whoever wants to look (batch mode prints a summary).
  std::vector<std::string> last_load_warnings;
  std::vector<std::string> last_load_notes;  // what lost nothing (columns left out or unused)
  staging::StagingLoadStats last_load_stats;
  // Rows a staging table's key refuses are set aside in <staging
  // folder>/rechazados/<table>.csv instead of refusing the whole table.
  bool ApartarRechazados = false;
  // The last staging load of this session staged nothing (or its source
  // folder was missing): an import must not go on to the transfer.
  bool last_load_failed = false;
  // The session cannot import at all: another run holds the company or its
  // staging database, or the staging database could not be used. Told to the
  // user when it arose.
  bool run_blocked = false;
  // The folder of the staging database ("" before PrepararBDAux chose one).
  const std::filesystem::path& staging_folder() const { return staging_folder_; }

  // ---- Company check and import run ----------------------------------------
  // Valido(mostrar): with `mostrar` false, true at once. Otherwise compares
  // the destination's company with the source's (name, then legal name when
  // the names agree), asks about a difference and asks for the final
  // confirmation; true only when every answer was Yes.
  bool Valido(bool mostrar);
  // cbImportar_Click: Valido(true), then the ticked transfer steps in the
  // order 0..4 (each after Valido(false)), the mapping grids and
  // "Importación Satisfactoria!!". The steps run on the destination
  // connection and read the staging database by its path (quotes doubled);
  // their questions are Yes/No boxes with the question icon and their
  // progress goes to ActuBarra; the liquidations receive the ticked month
  // bounds ("yyyy-MM-01", "" when unticked). Returns what ran. An error in a
  // step is reported and ends the program (throws SessionAborted).
  ImportResult cbImportar_Click();
  // The report of the last run that passed the company check
  // (import_report.h), and the file it was written to ("" when it could not
  // be written).
  std::vector<std::string> last_import_report;
  std::filesystem::path last_import_report_file;

  // ---- Preview and mapping grids (controller_grids.cpp) -------------------
  preview::StagedPreview& preview() { return preview_; }
  mapping::MappingPanel& mapping() { return mapping_; }
  // ActuGrillas: refreshes the preview, the lookups and both mapping grids
  // from the staging database (nothing when it is not open).
  void ActuGrillas();
  // ActuGridConc(Col): the concept grid, sorted by column `Col` (-1 keeps
  // the sort); rebuilds ConcCrear. Nothing without both databases open.
  void ActuGridConc(int Col = -1);
  // ActuGridTliq: the liquidation-type grid.
  void ActuGridTliq();
  // ActuGridLiquida(Col): the liquidation headers, sorted by column `Col`.
  void ActuGridLiquida(int Col = -1);
  // The current row of GridLiq became `row`: GridDatosLiq shows its lines.
  void GridLiq_RowColChange(int row);
  // cbAgrQuit_Click(index): 0/1 add/remove a concept relation, 2/3 a type one.
  void cbAgrQuit_Click(int index);
  // btBorraTodosVinc_Click: deletes the automatic concept links (after a Yes).
  void btBorraTodosVinc_Click();
  // btCargaAutomat_Click: empties ConcCrear; the staging load reloads the links.
  void btCargaAutomat_Click();

  // ---- What the user types and ticks (controller_view.cpp) ----------------
  // Each changes the view, the session state or a model; the window redraws
  // from them afterwards.
  // txtRuta_Change: the source path box now holds `text`.
  void txtRuta_Change(const std::string& text);
  // ChkOP_Click: transfer group `index` (0..4) ticked or not.
  void ChkOP_Click(int index, bool checked);
  // chkConFechDesde (index 0) / ChkConFechHasta (index 1) ticked or not; the
  // months are shown again.
  void chkConFech_Click(int index, bool checked);
  // cbMesAnt / cbMesSig of bound `index` (0 Desde, 1 Hasta).
  void cbMesAnt_Click(int index);
  void cbMesSig_Click(int index);
  // "Importar Solo Conceptos Utilizados".
  void chkImpSoloConUtil_Click(bool checked);
  // cmbImportar: 0 "Importar", 1 "No Importar".
  void cmbImportar_Click(int index);
  // cmbCodBPS chose code `index`; txtCodKEL now holds `text`.
  void cmbCodBPS_Click(int index);
  void txtCodKEL_Change(const std::string& text);
  // lstRelaciones: entry `index` selected (-1 none).
  void lstRelaciones_Click(int index);
  // cmbMasMenos(0) adds the relation of cmbCodBPS and txtCodKEL; (1) removes
  // the selected entry, warning "Debe seleccionar la relación" without one.
  void cmbMasMenos_Click(int index);

  // ---- Progress ------------------------------------------------------------
  void ActuBarra(float argument = ProgressBar::kReset) { view.Barra.ActuBarra(argument); }
  void AF_GenImp() { view.Barra.AF_GenImp(); }

  // The file errors are reported in: beside the staging database, or in the
  // program folder when there is none yet.
  std::filesystem::path error_report_file() const;

 private:
  void show_pending_warnings();
  // Runs `work`; an exception that escapes it is written to the error report,
  // shown, and ends the program by throwing SessionAborted.
  void run_guarded(const std::string& procedure, const std::function<void()>& work,
                   const std::function<std::string()>& current_step,
                   const std::function<std::vector<std::string>()>& applied);
  std::string SeleccionarDSN();
  // The safety copy of the destination before a run's first step (see
  // safety_copy.h); false, after telling the user why, when it cannot be made.
  bool take_safety_copy(ImportResult& result);
  // After an error stopped a run that made `result.safety_copy`: offers the
  // restore (or follows restore_on_error) and does it.
  void offer_restore(ImportResult& result);
  // Fills last_import_report for `result` and writes it beside the staging
  // database (controller_report.cpp).
  void write_import_report(const ImportResult& result, const std::string& when, const std::string& outcome);
  void select_command_line_format(const std::string& field);

  // Both databases for the mapping panels; nullopt unless both are open.
  std::optional<mapping::Databases> mapping_databases();

  std::filesystem::path program_folder_;
  UserInterface& ui_;
  transfer::StepRunner& transfer_;
  preview::StagedPreview& preview_;
  mapping::MappingPanel& mapping_;
  // Checks which company the staging database was prepared for, records this
  // one, and asks before another company's data are reused; false on No.
  bool claim_staging_for_company();
  // Files of an interchange source folder that no format entry took: a file
  // named like an entry that was looked for but not recognised (a header with
  // a typo) goes to `warnings`, any other file to `notes`.
  void tell_unmatched_source_files(std::vector<std::string>& warnings, std::vector<std::string>& notes) const;

  std::filesystem::path staging_folder_;
  bool ended_ = false;
  RunLock company_lock_;  // held while PathDeEmp is this session's company
  RunLock staging_lock_;  // held while the staging database is this session's
  // Say that a connection is waiting for a locked file (one per connection).
  BusyNotice destination_busy_;
  BusyNotice staging_busy_;
  void watch_busy();
  std::array<bool, 5> looked_for_{};  // the groups the last matching looked for
};

}  // namespace session
