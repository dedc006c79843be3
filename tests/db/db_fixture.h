// tests/db/db_fixture.h — what the database tests share: a temporary folder
// that makes SQLite files, and a fixture with such a folder and a connection.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include <sqlite3.h>

#include "db/error.h"
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

}  // namespace testing_db
