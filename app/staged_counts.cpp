// app/staged_counts.cpp — row counts of the staging tables (see staged_counts.h).
#include "app/staged_counts.h"

#include <sqlite3.h>

#include "db/sqlite_connection.h"

namespace app {

std::vector<std::pair<std::string, std::int64_t>> StagedRowCounts(db::Connection* staging) {
  std::vector<std::pair<std::string, std::int64_t>> counts;
  auto* conn = dynamic_cast<db::SqliteConnection*>(staging);
  if (conn == nullptr || conn->handle() == nullptr) return counts;
  sqlite3* db = conn->handle();

  std::vector<std::string> tables;
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, "SELECT name FROM main.sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid",
                         -1, &st, nullptr) == SQLITE_OK) {
    while (sqlite3_step(st) == SQLITE_ROW)
      tables.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
  }
  sqlite3_finalize(st);

  for (const std::string& table : tables) {
    std::string sql = "SELECT count(*) FROM main.\"";
    for (char c : table) sql += c == '"' ? std::string("\"\"") : std::string(1, c);
    sql += "\"";
    st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
      counts.emplace_back(table, sqlite3_column_int64(st, 0));
    sqlite3_finalize(st);
  }
  return counts;
}

}  // namespace app
