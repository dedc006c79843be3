// db/odbc_sources.h — the ODBC data sources of the machine, for the data
// source picker, and opening the source connection on one of them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "db/connection.h"

namespace db {

// Names of the machine's (system) ODBC data sources, in the order the driver
// manager lists them. The user's own data sources are not included. Empty
// when there are none or ODBC cannot be started. Never throws.
std::vector<std::string> odbc_system_data_sources();

// The folder of the file data sources (".dsn" files) as the driver manager
// is configured ("FileDSNPath" in odbcinst.ini, else its default), ending
// in "/". Never throws.
std::string odbc_file_dsn_folder();

// Closes `conn` when it is open and replaces it with a new OdbcConnection
// opened with `connection_text` ("DSN=" + name + ";"). Never throws: the
// caller tests conn->state() and reads last_error().
void open_odbc(const std::string& connection_text, std::unique_ptr<Connection>& conn);

}  // namespace db
