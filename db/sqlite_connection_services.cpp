// db/sqlite_connection_services.cpp — what the SQLite connection offers
// beyond statements (see connection.h): its table names, the transaction
// state, engine settings (pragmas), the busy and progress handlers and the file a wait is for.
#include <sqlite3.h>

#include "db/error.h"
#include "db/locked_file.h"
#include "db/sqlite_connection.h"

namespace db {

std::vector<std::string> SqliteConnection::table_names() {
  if (!db_) throw Error("La conexión no está abierta");
  std::vector<std::string> names;
  sqlite3_stmt* stmt = nullptr;
  // sqlite_master lists tables in the order they were created: the staging
  // catalogue's order.
  const char* sql = "SELECT name FROM main.sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'";
  if (sqlite3_prepare_v2(db_, sql, -1, &stmt, nullptr) != SQLITE_OK) {
    throw Error(std::string("No se pudo leer la lista de tablas: ") + sqlite3_errmsg(db_));
  }
  while (sqlite3_step(stmt) == SQLITE_ROW) names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
  sqlite3_finalize(stmt);
  return names;
}

bool SqliteConnection::in_transaction() const { return db_ && !sqlite3_get_autocommit(db_); }

std::string SqliteConnection::engine_setting(const std::string& name) {
  std::string value;
  if (!db_) return value;
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db_, ("PRAGMA " + name).c_str(), -1, &stmt, nullptr) == SQLITE_OK &&
      sqlite3_step(stmt) == SQLITE_ROW) {
    const unsigned char* text = sqlite3_column_text(stmt, 0);
    if (text) value = reinterpret_cast<const char*>(text);
  }
  sqlite3_finalize(stmt);
  return value;
}

bool SqliteConnection::change_engine_setting(const std::string& name, const std::string& value) {
  return db_ && sqlite3_exec(db_, ("PRAGMA " + name + " = " + value).c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SqliteConnection::set_busy_handler(std::function<bool(int attempt)> wait) {
  if (!db_) return false;
  busy_wait_ = std::move(wait);
  sqlite3_busy_handler(
      db_, [](void* self, int attempt) { return static_cast<SqliteConnection*>(self)->busy_wait_(attempt) ? 1 : 0; },
      this);
  return true;
}

bool SqliteConnection::set_progress_handler(int instructions, std::function<void()> tick) {
  if (!db_) return false;
  progress_tick_ = std::move(tick);
  if (!progress_tick_) {
    sqlite3_progress_handler(db_, 0, nullptr, nullptr);
    return true;
  }
  sqlite3_progress_handler(
      db_, instructions,
      [](void* self) {
        static_cast<SqliteConnection*>(self)->progress_tick_();
        return 0;  // never interrupts the statement
      },
      this);
  return true;
}

std::string SqliteConnection::locked_file() {
  return db_ ? locked_database_file(db_) : data_source_name();
}

SqliteConnection* as_sqlite(Connection& connection) { return dynamic_cast<SqliteConnection*>(&connection); }

}  // namespace db
