// session/controller_report.cpp — the import report of a run, from the
// session's state and the run's result (see import_report.h).
#include "db/table_counts.h"
#include "session/import_report.h"
#include "session/main_controller.h"

namespace session {

void MainWindowController::write_import_report(const ImportResult& result, const std::string& when,
                                               const std::string& outcome) {
  ImportReportInput in;
  in.when = when;
  in.company = destination ? destination->data_source_name() : PathDeEmp;
  if (in.company.empty()) in.company = PathDeEmp;
  in.source = view.txtRuta;
  if (state.cmbFormato_index >= 0 && static_cast<std::size_t>(state.cmbFormato_index) < state.cmbFormato.size())
    in.format = state.cmbFormato[static_cast<std::size_t>(state.cmbFormato_index)];
  for (int group = 0; group < transfer::kGroupCount; ++group)
    if (state.ChkOP[static_cast<std::size_t>(group)])
      in.groups.push_back(std::to_string(group + 1) + ". " + transfer::group_caption(group));
  in.desde = DesdeText(state.period);
  in.hasta = HastaText(state.period);
  if (staging && staging->is_open()) in.staged = db::table_row_counts(staging->data_source_name());
  in.result = &result;
  in.outcome = outcome;
  last_import_report = ImportReportLines(in);

  last_import_report_file.clear();
  const std::filesystem::path folder = staging_folder_.empty() ? program_folder_ : staging_folder_;
  const std::filesystem::path file = ImportReportPath(folder, std::time(nullptr));
  std::string error;
  if (WriteImportReport(file, last_import_report, &error))
    last_import_report_file = file;
  else
    state.warnings.push_back(error);
}

}  // namespace session
