// app/main.cpp — the kelimport executable.
//
// Dispatches on the first argument: the program's own modes (--batch, --sql,
// --restore) or, by default, the importer's main window with the rest of the
// command line as its own ("destination" or "destination*source*format
// index"), as a shortcut to the program gives it. A build without the window
// (KEL_BUILD_UI off) says so instead.
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "app/batch.h"
#include "app/restore_command.h"
#include "app/sql_console.h"
#ifdef KEL_HAVE_UI
#include "ui/window_app.h"
#endif

namespace {

std::string usage() {
  return "Uso:\n"
         "  kelimport --batch [opciones] \"DESTINO*ORIGEN*FORMATO\"\n"
         "                                                   importación sin ventana (kelimport --batch --help)\n"
         "  kelimport --restore [--yes] COPIA                devuelve la base de KEL desde una copia de seguridad\n"
         "  kelimport --sql [--explain] BASE [INSTRUCCION]   consola SQL (kelimport --sql --help)\n"
         "  kelimport [\"DESTINO*ORIGEN*FORMATO\"]              la ventana del importador\n"
         "  kelimport --help                                 esta ayuda\n";
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  const std::string mode = args.empty() ? std::string() : args.front();
  const std::vector<std::string> rest(args.empty() ? args.end() : args.begin() + 1, args.end());

  if (mode == "--sql") return app::run_sql_console(rest, std::cin, std::cout, std::cerr);
  if (mode == "--restore") return app::run_restore(rest, app::ProgramFolder(argv[0]), std::cin, std::cout);
  if (mode == "--batch")
    return app::run_batch(rest, app::ProgramFolder(argv[0]), std::cout, std::cerr, isatty(STDERR_FILENO) == 1);
  if (mode == "--help" || mode == "-h") {
    std::cout << usage();
    return 0;
  }
#ifdef KEL_HAVE_UI
  // The window's command line is one text: arguments split by the shell
  // (a path with spaces given without quotes) are joined again. A hidden
  // "--screenshot FILE" first saves a picture of the window once the
  // command line's source is staged, and ends.
  ui::WindowOptions options;
  std::size_t first = 0;
  if (mode == "--screenshot") {
    if (args.size() < 2) {
      std::cerr << "Falta el archivo de la captura después de --screenshot\n";
      return 2;
    }
    options.screenshot = args[1];
    first = 2;
  } else if (mode.rfind("--", 0) == 0) {
    std::cerr << "Opción desconocida: " << mode << "\n\n" << usage();
    return 2;
  }
  for (std::size_t i = first; i < args.size(); ++i) options.command_line += (i > first ? " " : "") + args[i];
  return ui::RunWindow(argc, argv, app::ProgramFolder(argv[0]), options);
#else
  std::cerr << "Este kelimport se compiló sin la ventana (KEL_BUILD_UI): use --batch\n\n" << usage();
  return 2;
#endif
}
