// session/import_report.h — the import report: what a run staged and what
// each transfer step did to the KEL tables, as a text a person reads.
//
// Every import run that passed the company check writes one, beside the
// staging database, as kelimport-informe-<yyyy-MM-dd-HHmmss>.txt (UTF-8);
// batch mode prints the same lines after "INFORME: ". The figures are the
// ones counted while the run happened: rows per staging table read from the
// file, rows per KEL table from the engine's changes of each statement.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "session/main_controller.h"

namespace session {

struct ImportReportInput {
  std::string when;                 // when the run started, as NowText() gives it
  std::string company;              // the KEL company file
  std::string source;               // the source folder or data source
  std::string format;               // the format's caption
  std::vector<std::string> groups;  // "1. Datos de la Empresa" ... of the ticked groups
  std::string desde, hasta;         // "yyyy-MM-01" bounds of the liquidations, "" when unticked
  std::vector<std::pair<std::string, std::int64_t>> staged;  // rows per staging table
  const ImportResult* result = nullptr;  // the steps run and the safety copy
  std::string outcome;              // how the run ended (Spanish)
};

// The report's lines, without line ends.
std::vector<std::string> ImportReportLines(const ImportReportInput& input);

// A free file name for a report written at local time `now` in `folder`:
// kelimport-informe-<yyyy-MM-dd-HHmmss>.txt, "-2", "-3" ... added if taken.
std::filesystem::path ImportReportPath(const std::filesystem::path& folder, std::time_t now);

// Writes `lines` to `file` (CR LF line ends). False with a Spanish `error`
// when it cannot be written.
bool WriteImportReport(const std::filesystem::path& file, const std::vector<std::string>& lines,
                       std::string* error);

}  // namespace session
