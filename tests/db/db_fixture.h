// tests/db/db_fixture.h — what the database tests share: a temporary folder
// that makes SQLite files, a fixture with such a folder and a connection, and
// typed reads of native queries on a bare SQLite handle.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sqlite3.h>

#include "db/error.h"
#include "db/jet/functions.h"
#include "db/sqlite_connection.h"
#include "support/temp_dir.h"

namespace testing_db {

// A TempDir whose files are named by texts, with SQLite files made from
// native SQL.
class TempFolder : public TempDir {
 public:
  std::string file(const std::string& name) const { return (path() / name).string(); }
  // Writes `text` to the file `name` in the folder and returns its path.
  std::string write(const std::string& name, const std::string& text) const {
    return TempDir::write(name, text).string();
  }
  // Creates the SQLite database `name` and runs native `sql` on it (outside
  // a transaction, so that it may set the journal mode).
  std::string database(const std::string& name, const std::string& sql = "") const {
    sqlite3* db = nullptr;
    sqlite3_open(file(name).c_str(), &db);
    if (!sql.empty()) sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return file(name);
  }
};

// A test with its own folder and a connection to open in it.
class SqliteTest : public testing::Test {
 protected:
  // Creates `name` in the folder, runs native `sql` on it and opens it.
  void open(const std::string& sql = "", const std::string& name = "main.db") {
    ASSERT_TRUE(conn.open(folder.database(name, sql))) << conn.last_error();
  }
  // The message of the db::Error that `f` throws, or "<sin error>".
  template <typename F>
  static std::string error_of(F f) {
    try {
      f();
    } catch (const db::Error& e) {
      return e.message();
    }
    return "<sin error>";
  }

  TempFolder folder;
  db::SqliteConnection conn;
};

// Runs native `sql` on `db`; a refusal fails the test.
inline void exec(sqlite3* db, const std::string& sql) {
  ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
}

// Each row's first value of a native query on `db`, with its SQLite type:
// "int:12", "real:1.5" (as CStr writes it), "text:abc" or "null"; a failed
// step adds "error:<message>", and a query SQLite cannot prepare gives only
// "prepare:<message>". The type is part of the answer: a jet_* function
// must hand SQLite the type of Jet's value, not its text.
inline std::vector<std::string> typed_column(sqlite3* db, const std::string& sql) {
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
    return {"prepare:" + std::string(sqlite3_errmsg(db))};
  std::vector<std::string> out;
  int rc = SQLITE_ROW;
  while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    switch (sqlite3_column_type(stmt, 0)) {
      case SQLITE_NULL: out.push_back("null"); break;
      case SQLITE_INTEGER: out.push_back("int:" + std::to_string(sqlite3_column_int64(stmt, 0))); break;
      case SQLITE_FLOAT: out.push_back("real:" + db::jet::cstr_number(sqlite3_column_double(stmt, 0))); break;
      default: {
        // Read with its length: a text may hold a NUL.
        const auto* text = static_cast<const char*>(sqlite3_column_blob(stmt, 0));
        out.push_back("text:" + std::string(text ? text : "", static_cast<std::size_t>(sqlite3_column_bytes(stmt, 0))));
      }
    }
  }
  if (rc != SQLITE_DONE) out.push_back("error:" + std::string(sqlite3_errmsg(db)));
  sqlite3_finalize(stmt);
  return out;
}

}  // namespace testing_db
