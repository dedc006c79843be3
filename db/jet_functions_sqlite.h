// db/jet_functions_sqlite.h — registration of Jet's functions on a SQLite connection.
#pragma once

#include <sqlite3.h>

namespace db {

// Registers the jet_* functions on `db`.
void register_jet_functions(sqlite3* db);

}  // namespace db
