// db/open_database.cpp — replaces a connection variable by a fresh connection.
#include "db/open_database.h"

#include "db/sqlite_connection.h"

namespace db {

void open_database(const std::string& path, std::unique_ptr<Connection>& conn, JournalMode journal) {
  if (conn && conn->is_open()) conn->close();
  auto fresh = std::make_unique<SqliteConnection>();
  fresh->open(path, journal);  // the caller reads the state
  conn = std::move(fresh);
}

}  // namespace db
