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

// Names of the file data sources: the ".dsn" files (any case of the
// extension) directly in odbc_file_dsn_folder(), sorted by name. Empty when
// the folder is missing or holds none. Never throws.
std::vector<std::string> odbc_file_data_sources();

// What the data source picker lists: the system data sources, then the file
// data sources. Never throws.
std::vector<std::string> odbc_data_sources();

// The connection text for a name the picker listed: a name ending in ".dsn"
// and holding no "/" is a file of the file-DSN folder ("FILEDSN=<folder><name>;"),
// a path ending in ".dsn" is that file ("FILEDSN=<path>;"), any other name is
// a system or user data source ("DSN=<name>;"). Surrounding blanks are ignored.
std::string odbc_connection_text(const std::string& name);

// The rule for not showing the picker: the machine offers exactly one data
// source and txtRuta (`current`, trimmed, case ignored) already names it, so
// there is nothing to choose. With no source, several, or another name in
// txtRuta the picker is shown (an empty picker tells the user there is none).
bool odbc_picker_can_be_skipped(const std::string& current, const std::vector<std::string>& sources);

// Closes `conn` when it is open and replaces it with a new OdbcConnection
// opened with `connection_text` ("DSN=" + name + ";"). Never throws: the
// caller tests conn->state() and reads last_error().
void open_odbc(const std::string& connection_text, std::unique_ptr<Connection>& conn);

}  // namespace db
