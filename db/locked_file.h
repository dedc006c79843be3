// db/locked_file.h — which database file of a connection another connection
// holds locked.
//
// A statement may read several files at once (the connection's own and the
// databases it attached for `in '<path>'` clauses); when it has to wait for a
// lock, SQLite does not say which of them is held. The user must be told the
// file that is actually locked, so each file is tried on a connection of its
// own, without waiting.
#pragma once

#include <string>

struct sqlite3;

namespace db {

// The path of the first database attached to `db` that another connection
// keeps from being read right now; the path of `db`'s own (main) database when
// none is (the wait is then for the main file, or the lock was released
// meanwhile). Never throws and never waits; safe inside a busy handler, since
// `db` itself runs no statement.
std::string locked_database_file(sqlite3* db);

}  // namespace db
