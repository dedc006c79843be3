// bench/full_import_bench.cpp — how long a whole import takes on a large
// source company: the staging load and the five transfer steps.
//
//   bench_full_import [--employees N] [--years Y] [--keep CARPETA] [--pasos N]
//
// Generates the demo source company (default 1000 employees, 10 years) as CSV
// interchange files and the demo KEL company (which already holds about one
// person in five of the source's, under KEL's own ids), loads the staging
// database from the files with the shipped CSV format, then runs the five
// steps in order as an import with every group ticked and no month bound,
// answering Yes to every question (--pasos N stops after step N, to keep the
// databases as the next step finds them). Prints the wall and processor time
// of each phase (on a shared machine the processor time is the steadier
// figure), the rows each step changed and rows per second, and the peak
// memory of the process. A plain timing program: one run of a minute or more does not fit a
// micro-benchmark framework.
#include <sys/resource.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "db/recordset.h"
#include "db/sql_text.h"
#include "db/sqlite_connection.h"
#include "base/value.h"
#include "demo/demo.h"
#include "demo/source_csv.h"
#include "demo/sqlite_writer.h"
#include "settings/key_file.h"
#include "settings/text_file.h"
#include "staging/catalogue.h"
#include "staging/staging_load.h"
#include "transfer/importer.h"

namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Processor time (user + system) of the process so far, in seconds.
double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Peak resident memory of the process so far, in MB.
double PeakMemoryMb() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

class YesToAll final : public transfer::Questions {
 public:
  bool ask_yes_no(const std::string&) override {
    ++asked;
    return true;
  }
  int asked = 0;
};

long long Count(db::SqliteConnection& connection, const std::string& table) {
  db::Recordset rs = connection.open_recordset("Select Count(*) From " + table);
  return rs.eof() ? -1 : static_cast<long long>(db::as_int(rs.field(0)));
}

// Creates the staging database and loads it from the CSV folder; returns the
// rows staged.
long long Stage(const std::filesystem::path& source_dir, const std::filesystem::path& origin,
                db::SqliteConnection& staging) {
  const std::filesystem::path program = source_dir / "formats";
  const std::string format = settings::ReadText(program / "Intercambio_CSV.fmt");
  staging::ColArchsBD catalogue;
  std::vector<std::string> warnings;
  staging::AddEntriesFromKey(catalogue, settings::KeyValue(format, "Archivos"), true, "Archivos", &warnings);
  staging::AddEntriesFromKey(catalogue, settings::KeyValue(format, "BD"), false, "BD", &warnings);
  std::array<bool, 5> boxes = {true, true, true, true, true};
  staging::MatchResult match = staging::MatchFolder(catalogue, origin, boxes);
  staging::StagingLoad load;
  load.staging = &staging;
  load.program_folder = program;
  load.TablaNoBorrar = settings::KeyValue(format, "TablaNoBorrar");
  load.catalogue = &catalogue;
  load.ChkOP = boxes;
  load.total_lines = match.total_lines;
  load.values.relation_ids = {17, 13, 45, 12, 71, 53, 4};
  staging::CargarDatos(load);
  for (const auto& w : load.warnings) std::printf("  Aviso: %s\n", w.c_str());
  long long staged = 0;
  for (const auto& e : catalogue) {
    const long long n = Count(staging, e.name());
    staged += n > 0 ? n : 0;
  }
  return staged;
}

}  // namespace

int main(int argc, char** argv) {
  demo::DemoOptions options;
  options.employees = 1000;
  options.years = 10;
  std::filesystem::path keep;
  int last_step = transfer::kGroupCount;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string arg = argv[i];
    if (arg == "--employees") options.employees = std::atoi(argv[i + 1]);
    else if (arg == "--years") options.years = std::atoi(argv[i + 1]);
    else if (arg == "--keep") keep = argv[i + 1];
    else if (arg == "--pasos") last_step = std::atoi(argv[i + 1]);
    else {
      std::fprintf(stderr, "Opción desconocida: %s\n", argv[i]);
      return 1;
    }
  }
  const std::filesystem::path dir = keep.empty() ? std::filesystem::temp_directory_path() / "kel_import_bench" : keep;
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir / "origen");
  const std::filesystem::path source_dir = KEL_SOURCE_DIR;
  const std::filesystem::path schema = source_dir / "schema";
  const std::filesystem::path kel_path = dir / "Empresa" / "Datos.mdb";
  const std::filesystem::path staging_path = dir / "Empresa" / "Pasaje.mdb";

  try {
    auto t = Clock::now();
    demo::write_source_csv(options, dir / "origen");
    const demo::Staff staff = demo::plan_staff(options);
    std::filesystem::create_directories(kel_path.parent_path());
    {
      demo::SqliteWriter kel(kel_path.string(), {(schema / "kel.sql").string(), (schema / "kel_base.sql").string()});
      demo::generate_kel(options, staff, kel);
      kel.finish();
    }
    {
      demo::SqliteWriter staging(staging_path.string(), {(schema / "pasaje.sql").string()});
      staging.finish();
    }
    std::printf("Origen CSV y empresa KEL de %d empleados x %d años generados en %.1f s\n", options.employees,
                options.years, Since(t));

    db::SqliteConnection staging;
    db::SqliteConnection kel;
    if (!staging.open(staging_path.string()) || !kel.open(kel_path.string())) {
      std::fprintf(stderr, "No se pudieron abrir las bases: %s %s\n", staging.last_error().c_str(),
                   kel.last_error().c_str());
      return 2;
    }
    std::printf("KEL antes: %lld personas, %lld contratos, %lld encabezados\n", Count(kel, "Personas"),
                Count(kel, "Contrato"), Count(kel, "Encabezados"));

    const auto whole = Clock::now();
    const double whole_cpu = CpuSeconds();
    t = Clock::now();
    double cpu = CpuSeconds();
    const long long staged = Stage(source_dir, dir / "origen", staging);
    double seconds = Since(t);
    std::printf("%-52s %7.1f s (cpu %6.1f s) %10lld filas %9.0f filas/s  memoria máx. %.0f MB\n",
                "Carga de la base auxiliar", seconds, CpuSeconds() - cpu, staged,
                seconds > 0 ? static_cast<double>(staged) / seconds : 0.0, PeakMemoryMb());
    std::fflush(stdout);

    YesToAll answers;
    transfer::StepContext ctx{kel, staging, db::jet_path_literal(staging_path.string()), answers, {}};
    transfer::RunInputs inputs;
    inputs.persons_imported = true;
    transfer::Importer importer;
    for (int group = 0; group < last_step && group < transfer::kGroupCount; ++group) {
      t = Clock::now();
      cpu = CpuSeconds();
      const transfer::StepReport report = importer.run_step(group, ctx, inputs);
      seconds = Since(t);
      const long long rows = report.total();
      std::printf("%d. %-49s %7.1f s (cpu %6.1f s) %10lld filas %9.0f filas/s  memoria máx. %.0f MB\n", group + 1,
                  transfer::group_caption(group), seconds, CpuSeconds() - cpu, rows,
                  seconds > 0 ? static_cast<double>(rows) / seconds : 0.0, PeakMemoryMb());
      for (const auto& change : report.changes) {
        std::printf("     %-24s %-12s %10lld\n", change.table.c_str(), change.action.c_str(),
                    static_cast<long long>(change.rows));
      }
      if (report.statements_ignored > 0) {
        std::printf("     %d instrucciones ejecutadas, %d rechazadas sin detener el paso\n", report.statements_run,
                    report.statements_ignored);
      }
      std::fflush(stdout);
    }
    std::printf("Importación completa (carga + pasos): %.1f s (cpu %.1f s); %d preguntas respondidas; memoria máx. "
                "%.0f MB\n",
                Since(whole), CpuSeconds() - whole_cpu, answers.asked, PeakMemoryMb());
    std::printf("KEL después: %lld personas, %lld contratos, %lld encabezados, %lld líneas, %lld entradas de "
                "calendario, %lld licencias\n",
                Count(kel, "Personas"), Count(kel, "Contrato"), Count(kel, "Encabezados"),
                Count(kel, "Datos_Liquidacion"), Count(kel, "Calendario_liq"), Count(kel, "licencias"));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "Error: %s\n", e.what());
    return 2;
  }
  if (keep.empty()) std::filesystem::remove_all(dir);
  return 0;
}
