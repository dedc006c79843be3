// session/controller_errors.cpp — what happens when an error escapes a
// transfer step or the staging load: the error report, the user's warning and
// the end of the program.
#include <exception>

#include "db/error.h"
#include "session/main_controller.h"
#include "session/user_interface.h"

namespace session {

std::filesystem::path MainWindowController::error_report_file() const {
  return (staging_folder_.empty() ? program_folder_ : staging_folder_) / kErrorReportFileName;
}

void MainWindowController::run_guarded(const std::string& procedure, const std::function<void()>& work,
                                       const std::function<std::string()>& current_step,
                                       const std::function<std::vector<std::string>()>& applied) {
  ErrorReport report;
  try {
    work();
    return;
  } catch (const UnansweredQuestion&) {
    // A batch run without an answer for a question: not a database error, the
    // caller reports it as a bad command line.
    throw;
  } catch (const db::Error& e) {
    report.message = e.message();
    report.jet_text = e.jet_text();
    report.sqlite_text = e.translated_text();
  } catch (const std::exception& e) {
    report.message = e.what();
  } catch (...) {
    report.message = "error desconocido";
  }
  report.when = NowText();
  report.procedure = procedure;
  report.step = current_step();
  report.destination = PathDeEmp;
  report.staging = staging && staging->is_open() ? staging->data_source_name() : std::string();
  report.applied = applied();

  const std::filesystem::path file = error_report_file();
  std::string write_error;
  const bool written = AppendErrorReport(file, report, &write_error);
  ui_.warning(ErrorReportWarning(report, file, written));
  ended_ = true;
  throw SessionAborted(report.message, written ? file : std::filesystem::path());
}

}  // namespace session
