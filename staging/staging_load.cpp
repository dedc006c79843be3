// staging/staging_load.cpp — CargarDatos and the per-entry load.
#include "staging/staging_load.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <exception>
#include <stdexcept>

#include "db/error.h"
#include "db/jet/translator.h"
#include "db/sqlite_connection.h"
#include "settings/cond_tree.h"
#include "settings/paths.h"
#include "settings/statement_file.h"
#include "settings/strings.h"
#include "staging/database_rows.h"
#include "staging/interchange_table.h"
#include "staging/key_check.h"

namespace staging {

namespace {

// Statement errors kept per entry; the rest are only counted.
constexpr int kStatementWarningsPerEntry = 5;

// Page cache of the staging connection while it loads (negative: KiB). The
// liquidation lines go into tables with indexes whose keys arrive nearly in
// order (header) or take few values (concept), so the pages being written
// stay in a cache of this size; a larger one bought nothing measurable, and
// memory must stay flat. (Dropping those indexes before the insert and
// building them after it was measured too: the sorts cost more CPU and
// memory than they saved.)
constexpr const char* kLoadCacheKiB = "-65536";

// Gives the SQLite staging connection a larger page cache while the load
// runs, and puts the setting back afterwards, whatever happens. The data
// files are read in place (interchange_table.h), so nothing else is held in
// memory.
class LoadTuning {
 public:
  explicit LoadTuning(db::Connection* connection) : connection_(connection) {
    if (!connection_ || !connection_->is_open()) return;
    cache_size_ = connection_->engine_setting("cache_size");
    connection_->change_engine_setting("cache_size", kLoadCacheKiB);
    // Through a write-ahead log every page is written twice (the log, then
    // the file); a rollback journal copies only the pages that held data
    // before the transaction, and the load writes into pages it has just
    // emptied or appended. Both keep the file whole when the load is killed.
    // The switch needs the file to itself: when another connection has it
    // open the log stays, and only speed is lost.
    // Named "main.": without it the pragma would switch the source databases
    // the statements attached as well.
    journal_ = connection_->engine_setting("main.journal_mode");
    if (settings::IEquals(journal_, "wal")) connection_->change_engine_setting("main.journal_mode", "TRUNCATE");
    else journal_.clear();
  }
  ~LoadTuning() {
    if (!connection_ || !connection_->is_open()) return;
    // A setting that cannot change back only makes later work slower.
    if (!cache_size_.empty()) connection_->change_engine_setting("cache_size", cache_size_);
    if (!journal_.empty()) connection_->change_engine_setting("main.journal_mode", journal_);
  }
  LoadTuning(const LoadTuning&) = delete;
  LoadTuning& operator=(const LoadTuning&) = delete;

 private:
  db::Connection* connection_;
  std::string cache_size_;
  std::string journal_;  // the mode to go back to; empty: unchanged
};

void Progress(StagingLoad& load, float value) {
  if (load.ActuBarra) load.ActuBarra(value);
}

// The staging database's own list of the tables that are not source data
// (TablasPropias), comma-joined; kKeptByDefault when it has none.
std::string OwnTables(db::Connection& connection, const std::vector<std::string>& tables) {
  bool listed = false;
  for (const auto& t : tables) listed = listed || settings::IEquals(t, kOwnTablesTable);
  if (!listed) return kKeptByDefault;
  std::string list;
  db::Recordset rs = connection.open_recordset(std::string("Select Tabla From ") + kOwnTablesTable);
  for (; !rs.eof(); rs.move_next()) list += "," + settings::Trim(db::as_text(rs.field(std::size_t{0})));
  return list;
}

void EmptyStagingTables(StagingLoad& load) {
  // In catalogue order (the order the tables were created in).
  const std::vector<std::string> tables = load.staging->table_names();
  const std::string kept = load.TablaNoBorrar + "," + OwnTables(*load.staging, tables) + "," + kOwnTablesTable +
                           "," + kPreparedForTable;
  for (const std::string& table : tables) {
    if (IsKeptTable(kept, table)) continue;
    load.staging->execute("Delete * From " + table);
    Progress(load, -1);
  }
}

// The paths a statement reads with `in` clauses, as the translator parses
// them (all three spellings); none for a statement that does not parse, which
// fails with the translator's message when it runs.
std::vector<std::string> InPaths(const std::string& sql) {
  try {
    return db::jet::database_paths(sql);
  } catch (const db::jet::TranslateError&) {
    return {};
  }
}

// The entry's name, without its option number.
std::string EntryName(const ClaArchBD& entry) { return entry.Codigo.substr(0, entry.Codigo.rfind('*')); }

// The file an entry reads, as the user knows it: the data file's name, or
// the source database's.
std::string SourceName(const ClaArchBD& entry) {
  return entry.Ruta.empty() ? EntryName(entry) : std::filesystem::path(entry.Ruta).filename().string();
}

// True when the entry's source was found and its option lets it load (the
// option-5 gate); never throws.
bool Wanted(const StagingLoad& load, const ClaArchBD& entry) {
  const int n = entry.option();
  if (n < 1 || n > static_cast<int>(load.ChkOP.size())) return false;
  return entry.Existe && (load.ChkOP[static_cast<std::size_t>(n - 1)] || n != 5);
}

bool HasStatementFile(const StagingLoad& load, const ClaArchBD& entry) {
  std::error_code ec;
  return std::filesystem::is_regular_file(settings::ProgramPath(load.program_folder, entry.ArchConf), ec);
}

// Why a load has nothing to do, or "" when some entry can load.
std::string NothingToLoad(const StagingLoad& load) {
  if (!load.catalogue || load.catalogue->size() == 0) {
    return "El formato elegido no tiene archivos ni tablas de origen (revise ConfIMP.ini y el archivo del "
           "formato): no se cargó nada y la base auxiliar quedó como estaba";
  }
  bool wanted = false;
  for (const ClaArchBD& entry : *load.catalogue) {
    if (!Wanted(load, entry)) continue;
    wanted = true;
    if (HasStatementFile(load, entry)) return {};
  }
  if (!wanted) {
    return "No se encontró en el origen ningún archivo o tabla del formato elegido: no se cargó nada y la base "
           "auxiliar quedó como estaba";
  }
  return "Falta el archivo de sentencias de todas las entradas encontradas: no se cargó nada y la base auxiliar "
         "quedó como estaba";
}

// The keyed staging table a statement inserts into, with the interchange
// table's column of the key's name; all empty when the statement inserts into
// no keyed table or the interchange table has no such column.
struct KeyTarget {
  std::string table;  // the staging table
  std::string key;    // its key column
  std::string icol;   // the interchange table's column of that name
};

KeyTarget FindKeyTarget(sqlite3* db, const std::string& statement, const std::string& data_table) {
  KeyTarget t;
  t.table = InsertTarget(statement);
  if (t.table.empty()) return {};
  t.key = KeyColumn(db, t.table);
  if (t.key.empty()) return {};
  t.icol = InterchangeColumn(db, data_table, t.key);
  if (t.icol.empty()) return {};
  return t;
}

// The staging table and key column of a key violation, from the engine's own
// text ("UNIQUE constraint failed: Personas.id_Persona"), which every message
// keeps after its Spanish part.
bool KeyViolation(const std::string& message, std::string* table, std::string* column) {
  for (const char* marker : {"UNIQUE constraint failed: ", "PRIMARY KEY constraint failed: "}) {
    std::size_t at = message.find(marker);
    if (at == std::string::npos) continue;
    at += std::string(marker).size();
    std::size_t end = at;
    while (end < message.size() && (std::isalnum(static_cast<unsigned char>(message[end])) || message[end] == '_' ||
                                    message[end] == '.'))
      ++end;
    const std::string name = message.substr(at, end - at);
    const std::size_t dot = name.find('.');
    if (dot == std::string::npos) return false;
    *table = name.substr(0, dot);
    *column = name.substr(dot + 1);
    return true;
  }
  return false;
}

// Sets `rows` aside for `table` and says so; false (with a warning) when
// they could not be, in which case the caller refuses the table.
bool SetAside(StagingLoad& load, sqlite3* db, const std::string& data_table, const std::string& file_name,
              const std::string& table, const std::vector<BadRow>& rows, RowUnit unit = RowUnit::kLine) {
  std::filesystem::path file;
  std::string error;
  if (!SetRowsAside(db, data_table, rows, load.rejects_folder, table, &file, &error, unit)) {
    load.warnings.push_back(file_name + ": " + error);
    return false;
  }
  load.stats.rows_set_aside += static_cast<std::int64_t>(rows.size());
  load.warnings.push_back(file_name + ": " + std::to_string(rows.size()) +
                          (rows.size() == 1 ? " fila apartada" : " filas apartadas") + " en " + file.string() +
                          " (" + rows.front().reason + (rows.size() > 1 ? ", ..." : "") +
                          "); el resto de la tabla " + table + " se cargó");
  return true;
}

// What became of a statement whose rows' keys the load checks (one that
// reads a data file or a source database).
enum class StatementKeys {
  kNotKeyed,  // no keyed insert of the translator's form: run it as it is
  kLoaded,    // loaded (maybe with rows set aside)
  kRefused,   // not loaded because of its keys (the warning is given)
};

// Runs a statement of an entry whose data file is open as `data`, refusing
// or setting aside the rows whose key is empty or repeated (and saying so).
// While it runs, a scan that meets an empty key stops (an engine would make
// the key up), so the file is searched for the offending rows — a scan of
// their own — only when the statement failed; the empty keys are told first,
// as they are the first thing wrong with such a table. Returns kLoaded or
// kRefused; throws what the statement throws for any other reason.
StatementKeys RunOverDataFile(StagingLoad& load, db::SqliteConnection& sqlite, DataTable& data,
                             const std::string& data_table, const std::string& statement,
                             const std::string& source_name) {
  sqlite3* db = sqlite.handle();
  const KeyTarget target = FindKeyTarget(db, statement, data_table);
  // One run of the statement; false, keeping why, when it failed.
  std::exception_ptr failure;
  std::string message;
  const auto attempt = [&] {
    failure = nullptr;
    data.StopScansOnEmpty(target.icol);
    try {
      load.staging->execute(statement);
    } catch (const std::exception& e) {
      failure = std::current_exception();
      message = e.what();
    }
    data.StopScansOnEmpty("");
    return !failure;
  };
  if (attempt()) return StatementKeys::kLoaded;
  if (!target.icol.empty()) {
    const std::vector<BadRow> empty = EmptyKeyRows(db, data_table, target.icol);
    if (!empty.empty()) {
      if (!(load.set_aside_bad_rows && SetAside(load, db, data_table, source_name, target.table, empty))) {
        load.warnings.push_back(
            RefusedTableMessage(source_name, target.table, DescribeKeyLines(db, data_table, target.icol, empty)));
        return StatementKeys::kRefused;
      }
      if (attempt()) return StatementKeys::kLoaded;
    }
  }
  std::string table, column;
  if (!KeyViolation(message, &table, &column)) std::rethrow_exception(failure);
  const std::string icol = InterchangeColumn(db, data_table, column);
  const std::vector<BadRow> conflicts =
      icol.empty() ? std::vector<BadRow>{} : KeyConflictRows(db, data_table, icol, table, column);
  if (conflicts.empty()) std::rethrow_exception(failure);
  if (!load.set_aside_bad_rows || !SetAside(load, db, data_table, source_name, table, conflicts)) {
    load.warnings.push_back(RefusedTableMessage(source_name, table, DescribeKeyLines(db, data_table, icol, conflicts)));
    return StatementKeys::kRefused;
  }
  if (!attempt()) std::rethrow_exception(failure);  // the rest of the table
  return StatementKeys::kLoaded;
}

// Runs an insert into a keyed staging table that reads a source database
// (`in '<path>'`), refusing or setting aside the rows whose key is empty or
// repeated as an interchange file's are (staging/database_rows.h). Throws
// what the statement's own run throws.
StatementKeys LoadFromDatabase(StagingLoad& load, db::SqliteConnection& sqlite, const std::string& text,
                              const std::string& source_name) {
  const std::string table = InsertTarget(text);
  if (table.empty() || InPaths(text).empty()) return StatementKeys::kNotKeyed;
  const std::string key = KeyColumn(sqlite.handle(), table);
  if (key.empty()) return StatementKeys::kNotKeyed;
  const db::jet::Translation translation = sqlite.translate(text);
  InsertSelect insert;
  if (translation.statements.size() != 1 || !SplitInsertSelect(translation.statements[0], &insert))
    return StatementKeys::kNotKeyed;
  std::size_t at = 0;
  while (at < insert.columns.size() && !settings::IEquals(insert.columns[at], key)) ++at;
  if (at == insert.columns.size()) return StatementKeys::kNotKeyed;

  if (!HasEmptyKey(sqlite, insert, at)) {
    try {
      load.staging->execute(text);
      return StatementKeys::kLoaded;
    } catch (const std::exception& e) {
      std::string violated, column;
      if (!KeyViolation(e.what(), &violated, &column) || !settings::IEquals(violated, table)) throw;
    }
  }
  // Some row is refused: the rows are numbered in a copy to be named.
  CopySourceRows(sqlite, insert);
  struct Drop {
    db::SqliteConnection& c;
    ~Drop() { DropCopiedRows(c); }
  } drop{sqlite};
  sqlite3* db = sqlite.handle();
  const std::string icol = insert.columns[at];
  std::vector<BadRow> bad = EmptyKeyRows(db, kSourceRowsTable, icol);
  for (BadRow& row : KeyConflictRows(db, kSourceRowsTable, icol, table, key))
    if (!row.key.empty()) bad.push_back(std::move(row));
  std::sort(bad.begin(), bad.end(), [](const BadRow& a, const BadRow& b) { return a.line < b.line; });
  if (!bad.empty() && !(load.set_aside_bad_rows &&
                        SetAside(load, db, kSourceRowsTable, source_name, table, bad, RowUnit::kSourceRow))) {
    load.warnings.push_back(RefusedTableMessage(
        source_name, table, DescribeKeyLines(db, kSourceRowsTable, icol, bad, RowUnit::kSourceRow)));
    return StatementKeys::kRefused;
  }
  InsertCopiedRows(sqlite, insert);
  return StatementKeys::kLoaded;
}

// Loads one catalogue entry. `ignoring` is the load's error mode: false until
// the first statement of the whole load is about to run.
void LoadEntry(StagingLoad& load, ClaArchBD& entry, bool& ignoring) {
  // Both sides of the test are evaluated, as the original's Or does: an
  // option number past the boxes fails even for an entry that was not found.
  const int n = entry.option();
  if (n < 1 || n > static_cast<int>(load.ChkOP.size())) {
    throw std::out_of_range("La entrada " + entry.Codigo + " del formato tiene el número de opción " +
                            std::to_string(n) + ", fuera de las opciones 1 a 5");
  }
  if (!Wanted(load, entry)) return;

  const std::filesystem::path path = settings::ProgramPath(load.program_folder, entry.ArchConf);
  if (!HasStatementFile(load, entry)) {
    ++load.stats.entries_skipped;
    load.warnings.push_back(SourceName(entry) + ": no se cargó porque falta el archivo de sentencias " +
                            settings::NormaliseRelativeName(entry.ArchConf) + " del formato");
    return;
  }

  settings::StatementFile file;
  TemplateValues values = load.values;
  values.password = settings::DevPass(entry.ColCond);
  values.ruta = entry.Ruta;
  Progress(load, -1);

  const std::string file_name = settings::NormaliseRelativeName(entry.ArchConf);
  if (!file.load(path)) {
    ++load.stats.entries_skipped;
    load.warnings.push_back(SourceName(entry) + ": no se cargó: " + file.error());
    return;
  }
  for (const auto& w : file.warnings()) load.warnings.push_back(file_name + ": " + w);
  if (entry.TipoAR) file.set_data_file(entry.Ruta);
  if (file.statement_count() == 0) return;

  // Expansion has no side effects, so all statements are expanded here; only
  // the first can fail before the error mode changes, and then all would.
  std::vector<std::string> texts;
  texts.reserve(file.statements().size());
  for (const auto& statement : file.statements()) texts.push_back(ExpandTemplate(statement, file.pairs(), values));

  ++load.stats.entries_loaded;
  // The data files are SQLite virtual tables: only a SQLite staging database
  // reads them.
  db::SqliteConnection* sqlite = db::as_sqlite(*load.staging);
  bool transaction = false;
  if (load.staging->is_open()) {
    for (const auto& text : texts) {
      for (const auto& in_path : InPaths(text)) {
        try {
          load.staging->attach_path(in_path);
        } catch (const std::exception&) {
          // The statements that name it fail with the same reason (a missing
          // or unreadable file is told before the transaction matters) and
          // are ignored.
        }
      }
    }
    try {
      load.staging->begin_transaction();
      transaction = true;
    } catch (const db::Error&) {
      // The caller has a transaction open: the entry runs inside it.
    }
  }

  DataTable data;
  std::string data_table;  // the entry's interchange table, when its data file opened
  if (entry.TipoAR && file.layout()) {
    if (!sqlite) {
      load.warnings.push_back(file_name + ": los archivos de datos solo se leen en una base auxiliar SQLite");
    } else {
      data = OpenDataTable(*sqlite, file.data_file(), *file.layout());
      if (data.ok()) {
        data_table = file.layout()->table;
      } else {
        // Its statements would only fail on the missing table: the entry is
        // skipped, with the data file's own reason.
        ++load.stats.entries_skipped;
        load.warnings.push_back(data.error() + "; no se cargó " + SourceName(entry));
        texts.clear();
      }
    }
  }
  const std::string source_name = SourceName(entry);

  ignoring = true;  // from here to the end of the load every error is ignored
  int reported = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    try {
      const StatementKeys keyed = !data_table.empty()  ? RunOverDataFile(load, *sqlite, data, data_table, texts[i], source_name)
                                 : sqlite             ? LoadFromDatabase(load, *sqlite, texts[i], source_name)
                                                      : StatementKeys::kNotKeyed;
      if (keyed == StatementKeys::kRefused) {
        ++load.stats.statements_failed;
        continue;
      }
      if (keyed == StatementKeys::kNotKeyed) load.staging->execute(texts[i]);
      ++load.stats.statements_run;
    } catch (const std::exception& e) {
      ++load.stats.statements_failed;
      if (reported++ < kStatementWarningsPerEntry) {
        load.warnings.push_back(file_name + ", sentencia " + std::to_string(i + 1) + " (" + source_name +
                                "): " + e.what());
      }
      // A few errors (disk full, interrupted) end the whole transaction in
      // SQLite; the entry's next statements then get one of their own.
      if (transaction && load.staging->is_open() && !load.staging->in_transaction()) {
        try {
          load.staging->begin_transaction();
        } catch (const db::Error&) {
          // Still waiting for its first statement: nothing was lost.
        }
      }
    }
  }
  if (reported > kStatementWarningsPerEntry) {
    load.warnings.push_back(file_name + ": " + std::to_string(reported - kStatementWarningsPerEntry) +
                            " sentencias más fallaron");
  }
  if (sqlite) {
    DataFileLoad read = data.Close();
    load.stats.data_rows += read.rows;
    load.stats.bad_values += read.bad_values;
    for (auto& w : read.warnings) load.warnings.push_back(std::move(w));
    for (auto& n : read.notes) load.notes.push_back(std::move(n));
  }
  if (transaction) {
    try {
      load.staging->commit_transaction();
    } catch (const db::Error& e) {
      load.warnings.push_back(file_name + ": " + e.message());
      try {
        load.staging->rollback_transaction();
      } catch (const db::Error&) {
        // Nothing left to undo.
      }
    }
  }
}

// Rejected rows of an earlier load describe data that is no longer staged.
void ClearRejects(const std::filesystem::path& folder) {
  std::error_code ec;
  for (const auto& e : std::filesystem::directory_iterator(folder, ec)) {
    if (e.path().extension() == ".csv") std::filesystem::remove(e.path(), ec);
  }
}

}  // namespace

bool IsKeptTable(const std::string& tabla_no_borrar, const std::string& table) {
  return settings::WildcardMatch("," + tabla_no_borrar + ",", "*," + table + ",*", true);
}

void CargarDatos(StagingLoad& load) {
  if (!load.staging || load.staging->state() != 1) return;
  load.warnings.clear();
  load.notes.clear();
  load.stats = {};
  LoadTuning tuning(load.staging);
  Progress(load, static_cast<float>(80.0 / (static_cast<double>(load.total_lines) + 40.0)));
  if (load.hide_lblDatosCP) load.hide_lblDatosCP();
  const std::string nothing = NothingToLoad(load);
  if (nothing.empty()) {
    EmptyStagingTables(load);
    load.stats.emptied = true;
    if (load.set_aside_bad_rows && !load.rejects_folder.empty()) ClearRejects(load.rejects_folder);
  }

  bool ignoring = false;
  if (!nothing.empty()) {
    // Found entries without their statement file are listed one by one.
    if (load.catalogue)
      for (ClaArchBD& entry : *load.catalogue)
        if (Wanted(load, entry)) LoadEntry(load, entry, ignoring);
    load.warnings.push_back(nothing);
  } else if (load.catalogue) {
    for (ClaArchBD& entry : *load.catalogue) {
      try {
        LoadEntry(load, entry, ignoring);
      } catch (const std::exception& e) {
        if (!ignoring) throw;
        load.warnings.push_back(entry.Codigo + ": " + e.what());
      }
    }
  }

  if (load.ActuGrillas) load.ActuGrillas();
  Progress(load, 100);
  Progress(load, -2);
  if (load.CargarMes) load.CargarMes();
}

}  // namespace staging
