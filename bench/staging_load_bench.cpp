// bench/staging_load_bench.cpp — how long the staging load takes on a large
// source company in the CSV interchange form.
//
//   bench_staging_load [--employees N] [--years Y] [--format csv|bd] [--keep CARPETA]
//                      [--source CARPETA] [--once 1]
//
// Generates the demo source company (default 1000 employees, 10 years) as
// CSV files (or as an interchange database), makes a fresh staging database
// from the staging schema, matches the folder against the shipped format and
// runs CargarDatos (twice: a first load and a reload over it), printing the
// time of each phase, the rows staged per
// table and rows per second. With --source the files of that folder are
// loaded instead of generated ones (the staging database goes to --keep, or
// a temporary folder), and with --once only the first load runs: that is
// how bench/staging_vs_import.sh times the load alone. A plain timing program: one run of minutes does
// not fit a micro-benchmark framework.
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "db/sqlite_connection.h"
#include "demo/demo.h"
#include "demo/source_csv.h"
#include "demo/sqlite_writer.h"
#include "settings/key_file.h"
#include "settings/text_file.h"
#include "staging/catalogue.h"
#include "staging/staging_load.h"

namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

bool RunSql(const std::filesystem::path& file, const std::string& sql) {
  sqlite3* db = nullptr;
  if (sqlite3_open(file.string().c_str(), &db) != SQLITE_OK) return false;
  char* message = nullptr;
  int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message);
  if (rc != SQLITE_OK) std::fprintf(stderr, "Error: %s\n", message ? message : "");
  sqlite3_free(message);
  sqlite3_close(db);
  return rc == SQLITE_OK;
}

long long Count(sqlite3* db, const std::string& table) {
  sqlite3_stmt* stmt = nullptr;
  long long n = -1;
  if (sqlite3_prepare_v2(db, ("SELECT count(*) FROM \"" + table + "\"").c_str(), -1, &stmt, nullptr) == SQLITE_OK &&
      sqlite3_step(stmt) == SQLITE_ROW) {
    n = sqlite3_column_int64(stmt, 0);
  }
  sqlite3_finalize(stmt);
  return n;
}

}  // namespace

int main(int argc, char** argv) {
  demo::DemoOptions options;
  options.employees = 1000;
  options.years = 10;
  std::string form = "csv";
  std::filesystem::path keep;
  std::filesystem::path given_source;
  bool once = false;
  for (int i = 1; i + 1 < argc; i += 2) {
    std::string arg = argv[i];
    if (arg == "--employees") options.employees = std::atoi(argv[i + 1]);
    else if (arg == "--years") options.years = std::atoi(argv[i + 1]);
    else if (arg == "--format") form = argv[i + 1];
    else if (arg == "--keep") keep = argv[i + 1];
    else if (arg == "--source") given_source = argv[i + 1];
    else if (arg == "--once") once = std::atoi(argv[i + 1]) != 0;
    else {
      std::fprintf(stderr, "Opción desconocida: %s\n", argv[i]);
      return 1;
    }
  }
  const std::filesystem::path dir =
      keep.empty() ? std::filesystem::temp_directory_path() / "kel_staging_bench" : keep;
  std::filesystem::remove_all(dir);
  const std::filesystem::path origin = given_source.empty() ? dir / "origen" : given_source;
  std::filesystem::create_directories(dir);
  std::filesystem::create_directories(origin);
  const std::filesystem::path source_dir = KEL_SOURCE_DIR;

  try {
    auto t = Clock::now();
    if (!given_source.empty()) {
      std::printf("Origen: %s\n", origin.string().c_str());
    } else if (form == "csv") {
      demo::write_source_csv(options, dir / "origen");
    } else {
      demo::SqliteWriter writer((origin / "origen.mdb").string(), {(source_dir / "schema/pasaje.sql").string()});
      demo::generate_source(options, demo::plan_staff(options), writer);
      writer.finish();
    }
    if (given_source.empty()) std::printf("Origen (%s) de %d empleados x %d años generado en %.1f s\n", form.c_str(), options.employees,
                options.years, Since(t));
    std::uintmax_t bytes = 0;
    for (const auto& f : std::filesystem::directory_iterator(origin)) bytes += f.file_size();
    std::printf("Tamaño del origen: %.1f MB\n", static_cast<double>(bytes) / 1e6);

    const std::filesystem::path staging_path = dir / "Pasaje.mdb";
    if (!RunSql(staging_path, settings::ReadText(source_dir / "schema/pasaje.sql"))) return 2;

    const std::filesystem::path program = source_dir / "formats";
    const std::string format = settings::ReadText(program / (form == "csv" ? "Intercambio_CSV.fmt" : "Intercambio_BD.fmt"));
    staging::ColArchsBD catalogue;
    std::vector<std::string> warnings;
    staging::AddEntriesFromKey(catalogue, settings::KeyValue(format, "Archivos"), true, "Archivos", &warnings);
    staging::AddEntriesFromKey(catalogue, settings::KeyValue(format, "BD"), false, "BD", &warnings);
    std::array<bool, 5> boxes = {true, true, true, true, true};
    t = Clock::now();
    staging::MatchResult match = staging::MatchFolder(catalogue, origin, boxes);
    std::printf("Búsqueda de archivos: %.1f s (%lld líneas)\n", Since(t), match.total_lines);

    db::SqliteConnection connection;
    if (!connection.open(staging_path.string())) {
      std::fprintf(stderr, "%s\n", connection.last_error().c_str());
      return 2;
    }
    staging::StagingLoad load;
    load.staging = &connection;
    load.program_folder = program;
    load.TablaNoBorrar = settings::KeyValue(format, "TablaNoBorrar");
    load.catalogue = &catalogue;
    load.ChkOP = boxes;
    load.total_lines = match.total_lines;
    load.values.relation_ids = {17, 13, 45, 12, 71, 53, 4};
    t = Clock::now();
    staging::CargarDatos(load);
    const double seconds = Since(t);

    long long staged = 0;
    std::printf("Filas en la base auxiliar:");
    for (const auto& e : catalogue) {
      long long n = Count(connection.handle(), e.name());
      staged += n > 0 ? n : 0;
      std::printf(" %s %lld", e.name().c_str(), n);
    }
    std::printf("\n");
    for (const auto& w : load.warnings) std::printf("Aviso: %s\n", w.c_str());
    std::printf("Sentencias: %d ejecutadas, %d fallidas; filas leídas de archivos: %lld\n", load.stats.statements_run,
                load.stats.statements_failed, static_cast<long long>(load.stats.data_rows));
    std::printf("CargarDatos: %.1f s, %lld filas en la base auxiliar, %.0f filas/s\n", seconds, staged,
                seconds > 0 ? static_cast<double>(staged) / seconds : 0.0);
    // Pressing the refresh button again: everything is emptied and loaded anew.
    if (!once) {
      t = Clock::now();
      staging::CargarDatos(load);
      std::printf("Recarga (vaciar y cargar de nuevo): %.1f s\n", Since(t));
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "Error: %s\n", e.what());
    return 2;
  }
  if (keep.empty()) std::filesystem::remove_all(dir);
  return 0;
}
