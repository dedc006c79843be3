// tests/support/query_rows.h — the rows (or the first value) of a native
// query on a SQLite connection, as text, for tests that compare whole tables.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "db/sqlite_connection.h"

namespace test_support {

// Every row of `native_sql`, its values joined by "|", Null as "-", in the
// query's order. A statement SQLite refuses fails the test.
inline std::vector<std::string> QueryRows(db::SqliteConnection& connection, const std::string& native_sql) {
  std::vector<std::string> result;
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(connection.handle(), native_sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << sqlite3_errmsg(connection.handle()) << " en " << native_sql;
    return result;
  }
  while (sqlite3_step(stmt) == SQLITE_ROW) {
    std::string row;
    for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
      if (i > 0) row += "|";
      const unsigned char* text = sqlite3_column_text(stmt, i);
      row += text ? reinterpret_cast<const char*>(text) : "-";
    }
    result.push_back(row);
  }
  sqlite3_finalize(stmt);
  return result;
}

// The first row of `native_sql` as QueryRows gives it ("" when there is no
// row). A statement SQLite refuses fails the test.
inline std::string QueryValue(db::SqliteConnection& connection, const std::string& native_sql) {
  const std::vector<std::string> rows = QueryRows(connection, native_sql);
  return rows.empty() ? "" : rows.front();
}

}  // namespace test_support
