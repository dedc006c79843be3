// db/odbc_fetch.h — reading an ODBC result set's rows as field values.
//
// A driver asked for one value at a time (SQLFetch, then SQLGetData per
// column) pays a round of calls per value; from a server that is most of the
// copy's time. Where the driver allows it, rows are fetched in blocks into
// column-wise bound buffers (SQL_ATTR_ROW_ARRAY_SIZE): one call per block. A
// text longer than its bound buffer is never cut short: that one value is read
// again whole with SQLGetData in pieces (SQLSetPos to its row first). Drivers
// that cannot read a value of a fetched block that way (the SQLite driver
// among them) are read one row at a time, every value through SQLGetData.
//
// Values are mapped as db::OdbcConnection documents: integers, doubles
// (exact numbers without decimals as integers), texts, and dates as ISO texts.
#pragma once

#include <sql.h>

#include <cstddef>
#include <string>
#include <vector>

#include "base/value.h"

namespace db {

// The driver's diagnostic records of a handle, "[state] message" joined by "; ".
std::string odbc_diagnostics(SQLSMALLINT handle_type, SQLHANDLE handle);

// One column of a result set as the driver describes it.
struct OdbcColumn {
  std::string name;
  SQLSMALLINT sql_type = 0;
  SQLULEN size = 0;  // characters (texts) or digits; 0 when the driver does not know
  SQLSMALLINT scale = 0;
};

// The columns of the result set open on `stmt`.
std::vector<OdbcColumn> describe_result(SQLHSTMT stmt);

// Hands out the rows of the result set open on `stmt`, a block at a time when
// the driver allows it. `stmt` must stay open while the reader is used; the
// reader binds its columns and sets its row-array attributes.
class OdbcRowReader {
 public:
  // Rows per block are chosen so that a block's buffers stay near 1 MB.
  OdbcRowReader(SQLHDBC dbc, SQLHSTMT stmt, std::vector<OdbcColumn> columns);
  OdbcRowReader(const OdbcRowReader&) = delete;
  OdbcRowReader& operator=(const OdbcRowReader&) = delete;

  // Fills `row` with the next row's values; false at the end of the result.
  // Throws db::Error with the driver's reason.
  bool next(std::vector<Value>& row);

  // Rows fetched per call to the driver (1: one row at a time).
  std::size_t block_rows() const { return block_rows_; }

 private:
  struct Buffer {
    SQLSMALLINT c_type = 0;
    SQLLEN width = 0;                // bytes per row
    std::vector<char> data;          // width * block_rows
    std::vector<SQLLEN> indicators;  // one per row
  };

  bool fetch_block();
  Value bound_value(std::size_t column, std::size_t row);

  SQLHSTMT stmt_;
  std::vector<OdbcColumn> columns_;
  std::vector<Buffer> buffers_;  // empty: one row at a time through SQLGetData
  std::size_t block_rows_ = 1;
  SQLULEN fetched_ = 0;          // rows of the current block
  std::size_t position_ = 0;     // next row of the current block
  std::vector<SQLUSMALLINT> status_;
  bool done_ = false;
};

}  // namespace db
