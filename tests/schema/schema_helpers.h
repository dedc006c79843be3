// tests/schema/schema_helpers.h — native SQLite helpers for the schema tests.
//
// The schema tests read the databases made from schema/*.sql with the plain
// SQLite C API (no Jet translation): the files must stay readable with
// standard SQLite tools.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace schema_test {

// Path of a script in the source tree's schema folder.
std::filesystem::path script(const std::string& name);

// An open SQLite database; closes at destruction.
class Db {
 public:
  explicit Db(const std::filesystem::path& path);
  ~Db();
  Db(const Db&) = delete;
  Db& operator=(const Db&) = delete;
  sqlite3* handle() const { return db_; }

  // Runs native SQL; fails the current test with the engine's message.
  void exec(const std::string& sql);
  // Rows of a query, every value as text ("NULL" for Null).
  std::vector<std::vector<std::string>> rows(const std::string& sql);
  // The single value of a query as text.
  std::string value(const std::string& sql);

 private:
  sqlite3* db_ = nullptr;
};

// Creates <dir>/kel.db from kel.sql and kel_base.sql, asserting success.
std::filesystem::path make_kel(const std::filesystem::path& dir);
// Creates <dir>/Pasaje.mdb from pasaje.sql, asserting success.
std::filesystem::path make_staging(const std::filesystem::path& dir);

}  // namespace schema_test
