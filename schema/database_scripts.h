// schema/database_scripts.h — creating a database from SQL definition scripts.
//
// The KEL company schema (kel.sql, kel_base.sql) and the staging template
// (pasaje.sql) are kept as plain SQL scripts. The build runs them through the
// kel_mkdb tool to make Generica/Pasaje.mdb; tests and the program use the same
// function to make an empty KEL company. The scripts are native SQLite: they
// run straight on the C API, not through the Jet translator.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace schema {

// Creates the SQLite database `path` afresh and runs `scripts` in order, all
// in one transaction. An existing file at `path` (and its journal) is removed
// first; missing parent folders are created. On failure nothing is left at
// `path`, `error` holds a message in Spanish naming the script and the line
// of the refused statement, and the result is false.
bool create_database_from_scripts(const std::filesystem::path& path,
                                  const std::vector<std::filesystem::path>& scripts,
                                  std::string& error);

// Runs the SQL text `script` on the open database `db` (a sqlite3*), statement
// by statement, stopping at the first refused one. `name` names the script in
// the message. Returns false with `error` set ("<name>, línea N: <motivo>").
bool run_script(void* db, const std::string& script, const std::string& name,
                std::string& error);

// The scripts that make an empty KEL company, as installed in the program
// folder: <program_dir>/schema/kel.sql and kel_base.sql.
std::vector<std::filesystem::path> kel_company_scripts(const std::filesystem::path& program_dir);

}  // namespace schema
