// staging/staging_load.h — CargarDatos: emptying the staging database and
// filling it again from the chosen source.
//
// The load walks the format's catalogue; every entry whose source was found
// has its statement file loaded, its statements expanded (staging/template.h)
// and run on the staging connection. An interchange entry whose statement file
// describes its data file (@ARCHIVO) first has that file opened as a TEMP
// virtual table (staging/interchange_table.h) that its statements read.
//
// Errors: nothing is caught until the first statement of the whole load is
// about to run, so an unreadable table catalogue, a refused "Delete * From",
// an option number outside the five boxes or a relation table too small for
// the first statement reach the caller. From the first statement on every
// error is ignored and the load goes on; what went wrong is kept in `warnings`
// (Spanish) for the caller to show or write to its report, since a wrong
// format otherwise shows only as missing data.
//
// Speed: on a SQLite staging connection each entry runs in one transaction
// (its statements, reading its data file in place), with a rollback journal
// rather than a write-ahead log while the load runs. The databases the entry's
// statements name with `in '<path>'` are attached before the transaction
// starts, since SQLite cannot attach inside one.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "db/connection.h"
#include "staging/catalogue.h"
#include "staging/template.h"

namespace staging {

// What a load did, for the caller's report.
struct StagingLoadStats {
  int entries_loaded = 0;         // entries whose statements ran
  int statements_run = 0;         // statements the database accepted
  int statements_failed = 0;      // statements refused (and ignored)
  std::int64_t data_rows = 0;     // rows read from interchange data files
  std::int64_t bad_values = 0;    // data-file fields that did not convert
};

struct StagingLoad {
  db::Connection* staging = nullptr;          // the staging connection; closed or null: nothing happens
  std::filesystem::path program_folder;       // statement files are named relative to it
  std::string TablaNoBorrar;                  // comma-separated tables never emptied
  ColArchsBD* catalogue = nullptr;            // entries with Existe/Ruta set by the last matching
  std::array<bool, 5> ChkOP{};                // option boxes (only option 5 gates the load)
  long long total_lines = 0;                  // sizes the progress steps
  TemplateValues values;                      // destination path, relations, ConcCrear, months (password and Ruta are set per entry)
  std::function<void(float)> ActuBarra;       // progress (ProgressBar::ActuBarra)
  std::function<void()> hide_lblDatosCP;      // step 3
  std::function<void()> ActuGrillas;          // step 6 (preview refresh; may be empty)
  std::function<void()> CargarMes;            // step 8

  // Filled by CargarDatos (cleared at its start): what was ignored, in Spanish
  // (statement errors, data-file problems, statement-file problems), and counts.
  std::vector<std::string> warnings;
  StagingLoadStats stats;
};

// CargarDatos, in the fixed order of the load:
//   1. staging connection closed (or null): return, nothing changes;
//   2. ActuBarra(80 / (total_lines + 40));
//   3. hide_lblDatosCP;
//   4. every table of the staging catalogue (SQLite: sqlite_master rows of
//      type table, in their order, without SQLite's own sqlite_* tables) whose
//      name is not in TablaNoBorrar (commas as delimiters, any case) is emptied
//      with "Delete * From <table>", then ActuBarra(-1);
//   5. each catalogue entry in order: option n from Codigo; taken when Existe
//      and (ChkOP[n - 1] or n != 5); its statement file must exist in the
//      program folder (else skipped silently); ActuBarra(-1); the file is
//      loaded, the data file read when the entry is an interchange file with a
//      layout, and each statement expanded and run, errors ignored;
//   6. ActuGrillas; 7. ActuBarra(100), ActuBarra(-2); 8. CargarMes.
// Errors before the first statement propagate (db::Error, std::out_of_range);
// from the first statement on, every error is ignored and the load goes on.
void CargarDatos(StagingLoad& load);

// True when `table` is one of the comma-separated names of `tabla_no_borrar`
// ("," + list + "," Like "*," + table + ",*", without regard to case).
bool IsKeptTable(const std::string& tabla_no_borrar, const std::string& table);

}  // namespace staging
