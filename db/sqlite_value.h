// db/sqlite_value.h — a SQLite result column as a field value.
#pragma once

#include <sqlite3.h>

#include "base/value.h"

namespace db {

// Column `i` of the current row of `stmt`: integers and reals as numbers,
// text and blobs as text (bytes kept), Null as Null.
Value sqlite_column_value(sqlite3_stmt* stmt, int i);

}  // namespace db
