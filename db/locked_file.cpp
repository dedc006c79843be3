// db/locked_file.cpp — finding the locked file by trying to read each one.
#include "db/locked_file.h"

#include <sqlite3.h>

namespace db {

namespace {

// True when another connection keeps `path` from being read: a read of its
// header on a new connection, with no busy timeout, is refused as busy.
bool read_refused(const char* path) {
  sqlite3* probe = nullptr;
  bool refused = false;
  if (sqlite3_open_v2(path, &probe, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    const int rc = sqlite3_exec(probe, "PRAGMA schema_version", nullptr, nullptr, nullptr);
    refused = rc == SQLITE_BUSY || rc == SQLITE_LOCKED;
  }
  sqlite3_close(probe);
  return refused;
}

}  // namespace

std::string locked_database_file(sqlite3* db) {
  if (!db) return {};
  // Schema 0 is main, 1 is temp; attached databases follow.
  for (int i = 2;; ++i) {
    const char* schema = sqlite3_db_name(db, i);
    if (!schema) break;
    const char* path = sqlite3_db_filename(db, schema);
    if (path && *path && read_refused(path)) return path;
  }
  const char* main = sqlite3_db_filename(db, "main");
  return main ? main : "";
}

}  // namespace db
