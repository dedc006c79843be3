// db/sqlite_connection.cpp — opening, running Jet statements and transactions
// on a SQLite database file. The translation context (attachments, column
// lists) is in sqlite_context.cpp.
#include "db/sqlite_connection.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "db/error.h"
#include "db/sqlite_messages.h"
#include "db/sqlite_value.h"
#include "db/file_kind.h"
#include "db/jet/collation.h"
#include "db/jet_functions_sqlite.h"

namespace db {

namespace {

// Another connection (the staging connection, a second program) may hold the
// file for a moment; wait this long before reporting it busy.
constexpr int kBusyTimeoutMs = 15000;

// Translations kept per connection before the cache is started afresh.
constexpr std::size_t kTranslationCacheLimit = 512;

const std::string kRefused = "La base de datos rechazó la instrucción: ";

// Jet's text order as an SQLite collation. The translator names it in the
// statements (never in a table's declaration), so the files stay usable by
// any SQLite program.
int CompareJetText(void*, int a_size, const void* a, int b_size, const void* b) {
  return jet::compare_text(std::string_view(static_cast<const char*>(a), static_cast<std::size_t>(a_size)),
                           std::string_view(static_cast<const char*>(b), static_cast<std::size_t>(b_size)));
}

}  // namespace

SqliteConnection::~SqliteConnection() { close(); }

void SqliteConnection::close() {
  statements_.clear();
  translations_.clear();
  attachments_.clear();
  transaction_pending_ = false;
  if (db_) {
    sqlite3_close_v2(db_);  // an open transaction is rolled back
    db_ = nullptr;
  }
  path_.clear();
  main_key_.clear();
}

bool SqliteConnection::open(const std::string& path, JournalMode journal) {
  close();
  last_error_.clear();
  FileKind kind = file_kind(path);
  if (kind != FileKind::kSqlite) {
    last_error_ = file_kind_message(kind, path);
    return false;
  }
  sqlite3* db = nullptr;
  // URI names are allowed so that the files statements read by `in '<path>'`
  // can be attached read-only (see attach()).
  int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr);
  if (rc != SQLITE_OK) {
    last_error_ = "No se pudo abrir la base " + path + ": " +
                  sqlite_error_in_spanish(db, rc);
    sqlite3_close_v2(db);
    return false;
  }
  sqlite3_extended_result_codes(db, 1);
  // A misspelt "quoted" name must be an error, never a constant text.
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_busy_timeout(db, kBusyTimeoutMs);
  // Switching to WAL, or reading the schema version, reads the header, so a
  // damaged file fails here rather than at the first statement.
  char* message = nullptr;
  rc = sqlite3_exec(db,
                    journal == JournalMode::kWal ? "PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON;"
                                                 : "PRAGMA schema_version; PRAGMA foreign_keys=ON;",
                    nullptr, nullptr, &message);
  if (rc != SQLITE_OK) {
    last_error_ = "No se pudo abrir la base " + path + ": " +
                  sqlite_message_in_spanish(sqlite3_extended_errcode(db),
                                            message ? message : sqlite3_errmsg(db));
    sqlite3_free(message);
    sqlite3_close_v2(db);
    return false;
  }
  register_jet_functions(db);
  sqlite3_create_collation_v2(db, jet::kCollationName, SQLITE_UTF8, nullptr, CompareJetText, nullptr);
  db_ = db;
  path_ = path;
  main_key_ = key_of(path);
  return true;
}

std::string SqliteConnection::key_of(const std::string& path) const {
  std::error_code ec;
  auto canonical = std::filesystem::weakly_canonical(path, ec);
  if (ec) return std::filesystem::absolute(path, ec).lexically_normal().string();
  return canonical.string();
}

std::vector<int> SqliteConnection::schema_versions(const std::vector<std::string>& attached_keys) {
  std::vector<int> versions;
  versions.reserve(attached_keys.size() + 1);
  auto read = [&](const std::string& schema) {
    int version = -1;
    sqlite3_stmt* stmt = statements_.get(db_, "PRAGMA " + schema + ".schema_version");
    if (stmt && sqlite3_step(stmt) == SQLITE_ROW) version = sqlite3_column_int(stmt, 0);
    if (stmt) sqlite3_reset(stmt);
    versions.push_back(version);
  };
  read("main");
  for (const auto& key : attached_keys) read(attachments_.schema_of(key));
  return versions;
}

void SqliteConnection::refresh_schema(const std::string& schema) {
  // SQLite checks a database's schema cookie only when a statement runs, so
  // column lists read while translating could come from tables another
  // connection has since made again. Running a statement on the schema
  // makes SQLite notice and reload it.
  sqlite3_stmt* stmt = statements_.get(db_, "SELECT 1 FROM " + schema + ".sqlite_master LIMIT 0");
  if (!stmt) return;
  sqlite3_step(stmt);
  sqlite3_reset(stmt);
}

void SqliteConnection::forget_translations() {
  translations_.clear();
  statements_.clear();
}

jet::Translation SqliteConnection::translate(std::string_view jet_sql) {
  if (!db_) throw Error("La conexión no está abierta", std::string(jet_sql));
  ++statement_number_;
  return translation_for(jet_sql);
}

const jet::Translation& SqliteConnection::translation_for(std::string_view jet_sql) {
  std::string text(jet_sql);
  auto it = translations_.find(text);
  if (it != translations_.end()) {
    bool attached = true;
    for (const auto& key : it->second.attached_keys) {
      if (!attachments_.use(key, statement_number_)) attached = false;
    }
    if (attached && schema_versions(it->second.attached_keys) == it->second.versions) {
      return it->second.translation;
    }
    translations_.erase(it);
  }
  CachedTranslation entry;
  refresh_schema("main");
  attached_now_ = &entry.attached_keys;
  try {
    entry.translation = jet::translate(jet_sql, *this);
  } catch (const jet::TranslateError& e) {
    attached_now_ = nullptr;
    // The translator's message already says where the problem is.
    throw Error(std::string("No se pudo traducir la instrucción: ") + e.what(), text);
  } catch (const Error& e) {
    attached_now_ = nullptr;
    throw Error(e.message(), text, e.translated_text());
  } catch (const std::exception& e) {
    attached_now_ = nullptr;
    throw Error(std::string("No se pudo traducir la instrucción: ") + e.what(), text);
  }
  attached_now_ = nullptr;
  entry.versions = schema_versions(entry.attached_keys);
  if (translations_.size() >= kTranslationCacheLimit) translations_.clear();
  return translations_.insert_or_assign(text, std::move(entry)).first->second.translation;
}

sqlite3_stmt* SqliteConnection::prepare(const std::string& sqlite_sql, std::string_view jet_sql) {
  sqlite3_stmt* stmt = statements_.get(db_, sqlite_sql);
  if (!stmt && sqlite3_errcode(db_) != SQLITE_OK) {
    throw Error(kRefused + sqlite_error_in_spanish(db_), std::string(jet_sql), sqlite_sql);
  }
  return stmt;
}

void SqliteConnection::start_pending_transaction(std::string_view jet_sql) {
  if (!transaction_pending_) return;
  transaction_pending_ = false;
  char* message = nullptr;
  if (sqlite3_exec(db_, "BEGIN", nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = sqlite_message_in_spanish(sqlite3_extended_errcode(db_),
                                                 message ? message : sqlite3_errmsg(db_));
    sqlite3_free(message);
    throw Error("No se pudo iniciar la transacción: " + text, std::string(jet_sql), "BEGIN");
  }
}

std::int64_t SqliteConnection::execute(std::string_view jet_sql) {
  if (!db_) throw Error("La conexión no está abierta", std::string(jet_sql));
  ++statement_number_;
  jet::Translation translation = translation_for(jet_sql);
  start_pending_transaction(jet_sql);
  std::int64_t changes = 0;
  for (const auto& sql : translation.statements) {
    sqlite3_stmt* stmt = prepare(sql, jet_sql);
    if (!stmt) continue;
    sqlite3_int64 before = sqlite3_total_changes64(db_);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE) {
      std::string message = kRefused + sqlite_error_in_spanish(db_);
      sqlite3_reset(stmt);
      throw Error(message, std::string(jet_sql), sql);
    }
    // sqlite3_changes64 keeps the count of the last INSERT/UPDATE/DELETE, so
    // a CREATE after it would report that count again: count only when rows
    // actually changed.
    if (sqlite3_total_changes64(db_) != before) changes += sqlite3_changes64(db_);
    sqlite3_reset(stmt);
  }
  if (translation.changes_schema) forget_translations();
  return changes;
}

Recordset SqliteConnection::open_recordset(std::string_view jet_sql) {
  if (!db_) throw Error("La conexión no está abierta", std::string(jet_sql));
  ++statement_number_;
  jet::Translation translation = translation_for(jet_sql);
  start_pending_transaction(jet_sql);
  std::vector<std::string> names;
  std::vector<std::vector<Value>> rows;
  for (std::size_t n = 0; n < translation.statements.size(); ++n) {
    const std::string& sql = translation.statements[n];
    sqlite3_stmt* stmt = prepare(sql, jet_sql);
    if (!stmt) continue;
    // Statements before the last prepare the result (temporary tables);
    // the last one gives the rows.
    bool last = n + 1 == translation.statements.size();
    int rc = sqlite3_step(stmt);
    // Columns are read after the first step: a statement kept prepared is
    // prepared again by that step when a table changed, and "*" may then
    // stand for other columns.
    int columns = sqlite3_column_count(stmt);
    if (last) {
      names.clear();
      for (int i = 0; i < columns; ++i) {
        const char* name = sqlite3_column_name(stmt, i);
        names.emplace_back(name ? name : "");
      }
    }
    for (; rc == SQLITE_ROW; rc = sqlite3_step(stmt)) {
      if (!last) continue;
      std::vector<Value> row;
      row.reserve(static_cast<std::size_t>(columns));
      for (int i = 0; i < columns; ++i) row.push_back(sqlite_column_value(stmt, i));
      rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
      std::string message = kRefused + sqlite_error_in_spanish(db_);
      sqlite3_reset(stmt);
      throw Error(message, std::string(jet_sql), sql);
    }
    sqlite3_reset(stmt);
  }
  if (translation.changes_schema) forget_translations();
  return Recordset(std::move(names), std::move(rows));
}

void SqliteConnection::execute_native(const std::string& sqlite_sql) {
  if (!db_) throw Error("La conexión no está abierta", {}, sqlite_sql);
  start_pending_transaction(sqlite_sql);
  char* message = nullptr;
  int rc = sqlite3_exec(db_, sqlite_sql.c_str(), nullptr, nullptr, &message);
  // The text may have created or dropped tables the cached translations know.
  forget_translations();
  if (rc != SQLITE_OK) {
    std::string text = sqlite_message_in_spanish(sqlite3_extended_errcode(db_),
                                                 message ? message : sqlite3_errmsg(db_));
    sqlite3_free(message);
    throw Error(kRefused + text, {}, sqlite_sql);
  }
}

void SqliteConnection::begin_transaction() {
  if (!db_) throw Error("La conexión no está abierta");
  if (transaction_pending_ || !sqlite3_get_autocommit(db_)) {
    throw Error("Ya hay una transacción abierta en esta conexión");
  }
  transaction_pending_ = true;
}

void SqliteConnection::commit_transaction() {
  if (!db_) throw Error("La conexión no está abierta");
  if (transaction_pending_) {  // nothing ran since begin: nothing to commit
    transaction_pending_ = false;
    return;
  }
  if (sqlite3_get_autocommit(db_)) throw Error("No hay una transacción abierta para confirmar");
  char* message = nullptr;
  if (sqlite3_exec(db_, "COMMIT", nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = sqlite_message_in_spanish(sqlite3_extended_errcode(db_),
                                                 message ? message : sqlite3_errmsg(db_));
    sqlite3_free(message);
    throw Error("No se pudo confirmar la transacción: " + text, {}, "COMMIT");
  }
}

void SqliteConnection::rollback_transaction() {
  if (!db_) throw Error("La conexión no está abierta");
  if (transaction_pending_) {
    transaction_pending_ = false;
    return;
  }
  if (sqlite3_get_autocommit(db_)) throw Error("No hay una transacción abierta para deshacer");
  // Statements kept prepared would otherwise hold read locks against ROLLBACK.
  statements_.clear();
  char* message = nullptr;
  if (sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = sqlite_message_in_spanish(sqlite3_extended_errcode(db_),
                                                 message ? message : sqlite3_errmsg(db_));
    sqlite3_free(message);
    throw Error("No se pudo deshacer la transacción: " + text, {}, "ROLLBACK");
  }
}

}  // namespace db
