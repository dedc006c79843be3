// db/odbc_fetch.cpp — result set rows through SQLFetch, in blocks where the
// driver allows it.
#include "db/odbc_fetch.h"

#include <sqlext.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "db/error.h"

namespace db {

namespace {

const std::string kRefused = "La base de datos rechazó la instrucción: ";

// Bytes a block's buffers may take (all columns together).
constexpr std::size_t kBlockBytes = 1 << 20;
constexpr std::size_t kMaxBlockRows = 1024;
// A text column is bound this wide at most; a longer value is read again
// whole (memos are rare, and most texts are short whatever their type says).
constexpr SQLLEN kMaxBoundText = 1024;

bool ok(SQLRETURN rc) { return rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO; }

// The C type a column is read as.
SQLSMALLINT c_type_of(SQLSMALLINT sql_type) {
  switch (sql_type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return SQL_C_SBIGINT;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE:
      return SQL_C_DOUBLE;
    case SQL_TYPE_DATE:
    case SQL_DATE:
      return SQL_C_TYPE_DATE;
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP:
      return SQL_C_TYPE_TIMESTAMP;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return SQL_C_BINARY;
    default:
      return SQL_C_CHAR;
  }
}

bool is_long(SQLSMALLINT c_type) { return c_type == SQL_C_CHAR || c_type == SQL_C_BINARY; }

// Bytes a bound buffer of `column` takes per row.
SQLLEN width_of(const OdbcColumn& column, SQLSMALLINT c_type) {
  switch (c_type) {
    case SQL_C_SBIGINT:
      return sizeof(SQLBIGINT);
    case SQL_C_DOUBLE:
      return sizeof(double);
    case SQL_C_TYPE_DATE:
      return sizeof(SQL_DATE_STRUCT);
    case SQL_C_TYPE_TIMESTAMP:
      return sizeof(SQL_TIMESTAMP_STRUCT);
    case SQL_C_BINARY:
      return column.size == 0 ? kMaxBoundText : std::clamp<SQLLEN>(static_cast<SQLLEN>(column.size), 16, kMaxBoundText);
    default:
      // Characters may take up to 4 bytes each, plus the terminator.
      return column.size == 0 || column.size > static_cast<SQLULEN>(kMaxBoundText)
                 ? kMaxBoundText + 1
                 : std::clamp<SQLLEN>(static_cast<SQLLEN>(column.size) * 4 + 1, 16, kMaxBoundText + 1);
  }
}

// True when a bound value did not fit its buffer.
bool truncated(SQLSMALLINT c_type, SQLLEN indicator, SQLLEN width) {
  if (!is_long(c_type) || indicator == SQL_NULL_DATA) return false;
  if (indicator == SQL_NO_TOTAL) return true;
  return c_type == SQL_C_CHAR ? indicator >= width : indicator > width;
}

std::string iso_date(int year, unsigned month, unsigned day) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", year, month, day);
  return text;
}

// A fixed-size value as db::Value; `data` holds the C type of the column.
Value fixed_value(const OdbcColumn& column, SQLSMALLINT c_type, const char* data) {
  switch (c_type) {
    case SQL_C_SBIGINT: {
      SQLBIGINT value;
      std::memcpy(&value, data, sizeof value);
      return static_cast<std::int64_t>(value);
    }
    case SQL_C_DOUBLE: {
      double value;
      std::memcpy(&value, data, sizeof value);
      // Exact numbers without decimals are whole: keep them integers.
      bool exact = column.sql_type == SQL_DECIMAL || column.sql_type == SQL_NUMERIC;
      if (exact && column.scale == 0 && value == static_cast<double>(static_cast<std::int64_t>(value))) {
        return static_cast<std::int64_t>(value);
      }
      return value;
    }
    case SQL_C_TYPE_DATE: {
      SQL_DATE_STRUCT d;
      std::memcpy(&d, data, sizeof d);
      return iso_date(d.year, d.month, d.day);
    }
    default: {
      SQL_TIMESTAMP_STRUCT t;
      std::memcpy(&t, data, sizeof t);
      std::string text = iso_date(t.year, t.month, t.day);
      if (t.hour == 0 && t.minute == 0 && t.second == 0) return text;
      char time[32];
      std::snprintf(time, sizeof time, " %02u:%02u:%02u", static_cast<unsigned>(t.hour),
                    static_cast<unsigned>(t.minute), static_cast<unsigned>(t.second));
      return text + time;
    }
  }
}

// Reads a character or binary column in pieces: the driver returns long
// texts (memos) a buffer at a time.
Value read_long(SQLHSTMT stmt, SQLUSMALLINT column, SQLSMALLINT c_type) {
  std::string data;
  char buffer[8192];
  const std::size_t terminator = c_type == SQL_C_CHAR ? 1 : 0;
  for (;;) {
    SQLLEN indicator = 0;
    SQLRETURN rc = SQLGetData(stmt, column, c_type, buffer, sizeof buffer, &indicator);
    if (rc == SQL_NO_DATA) break;
    if (!ok(rc)) throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt));
    if (indicator == SQL_NULL_DATA) return std::monostate{};
    std::size_t got;
    if (indicator == SQL_NO_TOTAL || indicator >= static_cast<SQLLEN>(sizeof buffer - terminator)) {
      got = sizeof buffer - terminator;
    } else {
      got = static_cast<std::size_t>(indicator);
    }
    data.append(buffer, got);
    if (rc == SQL_SUCCESS) break;
  }
  return data;
}

// One value of the current row through SQLGetData.
Value read_value(SQLHSTMT stmt, SQLUSMALLINT number, const OdbcColumn& column) {
  const SQLSMALLINT c_type = c_type_of(column.sql_type);
  if (is_long(c_type)) return read_long(stmt, number, c_type);
  alignas(8) char data[sizeof(SQL_TIMESTAMP_STRUCT) + 8] = {};
  SQLLEN indicator = 0;
  if (!ok(SQLGetData(stmt, number, c_type, data, sizeof data, &indicator))) {
    throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt));
  }
  if (indicator == SQL_NULL_DATA) return std::monostate{};
  return fixed_value(column, c_type, data);
}

// True when a value too long for its bound buffer can be read again at its
// row of a fetched block: the driver allows SQLGetData on bound columns
// (SQL_GD_BOUND) after SQLSetPos within a block (SQL_GD_BLOCK). psqlODBC does
// so without declaring SQL_GD_BLOCK (its SQLGetData reads the row SQLSetPos
// chose); the long-text tests on PostgreSQL check it.
bool reads_within_block(SQLHDBC dbc) {
  SQLUINTEGER extensions = 0;
  if (!ok(SQLGetInfo(dbc, SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr)) ||
      (extensions & SQL_GD_BOUND) == 0)
    return false;
  if (extensions & SQL_GD_BLOCK) return true;
  char name[128] = {};
  SQLSMALLINT length = 0;
  return ok(SQLGetInfo(dbc, SQL_DRIVER_NAME, name, sizeof name, &length)) && std::strncmp(name, "psqlodbc", 8) == 0;
}

}  // namespace

std::string odbc_diagnostics(SQLSMALLINT handle_type, SQLHANDLE handle) {
  std::string out;
  for (SQLSMALLINT i = 1;; ++i) {
    SQLCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLCHAR message[1024] = {};
    SQLSMALLINT length = 0;
    SQLRETURN rc = SQLGetDiagRec(handle_type, handle, i, state, &native, message, sizeof message, &length);
    if (!ok(rc)) break;
    if (!out.empty()) out += "; ";
    out += "[" + std::string(reinterpret_cast<char*>(state)) + "] " + std::string(reinterpret_cast<char*>(message));
  }
  return out.empty() ? "error desconocido del controlador ODBC" : out;
}

std::vector<OdbcColumn> describe_result(SQLHSTMT stmt) {
  SQLSMALLINT count = 0;
  SQLNumResultCols(stmt, &count);
  std::vector<OdbcColumn> columns;
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLCHAR name[256] = {};
    SQLSMALLINT name_length = 0, nullable = 0;
    OdbcColumn column;
    SQLDescribeCol(stmt, i, name, sizeof name, &name_length, &column.sql_type, &column.size, &column.scale,
                   &nullable);
    column.name = reinterpret_cast<char*>(name);
    columns.push_back(std::move(column));
  }
  return columns;
}

OdbcRowReader::OdbcRowReader(SQLHDBC dbc, SQLHSTMT stmt, std::vector<OdbcColumn> columns)
    : stmt_(stmt), columns_(std::move(columns)) {
  if (columns_.empty() || !reads_within_block(dbc)) return;
  std::vector<Buffer> buffers(columns_.size());
  std::size_t row_bytes = 0;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    buffers[i].c_type = c_type_of(columns_[i].sql_type);
    buffers[i].width = width_of(columns_[i], buffers[i].c_type);
    row_bytes += static_cast<std::size_t>(buffers[i].width) + sizeof(SQLLEN);
  }
  const std::size_t rows = std::clamp<std::size_t>(kBlockBytes / row_bytes, 1, kMaxBlockRows);
  if (!ok(SQLSetStmtAttr(stmt_, SQL_ATTR_ROW_BIND_TYPE, reinterpret_cast<SQLPOINTER>(SQL_BIND_BY_COLUMN), 0)) ||
      !ok(SQLSetStmtAttr(stmt_, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rows), 0))) {
    return;
  }
  SQLULEN granted = 0;
  if (!ok(SQLGetStmtAttr(stmt_, SQL_ATTR_ROW_ARRAY_SIZE, &granted, 0, nullptr)) || granted < 1) return;
  block_rows_ = static_cast<std::size_t>(granted);
  status_.assign(block_rows_, SQL_ROW_NOROW);
  SQLSetStmtAttr(stmt_, SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0);
  SQLSetStmtAttr(stmt_, SQL_ATTR_ROW_STATUS_PTR, status_.data(), 0);
  for (std::size_t i = 0; i < buffers.size(); ++i) {
    Buffer& b = buffers[i];
    b.data.assign(static_cast<std::size_t>(b.width) * block_rows_, 0);
    b.indicators.assign(block_rows_, 0);
    if (!ok(SQLBindCol(stmt_, static_cast<SQLUSMALLINT>(i + 1), b.c_type, b.data.data(), b.width,
                       b.indicators.data()))) {
      throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt_));
    }
  }
  buffers_ = std::move(buffers);
}

bool OdbcRowReader::fetch_block() {
  fetched_ = 0;
  position_ = 0;
  SQLRETURN rc = SQLFetch(stmt_);
  if (rc == SQL_NO_DATA) return false;
  if (!ok(rc)) throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt_));
  // A driver that ignores the fetched-rows pointer fetched one row.
  if (buffers_.empty() || fetched_ == 0) fetched_ = 1;
  return true;
}

Value OdbcRowReader::bound_value(std::size_t column, std::size_t row) {
  const Buffer& b = buffers_[column];
  const SQLLEN indicator = b.indicators[row];
  if (indicator == SQL_NULL_DATA) return std::monostate{};
  const char* data = b.data.data() + static_cast<std::size_t>(b.width) * row;
  if (!is_long(b.c_type)) return fixed_value(columns_[column], b.c_type, data);
  if (!truncated(b.c_type, indicator, b.width)) return std::string(data, static_cast<std::size_t>(indicator));
  // Longer than its buffer: read that value again, whole.
  if (!ok(SQLSetPos(stmt_, static_cast<SQLSETPOSIROW>(row + 1), SQL_POSITION, SQL_LOCK_NO_CHANGE))) {
    throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt_));
  }
  return read_long(stmt_, static_cast<SQLUSMALLINT>(column + 1), b.c_type);
}

bool OdbcRowReader::next(std::vector<Value>& row) {
  if (done_) return false;
  if (position_ >= fetched_ && !fetch_block()) {
    done_ = true;
    return false;
  }
  row.resize(columns_.size());
  if (buffers_.empty()) {
    for (std::size_t i = 0; i < columns_.size(); ++i)
      row[i] = read_value(stmt_, static_cast<SQLUSMALLINT>(i + 1), columns_[i]);
  } else {
    if (status_[position_] == SQL_ROW_ERROR) throw Error(kRefused + odbc_diagnostics(SQL_HANDLE_STMT, stmt_));
    for (std::size_t i = 0; i < columns_.size(); ++i) row[i] = bound_value(i, position_);
  }
  ++position_;
  return true;
}

}  // namespace db
