// db/statement_cache.h — prepared SQLite statements kept for reuse.
//
// The transfer runs the same few statements over and over (one per person,
// per month); preparing each once and resetting it between runs saves the
// parse and plan every time.
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <unordered_map>

#include <sqlite3.h>

namespace db {

class StatementCache {
 public:
  explicit StatementCache(std::size_t capacity = 64) : capacity_(capacity) {}
  ~StatementCache() { clear(); }
  StatementCache(const StatementCache&) = delete;
  StatementCache& operator=(const StatementCache&) = delete;

  // A prepared statement for `sql` on `db`, reset and ready to step: the
  // cached one or a newly prepared one. Returns nullptr when SQLite refuses
  // the text (sqlite3_errmsg(db) says why).
  sqlite3_stmt* get(sqlite3* db, const std::string& sql);

  // Finalizes every cached statement (before closing or detaching).
  void clear();

 private:
  struct Slot {
    sqlite3_stmt* stmt;
    std::list<std::string>::iterator order;
  };
  std::size_t capacity_;
  std::unordered_map<std::string, Slot> slots_;
  std::list<std::string> order_;  // most recently used first
};

}  // namespace db
