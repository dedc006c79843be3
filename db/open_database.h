// db/open_database.h — the "open an Access file" operation of the session.
//
// The destination and staging databases are opened through this one helper:
// whatever the connection variable held is closed and replaced by a fresh
// SQLite connection on the file. It never throws; the caller tests the
// connection's state and reads last_error() to tell the user.
#pragma once

#include <memory>
#include <string>

#include "db/connection.h"
#include "db/sqlite_connection.h"

namespace db {

// Closes `conn` when it is open and replaces it with a new SqliteConnection
// opened on `path`. Afterwards `conn` is never null; its state() is 1 when
// the file opened, 0 otherwise (with the reason in last_error()). `journal`
// says whether the file is switched to WAL (the program's own files) or kept
// in its own journal mode (the KEL company database).
void open_database(const std::string& path, std::unique_ptr<Connection>& conn,
                   JournalMode journal = JournalMode::kWal);

}  // namespace db
