// db/sqlite_messages.h — SQLite's own error texts said in Spanish.
//
// Every failure that reaches the user is in Spanish, but SQLite reports in
// English ("UNIQUE constraint failed: T.id", "no such column: X"). The common
// ones get a Spanish sentence first; SQLite's text follows in parentheses so
// that nothing it said is lost. Texts the program's own functions raise (the
// jet_* functions already speak Spanish) pass through unchanged.
#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace db {

// The Spanish form of an SQLite error: `code` is the (extended) result code,
// `original` SQLite's message for it. "<Spanish> (<original>)" for the errors
// this file knows, `original` as it is for the others.
std::string sqlite_message_in_spanish(int code, std::string_view original);

// The same for the last error of `db` (sqlite3_extended_errcode and
// sqlite3_errmsg); `db` may be null, then `code` alone decides.
std::string sqlite_error_in_spanish(sqlite3* db, int code = 0);

}  // namespace db
