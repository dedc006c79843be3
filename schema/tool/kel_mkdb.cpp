// schema/tool/kel_mkdb.cpp — build tool: makes a database from SQL scripts.
//
// Usage: kel_mkdb OUT.db script.sql [script2.sql ...]
// Creates OUT.db afresh (an old file is removed) and runs the scripts in one
// transaction. The build uses it to make the staging template
// Generica/Pasaje.mdb from schema/pasaje.sql.
#include <iostream>
#include <string>
#include <vector>

#include "schema/database_scripts.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "Uso: kel_mkdb SALIDA.db guion.sql [guion2.sql ...]\n";
    return 2;
  }
  std::vector<std::filesystem::path> scripts(argv + 2, argv + argc);
  std::string error;
  if (!schema::create_database_from_scripts(argv[1], scripts, error)) {
    std::cerr << "kel_mkdb: " << error << "\n";
    return 1;
  }
  return 0;
}
