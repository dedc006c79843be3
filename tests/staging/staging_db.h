// tests/staging/staging_db.h — small SQLite databases for the staging load
// tests: create a file from native SQL, open it as the staging connection,
// and read single values back.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "db/sqlite_connection.h"
#include "base/value.h"
#include "support/query_rows.h"
#include "support/sqlite_file.h"

// Creates (replacing) a SQLite file and runs `sql` in it.
inline void MakeDatabase(const std::filesystem::path& path, const std::string& sql) {
  std::filesystem::remove(path);
  test_support::run_sqlite(path, sql);
}

inline std::unique_ptr<db::SqliteConnection> OpenStaging(const std::filesystem::path& path) {
  auto connection = std::make_unique<db::SqliteConnection>();
  EXPECT_TRUE(connection->open(path.string())) << connection->last_error();
  return connection;
}

// The first row of a one-column native query, as text ("" for Null or no
// row). A statement SQLite refuses fails the test.
inline std::string QueryText(db::SqliteConnection& connection, const std::string& sql) {
  const std::string value = test_support::QueryValue(connection, sql);
  return value == "-" ? "" : value;
}

// True when one of the warnings contains `piece`.
inline bool Contains(const std::vector<std::string>& warnings, const std::string& piece) {
  for (const auto& w : warnings)
    if (w.find(piece) != std::string::npos) return true;
  return false;
}

inline long long QueryCount(db::SqliteConnection& connection, const std::string& table) {
  std::string text = QueryText(connection, "SELECT count(*) FROM " + table);
  return text.empty() ? -1 : std::stoll(text);
}
