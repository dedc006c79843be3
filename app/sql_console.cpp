// app/sql_console.cpp — reads Jet statements, runs them on a SQLite database
// through db::SqliteConnection and prints result sets as tab-separated text.
#include "app/sql_console.h"

#include <iostream>
#include <optional>

#include "base/value.h"
#include "db/error.h"
#include "db/sqlite_connection.h"
#include "settings/statement_splitter.h"

namespace app {

namespace {

struct Options {
  bool explain = false;
  bool help = false;
  std::string database;
  std::optional<std::string> statement;
};

// Parses the arguments after "--sql"; returns an error message or "".
std::string parse(const std::vector<std::string>& args, Options& options) {
  std::vector<std::string> positional;
  for (const auto& arg : args) {
    if (arg == "--explain") {
      options.explain = true;
    } else if (arg == "--help" || arg == "-h") {
      options.help = true;
    } else if (arg.size() > 1 && arg[0] == '-' && arg[1] == '-') {
      return "Opción desconocida: " + arg;
    } else {
      positional.push_back(arg);
    }
  }
  if (options.help) return {};
  if (positional.empty()) return "Falta la base de datos";
  if (positional.size() > 2) {
    return "Demasiados argumentos: escriba la instrucción entre comillas, como un solo argumento";
  }
  options.database = positional[0];
  if (positional.size() == 2) options.statement = positional[1];
  return {};
}

void print_recordset(const db::Recordset& rs, std::ostream& out) {
  for (std::size_t i = 0; i < rs.field_count(); ++i) out << (i ? "\t" : "") << rs.field_name(i);
  out << '\n';
  for (const auto& row : rs.rows()) {
    for (std::size_t i = 0; i < row.size(); ++i) out << (i ? "\t" : "") << db::console_text(row[i]);
    out << '\n';
  }
}

// Runs or explains one statement; false when it was refused.
bool run_one(db::SqliteConnection& conn, const std::string& statement, bool explain,
             std::ostream& out, std::ostream& err) {
  try {
    db::jet::Translation translation = conn.translate(statement);
    if (explain) {
      for (const auto& sql : translation.statements) out << sql << '\n';
      return true;
    }
    if (translation.kind == db::jet::StatementKind::kQuery) {
      print_recordset(conn.open_recordset(statement), out);
    } else {
      std::int64_t rows = conn.execute(statement);
      err << rows << (rows == 1 ? " fila afectada" : " filas afectadas") << '\n';
    }
    out.flush();
    return true;
  } catch (const db::Error& e) {
    err << "Error: " << e.message() << '\n' << "Instrucción: " << statement << '\n';
    if (!e.translated_text().empty()) err << "SQLite: " << e.translated_text() << '\n';
    return false;
  }
}

}  // namespace

std::string sql_console_usage() {
  return "Uso: kelimport --sql [--explain] BASE [INSTRUCCION]\n"
         "\n"
         "Ejecuta instrucciones SQL de Jet/Access sobre la base SQLite BASE (que debe\n"
         "existir) con la misma conexión y traducción que usa el importador.\n"
         "\n"
         "  INSTRUCCION   la instrucción a ejecutar; sin ella se leen instrucciones de la\n"
         "                entrada estándar, cada una terminada por ';' al final de una línea\n"
         "                (como en los archivos de sentencias: las líneas que empiezan\n"
         "                con -- son comentarios).\n"
         "  --explain     muestra la traducción a SQLite en lugar de ejecutar.\n"
         "  --help        muestra esta ayuda.\n"
         "\n"
         "Las consultas se muestran separadas por tabuladores, con una línea de\n"
         "encabezado; NULL indica un valor nulo, las fechas se muestran como están\n"
         "guardadas (AAAA-MM-DD) y los números como los escribe CStr. Las demás\n"
         "instrucciones informan en la salida de errores cuántas filas cambiaron.\n"
         "\n"
         "La primera instrucción rechazada se informa en la salida de errores con el\n"
         "mensaje del motor y detiene la ejecución: las instrucciones siguientes no se\n"
         "ejecutan (las anteriores quedan aplicadas). Estado de salida: 0 si todo se\n"
         "ejecutó, 1 si la base no se pudo abrir o una instrucción fue rechazada,\n"
         "2 si los argumentos no son válidos.\n";
}

int run_sql_console(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                    std::ostream& err) {
  Options options;
  std::string problem = parse(args, options);
  if (options.help) {
    out << sql_console_usage();
    return 0;
  }
  if (!problem.empty()) {
    err << problem << "\n\n" << sql_console_usage();
    return 2;
  }
  db::SqliteConnection conn;
  if (!conn.open(options.database)) {
    err << conn.last_error() << '\n';
    return 1;
  }
  // Statements end where the load's statement files end them.
  if (options.statement) {
    for (const std::string& statement : settings::SplitStatements(*options.statement))
      if (!run_one(conn, statement, options.explain, out, err)) return 1;
    return 0;
  }
  settings::StatementSplitter splitter;
  std::string line;
  while (std::getline(in, line)) {
    if (auto statement = splitter.add_line(line))
      if (!run_one(conn, *statement, options.explain, out, err)) return 1;
  }
  if (auto statement = splitter.finish())
    if (!run_one(conn, *statement, options.explain, out, err)) return 1;
  return 0;
}

}  // namespace app
