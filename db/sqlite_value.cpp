// db/sqlite_value.cpp — a SQLite result column as a field value (see sqlite_value.h).
#include "db/sqlite_value.h"

#include <cstdint>
#include <string>

namespace db {

Value sqlite_column_value(sqlite3_stmt* stmt, int i) {
  switch (sqlite3_column_type(stmt, i)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(stmt, i));
    case SQLITE_FLOAT:
      return sqlite3_column_double(stmt, i);
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const void* data = sqlite3_column_blob(stmt, i);
      int size = sqlite3_column_bytes(stmt, i);
      return std::string(static_cast<const char*>(data), data ? static_cast<std::size_t>(size) : 0);
    }
    default:
      return std::monostate{};
  }
}

}  // namespace db
