// app/sql_console.h — `kelimport --sql`: Jet statements run on a database file.
//
// A tool for format authors and support staff: it runs statements through the
// very connection and translator the importer uses, so a statement that works
// here works in a statement file, and --explain shows what SQLite is given.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace app {

// Runs the console with the arguments that follow "--sql" on the command
// line. Statements come from the arguments or, when none is given, from `in`
// (each ended by ";" at the end of a line). Results go to `out`, messages to
// `err`. Returns the exit status: 0 when every statement ran, 1 when the
// database could not be opened or a statement was refused (the console stops
// there), 2 for a command line it does not understand.
int run_sql_console(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                    std::ostream& err);

// The --help text of the console.
std::string sql_console_usage();

}  // namespace app
