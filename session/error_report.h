// session/error_report.h — the report written when an error ends an import.
//
// A statement the database refuses inside a transfer step (or before the
// staging load has run its first statement) stops the run and the program;
// the work done so far stays applied. Payroll administrators must be able to
// tell afterwards what happened and how far the run got, so the details go to
// a text file beside the staging database, appended, one report per error.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace session {

// The name of the report file in the staging folder.
inline constexpr const char* kErrorReportFileName = "kelimport-errores.txt";

struct ErrorReport {
  std::string when;                  // local date and time, "yyyy-MM-dd HH:mm:ss"
  std::string procedure;             // the window procedure, e.g. "cbImportar_Click"
  std::string step;                  // the step running when it failed
  std::string destination;           // the KEL company database
  std::string staging;               // the staging database
  std::string jet_text;              // the statement as written (Jet SQL), "" when unknown
  std::string sqlite_text;           // what it became for SQLite, "" when unknown
  std::string message;               // the engine's (or program's) message
  std::vector<std::string> applied;  // what had already been applied and stays so
};

// The current local date and time as "yyyy-MM-dd HH:mm:ss".
std::string NowText();

// The report as text (UTF-8, CR LF line ends so that it reads well on any
// system), ending with a separator line.
std::string FormatErrorReport(const ErrorReport& report);

// Appends the report to `file`, creating it (and its folder) when missing.
// Returns false with a Spanish `error` when it cannot be written.
bool AppendErrorReport(const std::filesystem::path& file, const ErrorReport& report, std::string* error);

// The Spanish warning shown to the user once the report was written (or, when
// `written` is false, with the details themselves since no file holds them).
std::string ErrorReportWarning(const ErrorReport& report, const std::filesystem::path& file, bool written);

// Thrown out of a window procedure after an error was reported: the program
// ends (the window closes; batch mode exits with status 2).
class SessionAborted : public std::runtime_error {
 public:
  SessionAborted(const std::string& message, std::filesystem::path report_file)
      : std::runtime_error(message), report_file_(std::move(report_file)) {}
  const std::filesystem::path& report_file() const { return report_file_; }

 private:
  std::filesystem::path report_file_;
};

}  // namespace session
