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
// Nothing is lost without a word: an entry that is skipped (its statement
// file is missing or unreadable, its data file cannot be read), a statement
// the database refuses and a row set aside are each one line of `warnings`,
// naming the file and the reason in Spanish, for the caller to show at the end
// of the load.
//
// Kept tables: besides the format's TablaNoBorrar, the load never empties the
// tables the staging database itself lists as not being source data (its
// table TablasPropias: the user's mappings and the template's own catalogues),
// nor, in a staging database made before that list existed, kKeptByDefault.
// A load that has nothing to load (no catalogue entries, or no found entry
// whose statement file exists) empties nothing either.
//
// Keys: before an interchange entry's statement inserts into a table with a
// key, the rows whose key is empty are found by their line; when the table
// refuses the insert over its key, the rows that repeat a key are found the
// same way (staging/key_check.h). A statement that reads a source database
// (`in '<path>'`) is checked alike, its rows named by their place in what the
// statement reads ("fila"; staging/database_rows.h). By default such a table
// is not loaded and the message names the table, the file, the keys and the
// lines; with set_aside_bad_rows those rows go to
// <rejects_folder>/<table>.csv and the rest of the table loads.
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
  int entries_skipped = 0;        // found entries that were not loaded (and why is in warnings)
  std::int64_t rows_set_aside = 0;  // rows written to the rejects folder
  bool emptied = false;           // the staging tables were emptied (there was something to load)
};

// The tables a load keeps in a staging database that does not list its own
// (TablasPropias): the mapping tables and the template's catalogues.
inline constexpr const char* kKeptByDefault = "RelacConc,RelacTLiq,TiposRemuneracion,CobraPor";

// The staging table that lists the tables that are not source data, and the
// one that records which company file the staging database was prepared for;
// both are always kept.
inline constexpr const char* kOwnTablesTable = "TablasPropias";
inline constexpr const char* kPreparedForTable = "PasajeEmpresa";

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
  bool set_aside_bad_rows = false;            // rows a key refuses go to rejects_folder instead of refusing the table
  std::filesystem::path rejects_folder;       // <staging folder>/rechazados

  // Filled by CargarDatos (cleared at its start): what was ignored, in Spanish
  // (statement errors, data-file problems, statement-file problems), and counts.
  std::vector<std::string> warnings;
  // What the user may like to know but lost nothing (a column the file leaves
  // out and the format allows to, a column the format does not use).
  std::vector<std::string> notes;
  StagingLoadStats stats;
};

// CargarDatos, in the fixed order of the load:
//   1. staging connection closed (or null): return, nothing changes;
//   2. ActuBarra(80 / (total_lines + 40));
//   3. hide_lblDatosCP;
//   4. when some entry is to be loaded: every table of the staging catalogue
//      (SQLite: sqlite_master rows of type table, in their order, without
//      SQLite's own sqlite_* tables) that is not kept (TablaNoBorrar, commas
//      as delimiters, any case; the staging database's own list) is emptied
//      with "Delete * From <table>", then ActuBarra(-1); otherwise nothing is
//      emptied and a warning says why;
//   5. each catalogue entry in order: option n from Codigo; taken when Existe
//      and (ChkOP[n - 1] or n != 5); its statement file must exist in the
//      program folder (else skipped with a warning); ActuBarra(-1); the file is
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
