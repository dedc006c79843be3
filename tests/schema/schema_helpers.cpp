// tests/schema/schema_helpers.cpp — native SQLite helpers for the schema tests.
#include "schema_helpers.h"

#include <gtest/gtest.h>

#include "schema/database_scripts.h"

namespace schema_test {

std::filesystem::path script(const std::string& name) {
  return std::filesystem::path(KEL_SOURCE_DIR) / "schema" / name;
}

Db::Db(const std::filesystem::path& path) {
  if (sqlite3_open_v2(path.string().c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << "no se pudo abrir " << path << ": " << sqlite3_errmsg(db_);
  }
}

Db::~Db() { sqlite3_close(db_); }

void Db::exec(const std::string& sql) {
  char* message = nullptr;
  if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    ADD_FAILURE() << (message ? message : "?") << "\n  en: " << sql;
  }
  sqlite3_free(message);
}

std::vector<std::vector<std::string>> Db::rows(const std::string& sql) {
  std::vector<std::vector<std::string>> result;
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << sqlite3_errmsg(db_) << "\n  en: " << sql;
    return result;
  }
  while (sqlite3_step(stmt) == SQLITE_ROW) {
    std::vector<std::string> row;
    for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
      const unsigned char* text = sqlite3_column_text(stmt, i);
      row.push_back(text ? reinterpret_cast<const char*>(text) : "NULL");
    }
    result.push_back(std::move(row));
  }
  sqlite3_finalize(stmt);
  return result;
}

std::string Db::value(const std::string& sql) {
  const auto result = rows(sql);
  if (result.empty() || result.front().empty()) {
    ADD_FAILURE() << "sin filas: " << sql;
    return {};
  }
  return result.front().front();
}

std::filesystem::path make_kel(const std::filesystem::path& dir) {
  const auto path = dir / "kel.db";
  std::string error;
  EXPECT_TRUE(schema::create_database_from_scripts(path, {script("kel.sql"), script("kel_base.sql")}, error))
      << error;
  return path;
}

std::filesystem::path make_staging(const std::filesystem::path& dir) {
  const auto path = dir / "Pasaje.mdb";
  std::string error;
  EXPECT_TRUE(schema::create_database_from_scripts(path, {script("pasaje.sql")}, error)) << error;
  return path;
}

}  // namespace schema_test
