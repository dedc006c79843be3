// db/attachments.h — bookkeeping of the databases a connection has attached.
//
// Statements read other databases by path (`in '<path>'`); each path is
// attached once under a generated schema name (src1, src2, ...) and kept
// attached for the next statements, since the transfer reads the staging
// database thousands of times. SQLite caps the number of attached databases,
// so when the table is full the least recently used attachment that the
// statement being prepared does not itself need is given up.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace db {

class AttachmentTable {
 public:
  // The schema name of `key` when attached, recording its use by statement
  // number `statement`; nullopt when it is not attached.
  std::optional<std::string> use(const std::string& key, std::uint64_t statement);

  // A schema name never given before on this table.
  std::string next_schema_name();

  // Records that `key` is attached as `schema`, used by `statement`.
  void add(const std::string& key, const std::string& schema, std::uint64_t statement);

  // The key of the least recently used attachment that statement number
  // `statement` does not use, or nullopt when the statement uses them all.
  std::optional<std::string> least_recently_used(std::uint64_t statement) const;

  // Schema name of `key` (or "" when not attached), without recording a use.
  std::string schema_of(const std::string& key) const;

  void remove(const std::string& key);
  void clear() { entries_.clear(); }
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::string key;
    std::string schema;
    std::uint64_t last_use = 0;       // tick of the last use, for LRU
    std::uint64_t last_statement = 0;  // number of the last statement that used it
  };
  std::vector<Entry> entries_;
  std::uint64_t tick_ = 0;
  int schema_counter_ = 0;
};

}  // namespace db
