// db/odbc_connection.h — a connection to an ODBC data source (unixODBC).
//
// The source system may be reached through ODBC instead of by file. Its
// statements are written in the source's own dialect, so they are passed to
// the driver untranslated. Result sets are read whole like SQLite ones, with
// values mapped onto db::Value: integers, doubles, texts, and dates as ISO
// texts ("YYYY-MM-DD", or "YYYY-MM-DD HH:MM:SS" when there is a time).
#pragma once

#include <cstdint>
#include <functional>
#include <vector>
#include <string>
#include <string_view>

#include "db/connection.h"

namespace db {

class OdbcConnection final : public Connection {
 public:
  OdbcConnection() = default;
  ~OdbcConnection() override;
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  // Connects with `connection_text`: "DSN=name;" or any ODBC connection
  // string ("Driver=...;Database=...;"); a text without "=" is taken as a
  // data source name, or as a file data source ("FILEDSN=") when it ends in
  // ".dsn". The driver is never allowed to prompt. PostgreSQL's driver is
  // connected to read results through a cursor, a block of rows at a time
  // ("UseDeclareFetch=1;Fetch=1000;" added, unless the text names
  // UseDeclareFetch), so that streaming a large table holds one block. Closes this
  // connection first when open. Never throws: returns is_open(), and on
  // failure last_error() holds the driver's messages.
  bool open(const std::string& connection_text);

  int state() const override { return dbc_ ? 1 : 0; }
  void close() override;
  std::int64_t execute(std::string_view sql) override;
  Recordset open_recordset(std::string_view sql) override;
  void begin_transaction() override;
  void commit_transaction() override;
  void rollback_transaction() override;
  // Names of the data source's tables and views (SQLTables), in the order
  // the driver gives them. Throws db::Error when the driver refuses.
  std::vector<std::string> table_names() override;

  // Runs `sql` and hands its rows to `on_row` one at a time as they are
  // fetched, never holding the whole result: `on_columns` first gets the
  // column names. Values are mapped as in open_recordset. Throws db::Error.
  void stream(std::string_view sql, const std::function<void(const std::vector<std::string>&)>& on_columns,
              const std::function<void(const std::vector<Value>&)>& on_row);

  // The character the driver quotes identifiers with ('"' when it names none).
  std::string identifier_quote();

  // The data source name: the "DSN=" (or "FILEDSN=") part of the
  // connection text, or what the driver reports.
  std::string data_source_name() const override { return dsn_; }
  const std::string& last_error() const override { return last_error_; }

 private:
  void end_transaction(bool commit);

  void* env_ = nullptr;  // SQLHENV
  void* dbc_ = nullptr;  // SQLHDBC
  std::string dsn_;
  std::string last_error_;
  bool in_transaction_ = false;
};

}  // namespace db
