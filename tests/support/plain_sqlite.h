// tests/support/plain_sqlite.h — a database file read and written with the
// plain SQLite C API, for tests of what must stay readable with standard
// SQLite tools (the schemas, the demo's files). Unlike sqlite_file.h it
// registers no collation of the translator, so it needs no library of the
// program.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace test_support {

// The file is opened afresh for each call (with `attach` attached as "kel"
// when given); a statement or query the engine refuses fails the current test
// with its message.
struct PlainDb {
  std::filesystem::path file;
  std::filesystem::path attach = {};
  // Runs native statements.
  void exec(const std::string& sql) const { rows(sql); }
  // Every row the statements of `sql` give, its values joined by "|", Null as "-".
  std::vector<std::string> rows(const std::string& sql) const {
    std::vector<std::string> out;
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    if (!attach.empty()) sqlite3_exec(db, ("ATTACH '" + attach.string() + "' AS kel").c_str(), nullptr, nullptr, nullptr);
    char* message = nullptr;
    auto add = [](void* rows, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "-");
      static_cast<std::vector<std::string>*>(rows)->push_back(row);
      return 0;
    };
    if (sqlite3_exec(db, sql.c_str(), add, &out, &message) != SQLITE_OK)
      ADD_FAILURE() << (message ? message : "?") << "\n  en: " << sql;
    sqlite3_free(message);
    sqlite3_close(db);
    return out;
  }
  // The first row of a query as text; no row fails the test.
  std::string value(const std::string& sql) const {
    const std::vector<std::string> result = rows(sql);
    if (result.empty()) ADD_FAILURE() << "sin filas: " << sql;
    return result.empty() ? "" : result.front();
  }
  // The single value of a query as a number (a count).
  std::int64_t integer(const std::string& sql) const {
    const std::string v = value(sql);
    return v.empty() || v == "-" ? 0 : std::stoll(v);
  }
};

}  // namespace test_support
