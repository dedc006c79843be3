// db/odbc_connection.cpp — connecting, running statements and reading result
// sets through the ODBC 3 C API.
#include "db/odbc_connection.h"

#include <sql.h>
#include <sqlext.h>

#include <cctype>
#include <cstdio>
#include <memory>
#include <vector>

#include "db/error.h"

namespace db {

namespace {

const std::string kRefused = "La base de datos rechazó la instrucción: ";

bool ok(SQLRETURN rc) { return rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO; }

// The driver's diagnostic records of a handle, "[state] message" joined by "; ".
std::string diagnostics(SQLSMALLINT type, SQLHANDLE handle) {
  std::string out;
  for (SQLSMALLINT i = 1;; ++i) {
    SQLCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLCHAR message[1024] = {};
    SQLSMALLINT length = 0;
    SQLRETURN rc = SQLGetDiagRec(type, handle, i, state, &native, message, sizeof message, &length);
    if (!ok(rc)) break;
    if (!out.empty()) out += "; ";
    out += "[" + std::string(reinterpret_cast<char*>(state)) + "] " +
           std::string(reinterpret_cast<char*>(message));
  }
  return out.empty() ? "error desconocido del controlador ODBC" : out;
}

// The value of `key` in a "key=value;key=value" connection text, case ignored.
std::string attribute(const std::string& text, const std::string& key) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    std::size_t end = text.find(';', pos);
    if (end == std::string::npos) end = text.size();
    std::string part = text.substr(pos, end - pos);
    std::size_t eq = part.find('=');
    if (eq != std::string::npos) {
      std::string name = part.substr(0, eq);
      while (!name.empty() && name.front() == ' ') name.erase(0, 1);
      while (!name.empty() && name.back() == ' ') name.pop_back();
      bool same = name.size() == key.size();
      for (std::size_t i = 0; same && i < key.size(); ++i) {
        same = std::toupper(static_cast<unsigned char>(name[i])) ==
               std::toupper(static_cast<unsigned char>(key[i]));
      }
      if (same) return part.substr(eq + 1);
    }
    pos = end + 1;
  }
  return {};
}

// True for a file data source's name ("Origen.dsn", case ignored).
bool ends_with_dsn(const std::string& text) {
  std::string tail = text.substr(text.size() - 4);
  for (auto& c : tail) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return tail == ".dsn";
}

// A statement handle freed on scope exit.
struct Statement {
  SQLHSTMT handle = SQL_NULL_HSTMT;
  ~Statement() {
    if (handle) SQLFreeHandle(SQL_HANDLE_STMT, handle);
  }
};

// Allocates `stmt` on `dbc` and runs `sql` on it as it stands; gives the
// driver's return code for the caller to judge (SQL_NO_DATA is no error).
// A handle that cannot be had raises db::Error with the driver's reason.
SQLRETURN execute_direct(SQLHDBC dbc, Statement& stmt, std::string_view sql) {
  if (!ok(SQLAllocHandle(SQL_HANDLE_STMT, dbc, &stmt.handle))) {
    throw Error(kRefused + diagnostics(SQL_HANDLE_DBC, dbc), std::string(sql));
  }
  std::string text(sql);
  return SQLExecDirect(stmt.handle, reinterpret_cast<SQLCHAR*>(text.data()), static_cast<SQLINTEGER>(text.size()));
}

// Reads a character or binary column in pieces: the driver returns long
// texts (memos) a buffer at a time.
Value read_long(SQLHSTMT stmt, SQLUSMALLINT column, SQLSMALLINT c_type) {
  std::string data;
  char buffer[4096];
  const std::size_t terminator = c_type == SQL_C_CHAR ? 1 : 0;
  for (;;) {
    SQLLEN indicator = 0;
    SQLRETURN rc = SQLGetData(stmt, column, c_type, buffer, sizeof buffer, &indicator);
    if (rc == SQL_NO_DATA) break;
    if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt));
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

Value read_column(SQLHSTMT stmt, SQLUSMALLINT column, SQLSMALLINT sql_type, SQLSMALLINT scale) {
  SQLLEN indicator = 0;
  SQLRETURN rc = SQL_SUCCESS;
  switch (sql_type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT: {
      SQLBIGINT value = 0;
      rc = SQLGetData(stmt, column, SQL_C_SBIGINT, &value, 0, &indicator);
      if (!ok(rc)) break;
      if (indicator == SQL_NULL_DATA) return std::monostate{};
      return static_cast<std::int64_t>(value);
    }
    case SQL_DECIMAL:
    case SQL_NUMERIC:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE: {
      double value = 0;
      rc = SQLGetData(stmt, column, SQL_C_DOUBLE, &value, 0, &indicator);
      if (!ok(rc)) break;
      if (indicator == SQL_NULL_DATA) return std::monostate{};
      // Exact numbers without decimals are whole: keep them integers.
      bool exact = sql_type == SQL_DECIMAL || sql_type == SQL_NUMERIC;
      if (exact && scale == 0 && value == static_cast<double>(static_cast<std::int64_t>(value))) {
        return static_cast<std::int64_t>(value);
      }
      return value;
    }
    case SQL_TYPE_DATE:
    case SQL_DATE: {
      SQL_DATE_STRUCT d{};
      rc = SQLGetData(stmt, column, SQL_C_TYPE_DATE, &d, sizeof d, &indicator);
      if (!ok(rc)) break;
      if (indicator == SQL_NULL_DATA) return std::monostate{};
      char text[64];
      std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(d.year),
                    static_cast<unsigned>(d.month), static_cast<unsigned>(d.day));
      return std::string(text);
    }
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP: {
      SQL_TIMESTAMP_STRUCT t{};
      rc = SQLGetData(stmt, column, SQL_C_TYPE_TIMESTAMP, &t, sizeof t, &indicator);
      if (!ok(rc)) break;
      if (indicator == SQL_NULL_DATA) return std::monostate{};
      char text[64];
      if (t.hour == 0 && t.minute == 0 && t.second == 0) {
        std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(t.year),
                      static_cast<unsigned>(t.month), static_cast<unsigned>(t.day));
      } else {
        std::snprintf(text, sizeof text, "%04d-%02u-%02u %02u:%02u:%02u", static_cast<int>(t.year),
                      static_cast<unsigned>(t.month), static_cast<unsigned>(t.day),
                      static_cast<unsigned>(t.hour), static_cast<unsigned>(t.minute),
                      static_cast<unsigned>(t.second));
      }
      return std::string(text);
    }
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return read_long(stmt, column, SQL_C_BINARY);
    default:
      return read_long(stmt, column, SQL_C_CHAR);
  }
  throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt));
}

}  // namespace

OdbcConnection::~OdbcConnection() { close(); }

void OdbcConnection::close() {
  if (dbc_) {
    if (in_transaction_) SQLEndTran(SQL_HANDLE_DBC, dbc_, SQL_ROLLBACK);
    SQLDisconnect(dbc_);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
    dbc_ = nullptr;
  }
  if (env_) {
    SQLFreeHandle(SQL_HANDLE_ENV, env_);
    env_ = nullptr;
  }
  in_transaction_ = false;
  dsn_.clear();
}

bool OdbcConnection::open(const std::string& connection_text) {
  close();
  last_error_.clear();
  std::string text = connection_text;
  if (text.find('=') == std::string::npos) {
    bool file_dsn = text.size() > 4 && ends_with_dsn(text);
    text = (file_dsn ? "FILEDSN=" : "DSN=") + text + ";";
  }
  std::string shown = attribute(text, "DSN");
  if (shown.empty()) shown = attribute(text, "FILEDSN");
  if (shown.empty()) shown = text;

  SQLHENV env = SQL_NULL_HENV;
  if (!ok(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env))) {
    last_error_ = "No se pudo iniciar ODBC";
    return false;
  }
  SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLHDBC dbc = SQL_NULL_HDBC;
  if (!ok(SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc))) {
    last_error_ = "No se pudo iniciar ODBC: " + diagnostics(SQL_HANDLE_ENV, env);
    SQLFreeHandle(SQL_HANDLE_ENV, env);
    return false;
  }
  std::vector<SQLCHAR> in(text.begin(), text.end());
  in.push_back(0);
  SQLCHAR out[1024];
  SQLSMALLINT out_length = 0;
  SQLRETURN rc = SQLDriverConnect(dbc, nullptr, in.data(), SQL_NTS, out, sizeof out, &out_length,
                                  SQL_DRIVER_NOPROMPT);
  if (!ok(rc)) {
    last_error_ = "No se pudo conectar con el origen de datos " + shown + ": " +
                  diagnostics(SQL_HANDLE_DBC, dbc);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc);
    SQLFreeHandle(SQL_HANDLE_ENV, env);
    return false;
  }
  env_ = env;
  dbc_ = dbc;
  dsn_ = attribute(text, "DSN");
  if (dsn_.empty()) dsn_ = attribute(text, "FILEDSN");
  if (dsn_.empty()) {
    SQLCHAR name[256] = {};
    SQLSMALLINT length = 0;
    if (ok(SQLGetInfo(dbc, SQL_DATA_SOURCE_NAME, name, sizeof name, &length))) {
      dsn_ = reinterpret_cast<char*>(name);
    }
    if (dsn_.empty()) dsn_ = text;
  }
  return true;
}

std::int64_t OdbcConnection::execute(std::string_view sql) {
  if (!dbc_) throw Error("La conexión no está abierta", std::string(sql));
  Statement stmt;
  SQLRETURN rc = execute_direct(dbc_, stmt, sql);
  if (rc == SQL_NO_DATA) return 0;  // a searched update or delete that matched nothing
  if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt.handle), std::string(sql));
  SQLLEN rows = 0;
  if (!ok(SQLRowCount(stmt.handle, &rows)) || rows < 0) rows = 0;
  return static_cast<std::int64_t>(rows);
}

Recordset OdbcConnection::open_recordset(std::string_view sql) {
  if (!dbc_) throw Error("La conexión no está abierta", std::string(sql));
  Statement stmt;
  SQLRETURN rc = execute_direct(dbc_, stmt, sql);
  if (rc == SQL_NO_DATA) return Recordset();
  if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt.handle), std::string(sql));

  SQLSMALLINT count = 0;
  SQLNumResultCols(stmt.handle, &count);
  std::vector<std::string> names;
  std::vector<SQLSMALLINT> types;
  std::vector<SQLSMALLINT> scales;
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLCHAR name[256] = {};
    SQLSMALLINT name_length = 0, type = 0, scale = 0, nullable = 0;
    SQLULEN size = 0;
    SQLDescribeCol(stmt.handle, i, name, sizeof name, &name_length, &type, &size, &scale, &nullable);
    names.emplace_back(reinterpret_cast<char*>(name));
    types.push_back(type);
    scales.push_back(scale);
  }
  std::vector<std::vector<Value>> rows;
  try {
    while ((rc = SQLFetch(stmt.handle)) != SQL_NO_DATA) {
      if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt.handle));
      std::vector<Value> row;
      row.reserve(names.size());
      for (SQLUSMALLINT i = 0; i < static_cast<SQLUSMALLINT>(count); ++i) {
        row.push_back(read_column(stmt.handle, static_cast<SQLUSMALLINT>(i + 1), types[i], scales[i]));
      }
      rows.push_back(std::move(row));
    }
  } catch (const Error& e) {
    throw Error(e.message(), std::string(sql));
  }
  return Recordset(std::move(names), std::move(rows));
}

std::vector<std::string> OdbcConnection::table_names() {
  if (!dbc_) throw Error("La conexión no está abierta");
  Statement stmt;
  if (!ok(SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &stmt.handle))) {
    throw Error(kRefused + diagnostics(SQL_HANDLE_DBC, dbc_));
  }
  SQLCHAR types[] = "TABLE,VIEW";
  if (!ok(SQLTables(stmt.handle, nullptr, 0, nullptr, 0, nullptr, 0, types, SQL_NTS))) {
    throw Error("El origen de datos no da la lista de sus tablas: " + diagnostics(SQL_HANDLE_STMT, stmt.handle));
  }
  std::vector<std::string> names;
  while (ok(SQLFetch(stmt.handle))) {
    SQLCHAR name[512] = {};
    SQLLEN indicator = 0;
    // Column 3 of SQLTables' result is TABLE_NAME.
    if (ok(SQLGetData(stmt.handle, 3, SQL_C_CHAR, name, sizeof name, &indicator)) && indicator > 0)
      names.emplace_back(reinterpret_cast<char*>(name));
  }
  return names;
}

void OdbcConnection::stream(std::string_view sql,
                            const std::function<void(const std::vector<std::string>&)>& on_columns,
                            const std::function<void(const std::vector<Value>&)>& on_row) {
  if (!dbc_) throw Error("La conexión no está abierta", std::string(sql));
  Statement stmt;
  SQLRETURN rc = execute_direct(dbc_, stmt, sql);
  if (rc == SQL_NO_DATA) return;
  if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt.handle), std::string(sql));
  SQLSMALLINT count = 0;
  SQLNumResultCols(stmt.handle, &count);
  std::vector<std::string> names;
  std::vector<SQLSMALLINT> types, scales;
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLCHAR name[256] = {};
    SQLSMALLINT name_length = 0, type = 0, scale = 0, nullable = 0;
    SQLULEN size = 0;
    SQLDescribeCol(stmt.handle, i, name, sizeof name, &name_length, &type, &size, &scale, &nullable);
    names.emplace_back(reinterpret_cast<char*>(name));
    types.push_back(type);
    scales.push_back(scale);
  }
  on_columns(names);
  std::vector<Value> row(names.size());
  while ((rc = SQLFetch(stmt.handle)) != SQL_NO_DATA) {
    if (!ok(rc)) throw Error(kRefused + diagnostics(SQL_HANDLE_STMT, stmt.handle), std::string(sql));
    for (SQLUSMALLINT i = 0; i < static_cast<SQLUSMALLINT>(count); ++i)
      row[i] = read_column(stmt.handle, static_cast<SQLUSMALLINT>(i + 1), types[i], scales[i]);
    on_row(row);
  }
}

std::string OdbcConnection::identifier_quote() {
  char quote[8] = {};
  SQLSMALLINT length = 0;
  if (dbc_ && ok(SQLGetInfo(dbc_, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length)) && length > 0 &&
      quote[0] != ' ')
    return std::string(quote, static_cast<std::size_t>(length));
  return "\"";
}

void OdbcConnection::begin_transaction() {
  if (!dbc_) throw Error("La conexión no está abierta");
  if (in_transaction_) throw Error("Ya hay una transacción abierta en esta conexión");
  SQLRETURN rc = SQLSetConnectAttr(dbc_, SQL_ATTR_AUTOCOMMIT,
                                   reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0);
  if (!ok(rc)) {
    throw Error("No se pudo iniciar la transacción: " + diagnostics(SQL_HANDLE_DBC, dbc_));
  }
  in_transaction_ = true;
}

void OdbcConnection::end_transaction(bool commit) {
  if (!dbc_) throw Error("La conexión no está abierta");
  if (!in_transaction_) {
    throw Error(commit ? "No hay una transacción abierta para confirmar"
                       : "No hay una transacción abierta para deshacer");
  }
  SQLRETURN rc = SQLEndTran(SQL_HANDLE_DBC, dbc_, commit ? SQL_COMMIT : SQL_ROLLBACK);
  std::string problem = ok(rc) ? "" : diagnostics(SQL_HANDLE_DBC, dbc_);
  in_transaction_ = false;
  SQLSetConnectAttr(dbc_, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_ON), 0);
  if (!problem.empty()) {
    throw Error((commit ? "No se pudo confirmar la transacción: "
                        : "No se pudo deshacer la transacción: ") + problem);
  }
}

void OdbcConnection::commit_transaction() { end_transaction(true); }
void OdbcConnection::rollback_transaction() { end_transaction(false); }

}  // namespace db
