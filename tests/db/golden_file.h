// tests/db/golden_file.h — reading golden test files (tests/db/golden/*.test).
//
// A golden file is a list of records separated by blank lines: "statement ok",
// "statement error <text>", "query", "explain", "connect <name>" and "sqlite",
// each followed by its SQL and, for query and explain, a "----" line and the
// expected output. Lines starting with "#" between records are comments.
#pragma once

#include <string>
#include <vector>

namespace golden {

enum class Kind { kStatementOk, kStatementError, kQuery, kExplain, kConnect, kSqlite };

struct Record {
  Kind kind = Kind::kStatementOk;
  int line = 0;                        // 1-based line of the directive
  std::string argument;                // error text for "statement error", name for "connect"
  std::string sql;                     // lines joined with "\n"
  std::vector<std::string> expected;   // lines after "----"
};

struct File {
  std::vector<Record> records;
  std::vector<std::string> problems;  // "line N: ..." for malformed records
};

// Parses the text of a golden file.
File parse(const std::string& text);

}  // namespace golden
