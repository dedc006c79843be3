// db/table_counts.cpp — row counts per table (see table_counts.h).
#include "db/table_counts.h"

#include <sqlite3.h>

namespace db {

std::vector<std::pair<std::string, std::int64_t>> table_row_counts(const std::string& path) {
  std::vector<std::pair<std::string, std::int64_t>> counts;
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
    sqlite3_close_v2(db);
    return counts;
  }
  sqlite3_busy_timeout(db, 5000);
  std::vector<std::string> tables;
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db,
                         "SELECT name FROM main.sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
                         "ESCAPE '\\' ORDER BY rowid",
                         -1, &st, nullptr) == SQLITE_OK) {
    while (sqlite3_step(st) == SQLITE_ROW) tables.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
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
  sqlite3_close_v2(db);
  return counts;
}

}  // namespace db
