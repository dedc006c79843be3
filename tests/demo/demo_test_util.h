// tests/demo/demo_test_util.h — small helpers shared by the demo generator tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "demo/row_sink.h"
#include "support/plain_sqlite.h"
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

// What the generator wrote, read back with plain SQLite.
using Db = test_support::PlainDb;

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

inline std::string schema_dir() { return std::string(KEL_SOURCE_DIR) + "/schema"; }

}  // namespace demo_test
