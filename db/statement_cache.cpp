// db/statement_cache.cpp — least-recently-used cache of prepared statements.
#include "db/statement_cache.h"

namespace db {

sqlite3_stmt* StatementCache::get(sqlite3* db, const std::string& sql) {
  auto it = slots_.find(sql);
  if (it != slots_.end()) {
    order_.splice(order_.begin(), order_, it->second.order);
    sqlite3_reset(it->second.stmt);
    return it->second.stmt;
  }
  sqlite3_stmt* stmt = nullptr;
  int rc = sqlite3_prepare_v3(db, sql.c_str(), static_cast<int>(sql.size()),
                              SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
  if (rc != SQLITE_OK) {
    sqlite3_finalize(stmt);
    return nullptr;
  }
  if (!stmt) return nullptr;  // only blanks or comments: nothing to run
  if (slots_.size() >= capacity_) {
    const std::string& oldest = order_.back();
    sqlite3_finalize(slots_.at(oldest).stmt);
    slots_.erase(oldest);
    order_.pop_back();
  }
  order_.push_front(sql);
  slots_.emplace(sql, Slot{stmt, order_.begin()});
  return stmt;
}

void StatementCache::clear() {
  for (auto& [sql, slot] : slots_) sqlite3_finalize(slot.stmt);
  slots_.clear();
  order_.clear();
}

}  // namespace db
