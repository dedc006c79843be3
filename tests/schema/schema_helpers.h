// tests/schema/schema_helpers.h — native SQLite helpers for the schema tests.
//
// The schema tests read the databases made from schema/*.sql with the plain
// SQLite C API (no Jet translation): the files must stay readable with
// standard SQLite tools.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "schema/database_scripts.h"
#include "support/temp_dir.h"

namespace schema_test {

using Rows = std::vector<std::string>;

// A database file read and written with plain SQLite, opened afresh for each
// call; a statement or query the engine refuses fails the current test with
// its message. (The shared SQLite-file helpers register the translator's
// collation, which would tie these tests to the translator.)
struct Db {
  std::filesystem::path file;
  // Runs native statements.
  void exec(const std::string& sql) const { rows(sql); }
  // Every row the statements of `sql` give, its values joined by "|", Null as "-".
  Rows rows(const std::string& sql) const {
    Rows out;
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    char* message = nullptr;
    auto add = [](void* rows, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "-");
      static_cast<Rows*>(rows)->push_back(row);
      return 0;
    };
    if (sqlite3_exec(db, sql.c_str(), add, &out, &message) != SQLITE_OK)
      ADD_FAILURE() << (message ? message : "?") << "\n  en: " << sql;
    sqlite3_free(message);
    sqlite3_close(db);
    return out;
  }
  // The single value of a query as text.
  std::string value(const std::string& sql) const {
    const Rows result = rows(sql);
    if (result.empty()) ADD_FAILURE() << "sin filas: " << sql;
    return result.empty() ? "" : result.front();
  }
};

// Creates <dir>/<name> from the named scripts of the source tree's schema folder.
inline std::filesystem::path make_database(const std::filesystem::path& dir, const std::string& name,
                                           const std::vector<std::string>& scripts) {
  std::vector<std::filesystem::path> paths;
  for (const auto& s : scripts) paths.push_back(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / s);
  std::string error;
  EXPECT_TRUE(schema::create_database_from_scripts(dir / name, paths, error)) << error;
  return dir / name;
}
inline std::filesystem::path make_kel(const std::filesystem::path& dir) {
  return make_database(dir, "kel.db", {"kel.sql", "kel_base.sql"});
}
inline std::filesystem::path make_staging(const std::filesystem::path& dir) {
  return make_database(dir, "Pasaje.mdb", {"pasaje.sql"});
}

}  // namespace schema_test
