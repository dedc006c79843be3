// db/connection.h — one of the program-wide database sessions.
//
// The session keeps three connections: the destination (the KEL company
// database), the staging database (Pasaje.mdb) and the source (an ODBC data
// source). A connection is "open" when state() is 1; opening never throws, the
// caller tests the state and reads last_error() to tell the user why.
//
// Statements are Jet SQL. A SQLite connection translates them (db/jet) before
// running them; an ODBC connection passes them through untouched, since they
// are written in the source's own dialect.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "db/recordset.h"

namespace db {

class Connection {
 public:
  virtual ~Connection() = default;

  // 1 when open, 0 when closed.
  virtual int state() const = 0;
  bool is_open() const { return state() == 1; }
  virtual void close() = 0;

  // Runs a statement that returns no rows; returns the number of rows it
  // changed. Throws db::Error when the statement is refused.
  virtual std::int64_t execute(std::string_view sql) = 0;

  // Runs a query and returns its rows, read whole. Throws db::Error.
  virtual Recordset open_recordset(std::string_view sql) = 0;

  virtual void begin_transaction() = 0;
  virtual void commit_transaction() = 0;
  virtual void rollback_transaction() = 0;

  // The "Data Source Name" property: the path of the database file (for ODBC,
  // the data source name).
  virtual std::string data_source_name() const = 0;

  // The engine's message for the last failed open (empty after a good one).
  virtual const std::string& last_error() const = 0;
};

}  // namespace db
