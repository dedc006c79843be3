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
#include <functional>
#include <string>
#include <string_view>
#include <vector>

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

  // Names of the database's tables in the order the engine lists them (for
  // SQLite the order they were created in), without the engine's own tables.
  // Throws db::Error.
  virtual std::vector<std::string> table_names() = 0;

  // ---- What only some engines offer; the defaults say "not here". --------

  // Runs the engine's own SQL, untranslated. An ODBC connection passes every
  // statement through anyway, so by default this is execute(). Throws
  // db::Error.
  virtual void execute_native(const std::string& sql) { execute(sql); }

  // Makes the database file at `path` readable by the statements that name
  // it with in '<path>', now rather than when they run (SQLite cannot attach
  // a file inside a transaction). Throws db::Error when it cannot be read.
  virtual void attach_path(const std::string& path) { (void)path; }

  // True while a transaction is open on the engine (a SQLite statement that
  // fails may end one by itself).
  virtual bool in_transaction() const { return false; }

  // The engine setting `name` ("cache_size", "main.journal_mode") and a way
  // to change it; empty / false for engines without such settings. A setting
  // that cannot change is not an error: callers use settings for speed only.
  virtual std::string engine_setting(const std::string& name) {
    (void)name;
    return {};
  }
  virtual bool change_engine_setting(const std::string& name, const std::string& value) {
    (void)name;
    (void)value;
    return false;
  }

  // Calls `wait(attempt)` (0, 1, 2...) each time a statement finds its file
  // locked by another program; the statement retries while it returns true
  // and fails as busy once it returns false. False when the engine has no
  // such hook (the handler is then never called).
  virtual bool set_busy_handler(std::function<bool(int attempt)> wait) {
    (void)wait;
    return false;
  }

  // Calls `tick` every `instructions` steps of the engine while a statement
  // runs, so that one long statement does not keep the caller from
  // repainting; an empty `tick` removes it. `tick` must not use this
  // connection. False when the engine has no such hook.
  virtual bool set_progress_handler(int instructions, std::function<void()> tick) {
    (void)instructions;
    (void)tick;
    return false;
  }

  // The file a waiting statement is waiting for, to name it to the user: a
  // statement may read several files (its own and those of `in '<path>'`
  // clauses), and the one held is the one to name. Never waits, never throws.
  virtual std::string locked_file() { return data_source_name(); }
};

}  // namespace db
