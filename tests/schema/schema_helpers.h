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

// An open SQLite database; closes at destruction. Failures fail the current test
// with the engine's message.
class Db {
 public:
  explicit Db(const std::filesystem::path& path) {
    if (sqlite3_open_v2(path.string().c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
      ADD_FAILURE() << "no se pudo abrir " << path << ": " << sqlite3_errmsg(db_);
  }
  ~Db() { sqlite3_close(db_); }
  Db(const Db&) = delete;
  Db& operator=(const Db&) = delete;
  sqlite3* handle() const { return db_; }

  void exec(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK)
      ADD_FAILURE() << (message ? message : "?") << "\n  en: " << sql;
    sqlite3_free(message);
  }
  // Rows of a query, every value as text ("NULL" for Null).
  std::vector<std::vector<std::string>> rows(const std::string& sql) {
    std::vector<std::vector<std::string>> result;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sqlite3_errmsg(db_) << "\n  en: " << sql;
      return result;
    }
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      std::vector<std::string>& row = result.emplace_back();
      for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
        const unsigned char* text = sqlite3_column_text(stmt, i);
        row.push_back(text ? reinterpret_cast<const char*>(text) : "NULL");
      }
    }
    sqlite3_finalize(stmt);
    return result;
  }
  // The single value of a query as text.
  std::string value(const std::string& sql) {
    const auto result = rows(sql);
    if (result.empty() || result.front().empty()) ADD_FAILURE() << "sin filas: " << sql;
    return result.empty() || result.front().empty() ? "" : result.front().front();
  }

 private:
  sqlite3* db_ = nullptr;
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
