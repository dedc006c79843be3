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

// A read-only connection for checking what the generator wrote.
class Db {
 public:
  explicit Db(const std::string& path) {
    if (sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
      throw std::runtime_error("cannot open " + path);
    }
  }
  ~Db() { sqlite3_close(db_); }
  Db(const Db&) = delete;
  Db& operator=(const Db&) = delete;

  // All rows, each column as text ("" for Null).
  std::vector<std::vector<std::string>> rows(std::string_view sql) const {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db_, std::string(sql).c_str(), -1, &st, nullptr) != SQLITE_OK)
      throw std::runtime_error(std::string(sqlite3_errmsg(db_)) + " in " + std::string(sql));
    std::vector<std::vector<std::string>> out;
    while (sqlite3_step(st) == SQLITE_ROW) {
      auto& row = out.emplace_back();
      for (int i = 0; i < sqlite3_column_count(st); ++i) {
        const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
        row.emplace_back(t ? t : "");
      }
    }
    sqlite3_finalize(st);
    return out;
  }
  // The first value of a query, as a number (0 when none) or as text.
  std::int64_t integer(std::string_view sql) const { const auto v = text(sql); return v.empty() ? 0 : std::stoll(v); }
  std::string text(std::string_view sql) const {
    const auto r = rows(sql);
    return r.empty() || r[0].empty() ? "" : r[0][0];
  }

 private:
  sqlite3* db_ = nullptr;
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
