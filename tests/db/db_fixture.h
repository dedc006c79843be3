// tests/db/db_fixture.h — what the database tests share: a fresh folder under
// the system's temporary folder, removed with everything in it when the test
// is done, and a fixture with such a folder and a SQLite connection.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include <sqlite3.h>

#include "db/error.h"
#include "db/sqlite_connection.h"

namespace testing_db {

class TempFolder {
 public:
  explicit TempFolder(const std::string& name = "db") {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("kel_" + name + "_" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

  // Writes `text` to the file `name` in the folder and returns its path.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return file(name);
  }

  // The whole content of a file ("" when it cannot be read).
  static std::string read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  // Creates the SQLite database `name` and runs native `sql` on it.
  std::string database(const std::string& name, const std::string& sql = "") const {
    sqlite3* db = nullptr;
    sqlite3_open(file(name).c_str(), &db);
    if (!sql.empty()) sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return file(name);
  }

 private:
  std::filesystem::path path_;
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
