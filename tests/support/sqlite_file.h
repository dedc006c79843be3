// tests/support/sqlite_file.h — native SQL on a SQLite file by its path, for
// tests that arrange or read a database the program keeps open elsewhere.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "db/jet/collation.h"

namespace test_support {

// SQLite's collation callback over Jet's text order, so native queries can
// say "COLLATE jet_es" for the order the program's statements give.
inline int compare_jet_text(void*, int a_size, const void* a, int b_size, const void* b) {
  return db::jet::compare_text(std::string_view(static_cast<const char*>(a), static_cast<std::size_t>(a_size)),
                               std::string_view(static_cast<const char*>(b), static_cast<std::size_t>(b_size)));
}

// Runs native statements in one transaction on `file` (created, with its
// folder, when missing). A refused statement fails the test.
inline void run_sqlite(const std::filesystem::path& file, const std::string& sql) {
  std::filesystem::create_directories(file.parent_path());
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.string().c_str(), &db), SQLITE_OK);
  char* err = nullptr;
  int rc = sqlite3_exec(db, ("BEGIN;" + sql + ";\nCOMMIT;").c_str(), nullptr, nullptr, &err);
  std::string message = err ? err : "";
  sqlite3_free(err);
  sqlite3_close(db);
  ASSERT_EQ(rc, SQLITE_OK) << message;
}

// Calls `row` with the statement at each row of a native query on `file`
// (opened read-only, with `attach` attached as "kel" when given, and the
// collation jet_es known). A query
// SQLite refuses fails the test when `must_run`, otherwise gives no rows.
template <typename Row>
void for_each_row(const std::filesystem::path& file, const std::string& sql, const std::filesystem::path& attach,
                  bool must_run, Row row) {
  sqlite3* h = nullptr;
  sqlite3_open_v2(file.string().c_str(), &h, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_create_collation_v2(h, db::jet::kCollationName, SQLITE_UTF8, nullptr, compare_jet_text, nullptr);
  if (!attach.empty()) sqlite3_exec(h, ("ATTACH '" + attach.string() + "' AS kel").c_str(), nullptr, nullptr, nullptr);
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(h, sql.c_str(), -1, &st, nullptr) != SQLITE_OK && must_run)
    ADD_FAILURE() << sqlite3_errmsg(h) << " en " << sql;
  while (st && sqlite3_step(st) == SQLITE_ROW) row(st);
  sqlite3_finalize(st);
  sqlite3_close(h);
}

inline std::string column_text(sqlite3_stmt* st, int i) {
  const unsigned char* t = sqlite3_column_text(st, i);
  return t ? reinterpret_cast<const char*>(t) : "";
}

// Every row of a native query on `file`, its values joined by "|", Null as "".
inline std::vector<std::string> native_rows(const std::filesystem::path& file, const std::string& sql,
                                            const std::filesystem::path& attach = {}) {
  std::vector<std::string> rows;
  for_each_row(file, sql, attach, true, [&](sqlite3_stmt* st) {
    std::string row;
    for (int i = 0; i < sqlite3_column_count(st); ++i) row += (i ? "|" : "") + column_text(st, i);
    rows.push_back(row);
  });
  return rows;
}

// The first value of a native query on `file`, as text ("" for none, or
// when the query is refused).
inline std::string query_text(const std::filesystem::path& file, const std::string& sql) {
  std::string out;
  bool first = true;
  for_each_row(file, sql, {}, false, [&](sqlite3_stmt* st) {
    if (first) out = column_text(st, 0);
    first = false;
  });
  return out;
}

}  // namespace test_support
