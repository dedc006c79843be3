// staging/staging_load.cpp — CargarDatos and the per-entry load.
#include "staging/staging_load.h"

#include <sqlite3.h>

#include <stdexcept>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "settings/cond_tree.h"
#include "settings/paths.h"
#include "settings/statement_file.h"
#include "settings/strings.h"
#include "staging/interchange_table.h"

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
  explicit LoadTuning(db::Connection* connection) : sqlite_(dynamic_cast<db::SqliteConnection*>(connection)) {
    if (!sqlite_ || !sqlite_->handle()) return;
    cache_size_ = Pragma("cache_size");
    Set("cache_size", kLoadCacheKiB);
    // Through a write-ahead log every page is written twice (the log, then
    // the file); a rollback journal copies only the pages that held data
    // before the transaction, and the load writes into pages it has just
    // emptied or appended. Both keep the file whole when the load is killed.
    // The switch needs the file to itself: when another connection has it
    // open the log stays, and only speed is lost.
    // Named "main.": without it the pragma would switch the source databases
    // the statements attached as well.
    journal_ = Pragma("main.journal_mode");
    if (settings::IEquals(journal_, "wal")) Set("main.journal_mode", "TRUNCATE");
    else journal_.clear();
  }
  ~LoadTuning() {
    if (!sqlite_ || !sqlite_->handle()) return;
    if (!cache_size_.empty()) Set("cache_size", cache_size_);
    if (!journal_.empty()) Set("main.journal_mode", journal_);
  }
  LoadTuning(const LoadTuning&) = delete;
  LoadTuning& operator=(const LoadTuning&) = delete;

 private:
  std::string Pragma(const std::string& name) {
    sqlite3_stmt* stmt = nullptr;
    std::string value;
    if (sqlite3_prepare_v2(sqlite_->handle(), ("PRAGMA " + name).c_str(), -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
      const unsigned char* text = sqlite3_column_text(stmt, 0);
      if (text) value = reinterpret_cast<const char*>(text);
    }
    sqlite3_finalize(stmt);
    return value;
  }
  void Set(const std::string& name, const std::string& value) {
    // A setting that cannot change only makes the load slower.
    sqlite3_exec(sqlite_->handle(), ("PRAGMA " + name + " = " + value).c_str(), nullptr, nullptr, nullptr);
  }

  db::SqliteConnection* sqlite_;
  std::string cache_size_;
  std::string journal_;  // the mode to go back to; empty: unchanged
};

void Progress(StagingLoad& load, float value) {
  if (load.ActuBarra) load.ActuBarra(value);
}

// The staging catalogue's table names, in catalogue order, without views and
// without SQLite's own tables.
std::vector<std::string> StagingTables(db::Connection& connection) {
  std::vector<std::string> tables;
  db::Recordset rs = connection.open_recordset("Select type, name From sqlite_master");
  for (; !rs.eof(); rs.move_next()) {
    std::string type = db::as_text(rs.field(std::size_t{0}));
    std::string name = db::as_text(rs.field(std::size_t{1}));
    if (!settings::IEquals(type, "table")) continue;
    if (settings::IStartsWith(name, "sqlite_")) continue;  // the engine's own tables
    tables.push_back(name);
  }
  return tables;
}

void EmptyStagingTables(StagingLoad& load) {
  for (const std::string& table : StagingTables(*load.staging)) {
    if (IsKeptTable(load.TablaNoBorrar, table)) continue;
    load.staging->execute("Delete * From " + table);
    Progress(load, -1);
  }
}

// The paths a statement reads with `in '<path>'`.
std::vector<std::string> InPaths(const std::string& sql) {
  std::vector<std::string> paths;
  std::size_t at = 0;
  while ((at = settings::IFind(sql, "in", at)) != std::string::npos) {
    bool word_start = at == 0 || sql[at - 1] == ' ' || sql[at - 1] == '\t' || sql[at - 1] == '\n' ||
                      sql[at - 1] == '\r' || sql[at - 1] == ')' || sql[at - 1] == ']';
    std::size_t q = at + 2;
    while (q < sql.size() && (sql[q] == ' ' || sql[q] == '\t' || sql[q] == '\r' || sql[q] == '\n')) ++q;
    if (word_start && q > at + 2 && q < sql.size() && sql[q] == '\'') {
      std::size_t end = sql.find('\'', q + 1);
      if (end == std::string::npos) break;
      paths.push_back(sql.substr(q + 1, end - q - 1));
      at = end + 1;
    } else {
      at += 2;
    }
  }
  return paths;
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
  const bool box = load.ChkOP[static_cast<std::size_t>(n - 1)];
  if (!(entry.Existe && (box || n != 5))) return;

  const std::filesystem::path path = settings::ProgramPath(load.program_folder, entry.ArchConf);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return;

  settings::StatementFile file;
  file.set_connection(load.staging);
  TemplateValues values = load.values;
  values.password = settings::DevPass(entry.ColCond);
  values.ruta = entry.Ruta;
  Progress(load, -1);

  const std::string file_name = settings::NormaliseRelativeName(entry.ArchConf);
  if (!file.load(path)) load.warnings.push_back(file.error());
  for (const auto& w : file.warnings()) load.warnings.push_back(file_name + ": " + w);
  if (entry.TipoAR) file.set_data_file(entry.Ruta);
  if (file.statement_count() == 0) return;

  // Expansion has no side effects, so all statements are expanded here; only
  // the first can fail before the error mode changes, and then all would.
  std::vector<std::string> texts;
  texts.reserve(file.statements().size());
  for (const auto& statement : file.statements()) texts.push_back(ExpandTemplate(statement, file.pairs(), values));

  ++load.stats.entries_loaded;
  auto* sqlite = dynamic_cast<db::SqliteConnection*>(load.staging);
  bool transaction = false;
  if (sqlite) {
    for (const auto& text : texts) {
      for (const auto& in_path : InPaths(text)) {
        try {
          sqlite->attach(in_path);
        } catch (const std::exception&) {
          // The statements that name it fail with the same reason (a missing
          // or unreadable file is told before the transaction matters) and
          // are ignored.
        }
      }
    }
    try {
      sqlite->begin_transaction();
      transaction = true;
    } catch (const db::Error&) {
      // The caller has a transaction open: the entry runs inside it.
    }
  }

  DataTable data;
  if (entry.TipoAR && file.layout()) {
    if (!sqlite) {
      load.warnings.push_back(file_name + ": los archivos de datos solo se leen en una base auxiliar SQLite");
    } else {
      data = OpenDataTable(*sqlite, file.data_file(), *file.layout());
      if (!data.ok()) load.warnings.push_back(data.error());
    }
  }

  ignoring = true;  // from here to the end of the load every error is ignored
  int reported = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    try {
      load.staging->execute(texts[i]);
      ++load.stats.statements_run;
    } catch (const std::exception& e) {
      ++load.stats.statements_failed;
      if (reported++ < kStatementWarningsPerEntry) {
        load.warnings.push_back(file_name + ", sentencia " + std::to_string(i + 1) + ": " + e.what());
      }
      // A few errors (disk full, interrupted) end the whole transaction in
      // SQLite; the entry's next statements then get one of their own.
      if (transaction && sqlite->handle() && sqlite3_get_autocommit(sqlite->handle())) {
        try {
          sqlite->begin_transaction();
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
  }
  if (transaction) {
    try {
      sqlite->commit_transaction();
    } catch (const db::Error& e) {
      load.warnings.push_back(file_name + ": " + e.message());
      try {
        sqlite->rollback_transaction();
      } catch (const db::Error&) {
        // Nothing left to undo.
      }
    }
  }
}

}  // namespace

bool IsKeptTable(const std::string& tabla_no_borrar, const std::string& table) {
  return settings::WildcardMatch("," + tabla_no_borrar + ",", "*," + table + ",*", true);
}

void CargarDatos(StagingLoad& load) {
  if (!load.staging || load.staging->state() != 1) return;
  load.warnings.clear();
  load.stats = {};
  LoadTuning tuning(load.staging);
  Progress(load, static_cast<float>(80.0 / (static_cast<double>(load.total_lines) + 40.0)));
  if (load.hide_lblDatosCP) load.hide_lblDatosCP();
  EmptyStagingTables(load);

  bool ignoring = false;
  if (load.catalogue) {
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
