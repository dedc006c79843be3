// tests/demo/demo_test_util.h — small helpers shared by the demo generator tests.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "base/number.h"
#include "demo/row_sink.h"
#include "support/temp_dir.h"

namespace demo_test {

// The shared temporary folder, with paths as the generator takes them.
class TempDir : public ::TempDir {
 public:
  std::string file(const std::string& name) const { return (path() / name).string(); }
};

// Runs `action`, which must throw a runtime_error whose text contains `piece`.
template <typename Action>
void ExpectError(Action action, const std::string& piece) {
  try {
    action();
    ADD_FAILURE() << "no error; expected one mentioning " << piece;
  } catch (const std::runtime_error& e) {
    EXPECT_NE(std::string(e.what()).find(piece), std::string::npos) << e.what();
  }
}

// What the generator wrote to `file`, read back with plain SQLite (with
// `attach` attached as "kel" when given). A query SQLite refuses fails the test.
struct Db {
  std::filesystem::path file;
  std::filesystem::path attach = {};
  // Every row, its values joined by "|", Null as "".
  std::vector<std::string> rows(const std::string& sql) const {
    std::vector<std::string> out;
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    if (!attach.empty()) sqlite3_exec(db, ("ATTACH '" + attach.string() + "' AS kel").c_str(), nullptr, nullptr, nullptr);
    char* message = nullptr;
    auto add = [](void* rows, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "");
      static_cast<std::vector<std::string>*>(rows)->push_back(row);
      return 0;
    };
    if (sqlite3_exec(db, sql.c_str(), add, &out, &message) != SQLITE_OK)
      ADD_FAILURE() << (message ? message : "?") << " en " << sql;
    sqlite3_free(message);
    sqlite3_close(db);
    return out;
  }
  // The first row of a one-column query as text ("" when none) or as a number (0 when none).
  std::string text(const std::string& sql) const {
    const auto r = rows(sql);
    return r.empty() ? "" : r[0];
  }
  std::int64_t integer(const std::string& sql) const { const auto v = text(sql); return v.empty() ? 0 : std::stoll(v); }
};

// A sink that only counts rows per table name.
class CountingSink : public demo::RowSink {
 public:
  int declare_table(std::string_view table, const std::vector<std::string>&) override {
    names_.emplace_back(table);
    return static_cast<int>(names_.size()) - 1;
  }
  void add_row(int table, std::span<const demo::Value>) override { ++counts_[names_.at(static_cast<std::size_t>(table))]; }
  std::int64_t count(const std::string& table) const {
    auto it = counts_.find(table);
    return it == counts_.end() ? 0 : it->second;
  }

 private:
  std::vector<std::string> names_;
  std::map<std::string, std::int64_t> counts_;
};

// The source's clean-up of a staged number: trim, then drop the character
// before the check digit when a dash, underscore, dash again or dot is
// present (each once, wherever it stands).
inline std::string staged_clean(std::string n) {
  while (!n.empty() && n.front() == ' ') n.erase(0, 1);
  while (!n.empty() && n.back() == ' ') n.pop_back();
  for (char sep : {'-', '_', '-', '.'}) {
    if (n.find(sep) != std::string::npos && n.size() >= 2) n = n.substr(0, n.size() - 2) + n.back();
  }
  return n;
}

// Val as the transfer's statements read a number (the program's one Val).
using base::Val;

inline std::string schema_dir() { return std::string(KEL_SOURCE_DIR) + "/schema"; }

}  // namespace demo_test
