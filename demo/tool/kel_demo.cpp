// demo/tool/kel_demo.cpp — command line of the demo generator.
//
//   kel_demo --employees N --years Y [--seed S] [--last-year A]
//            --source ORIGEN.mdb --kel EMPRESA/DATOS.mdb --schema-dir DIR
//            [--csv CARPETA] [--bd INTERCAMBIO.mdb]
//
// Writes the demo source company (staging schema) and the demo KEL company
// and prints what it wrote; with --csv, the source company also as interchange
// CSV files in that folder, with --bd also as an interchange database. Exit
// status 0 on success, 1 on bad arguments, 2 when the databases cannot be
// written.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "demo/demo.h"
#include "demo/source_csv.h"

namespace {

void usage() {
  std::fprintf(stderr,
               "Uso: kel_demo --employees N --years A [--seed S] [--last-year AAAA]\n"
               "              --source ORIGEN.mdb --kel EMPRESA/DATOS.mdb --schema-dir CARPETA\n"
               "              [--csv CARPETA] [--bd INTERCAMBIO.mdb]\n");
}

bool parse_int(const char* text, long long min, long long max, long long& out) {
  char* end = nullptr;
  const long long v = std::strtoll(text, &end, 10);
  if (end == text || *end != '\0' || v < min || v > max) return false;
  out = v;
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  demo::DemoOptions options;
  demo::DemoPaths paths;
  std::string csv_folder;
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    if (i + 1 >= argc) {
      std::fprintf(stderr, "Falta el valor de %s\n", argv[i]);
      usage();
      return 1;
    }
    const char* value = argv[++i];
    long long n = 0;
    bool ok = true;
    if (arg == "--employees") {
      ok = parse_int(value, 1, 100000, n);
      options.employees = static_cast<int>(n);
    } else if (arg == "--years") {
      ok = parse_int(value, 1, 40, n);
      options.years = static_cast<int>(n);
    } else if (arg == "--seed") {
      ok = parse_int(value, 0, 9223372036854775807LL, n);
      options.seed = static_cast<std::uint64_t>(n);
    } else if (arg == "--last-year") {
      ok = parse_int(value, 1990, 2100, n);
      options.last_year = static_cast<int>(n);
    } else if (arg == "--source") {
      paths.source = value;
    } else if (arg == "--kel") {
      paths.kel = value;
    } else if (arg == "--schema-dir") {
      paths.schema_dir = value;
    } else if (arg == "--csv") {
      csv_folder = value;
    } else if (arg == "--bd") {
      paths.interchange = value;
    } else {
      std::fprintf(stderr, "Opción desconocida: %s\n", argv[i - 1]);
      usage();
      return 1;
    }
    if (!ok) {
      std::fprintf(stderr, "Valor no válido para %s: '%s'\n", argv[i - 1], value);
      return 1;
    }
  }
  if (paths.source.empty() || paths.kel.empty() || paths.schema_dir.empty()) {
    std::fprintf(stderr, "Faltan --source, --kel o --schema-dir\n");
    usage();
    return 1;
  }
  try {
    const demo::DemoReport r = demo::build_demo(options, paths);
    std::printf("Origen: %s\nEmpresa KEL: %s\n", paths.source.c_str(), paths.kel.c_str());
    if (!paths.interchange.empty()) std::printf("Base de intercambio: %s\n", paths.interchange.c_str());
    std::printf("Personas %lld, contratos %lld, encabezados %lld, líneas %lld, %.2f s\n",
                static_cast<long long>(r.persons), static_cast<long long>(r.contracts),
                static_cast<long long>(r.liquidations.headers), static_cast<long long>(r.liquidations.lines),
                r.seconds);
    auto list = [](const char* title, const std::map<std::string, std::int64_t>& rows) {
      std::printf("%s:", title);
      for (const auto& [table, count] : rows) std::printf(" %s %lld", table.c_str(), static_cast<long long>(count));
      std::printf("\n");
    };
    list("Filas del origen", r.source_rows);
    list("Filas de la empresa KEL", r.kel_rows);
    for (const std::string& m : r.missing) std::printf("Aviso: el esquema no tiene %s\n", m.c_str());
    if (!csv_folder.empty()) {
      list(("Archivos CSV en " + csv_folder).c_str(), demo::write_source_csv(options, csv_folder));
    }
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "Error: %s\n", e.what());
    return 2;
  }
}
