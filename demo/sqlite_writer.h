// demo/sqlite_writer.h — writes the demo generator's rows into a SQLite file.
//
// The database is created from schema scripts (native SQLite DDL) and then
// filled in one transaction through prepared statements, with journaling and
// syncing off: a demo file is either written whole or thrown away, so there is
// nothing to protect while it is being written.
//
// Rows are inserted by column name. Each declared column is looked up in the
// table as the schema defines it (PRAGMA table_info, case-insensitive); columns
// the schema does not have are left out and remembered, so a small change in
// the schema does not break the generator, and columns the generator does not
// give stay Null (or take their default).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "demo/row_sink.h"

struct sqlite3;
struct sqlite3_stmt;

namespace demo {

class SqliteWriter final : public RowSink {
 public:
  // Builds a new database to take the place of `path`: runs every script of
  // `scripts` in order and starts the transaction. The rows go into
  // `path` + ".tmp", which finish() renames to `path`; until then an existing
  // `path` is left as it was. Throws std::runtime_error with a Spanish message
  // naming the file when a script is missing or fails. `statements` (SQL
  // texts) run after the scripts, for a schema that differs from a script's
  // by a column or two.
  SqliteWriter(const std::string& path, const std::vector<std::string>& scripts,
               const std::vector<std::string>& statements = {});
  ~SqliteWriter() override;
  SqliteWriter(const SqliteWriter&) = delete;
  SqliteWriter& operator=(const SqliteWriter&) = delete;

  int declare_table(std::string_view table, const std::vector<std::string>& columns) override;
  void add_row(int table, std::span<const Value> values) override;

  // Builds the indexes, commits, closes and puts the file in place. A writer
  // destroyed without finish() deletes its work file and leaves `path` alone.
  void finish();

  // Rows written per table (as the schema spells the table).
  const std::map<std::string, std::int64_t>& row_counts() const { return counts_; }
  // "Table.Column" of every declared column that the schema lacks, and the
  // declared tables the schema lacks (their rows are skipped).
  const std::set<std::string>& missing_columns() const { return missing_columns_; }
  const std::set<std::string>& missing_tables() const { return missing_tables_; }

 private:
  struct Target {
    std::string table;
    sqlite3_stmt* stmt = nullptr;  // null when the table does not exist
    std::vector<int> params;       // per declared column: bind index, or 0 to skip
    std::int64_t* count = nullptr;
  };

  void prepare(const std::vector<std::string>& scripts, const std::vector<std::string>& texts);
  void exec(const std::string& sql, const std::string& what);
  [[noreturn]] void fail(const std::string& what);

  std::string path_;
  std::string work_path_;
  sqlite3* db_ = nullptr;
  bool finished_ = false;
  std::vector<Target> targets_;
  std::map<std::string, std::int64_t> counts_;
  std::set<std::string> missing_columns_;
  std::set<std::string> missing_tables_;
  std::vector<std::pair<std::string, std::string>> deferred_indexes_;  // name, CREATE statement
};

// Reads a whole text file; throws std::runtime_error (Spanish) when it cannot.
std::string read_text_file(const std::string& path);

}  // namespace demo
