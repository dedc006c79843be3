// bench/preview_bench.cpp — how long the preview of a large staged company
// takes to show, grid by grid, and how much memory the liquidation browser
// needs.
//
//   bench_preview [--employees N] [--years Y] [--keep CARPETA] [--repeat R]
//
// Generates the demo company (default 1000 employees, 10 years) in its staged
// form, which is a staging database as the load leaves it, and its KEL
// company; then times the whole preview refresh (ActuGrillas) and each grid's
// first page on its own, the re-sorts of the concept grid and of the
// liquidation headers, the next pages and the lines of a header. Prints the
// process's resident memory before and after the browser opened, so that
// runs over different history lengths can be compared. A plain timing
// program, like the staging load's.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "db/list_query.h"
#include "db/sqlite_connection.h"
#include "demo/demo.h"
#include "mapping/mapping_panel.h"
#include "preview/preview_sql.h"
#include "preview/staged_preview.h"

namespace {

using Clock = std::chrono::steady_clock;

double Millis(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// VmRSS or VmHWM of this process in MB (0 when unknown).
double MemoryMb(const std::string& key) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind(key + ":", 0) == 0) return std::atof(line.c_str() + key.size() + 1) / 1024.0;
  return 0;
}

// Processor time of this process in ms: on a machine shared with other work
// the wall time grows with the load, this does not.
double CpuMillis() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto ms = [](const timeval& tv) { return static_cast<double>(tv.tv_sec) * 1000 + static_cast<double>(tv.tv_usec) / 1000; };
  return ms(usage.ru_utime) + ms(usage.ru_stime);
}

// Runs `work` `repeat` times (it must give the same result each time) and
// prints its wall and processor time; with repeats, the least and the median
// of each, since on a shared machine single runs vary by half.
void Time(const char* what, const std::function<std::size_t()>& work, int repeat = 1) {
  std::vector<double> wall, cpu;
  std::size_t rows = 0;
  for (int i = 0; i < repeat; ++i) {
    const auto t = Clock::now();
    const double c = CpuMillis();
    rows = work();
    wall.push_back(Millis(t));
    cpu.push_back(CpuMillis() - c);
  }
  std::sort(wall.begin(), wall.end());
  std::sort(cpu.begin(), cpu.end());
  const std::size_t mid = wall.size() / 2;
  if (repeat == 1)
    std::printf("  %-44s %8.1f ms reloj %8.1f ms CPU  %zu filas\n", what, wall[0], cpu[0], rows);
  else
    std::printf("  %-44s %8.1f ms reloj %8.1f ms CPU  %zu filas (mín.; mediana %.1f / %.1f de %d)\n", what, wall[0],
                cpu[0], rows, wall[mid], cpu[mid], repeat);
}

}  // namespace

int main(int argc, char** argv) {
  demo::DemoOptions options;
  options.employees = 1000;
  options.years = 10;
  std::filesystem::path keep;
  int repeats = 5;  // of the sorts that give the same page each time
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string arg = argv[i];
    if (arg == "--employees") options.employees = std::atoi(argv[i + 1]);
    else if (arg == "--years") options.years = std::atoi(argv[i + 1]);
    else if (arg == "--keep") keep = argv[i + 1];
    else if (arg == "--repeat") repeats = std::max(1, std::atoi(argv[i + 1]));
    else {
      std::fprintf(stderr, "Opción desconocida: %s\n", argv[i]);
      return 1;
    }
  }
  const std::filesystem::path dir = keep.empty() ? std::filesystem::temp_directory_path() / "kel_preview_bench" : keep;
  const std::filesystem::path staged = dir / "Pasaje.mdb";
  const std::filesystem::path kel = dir / "Empresa" / "Datos.mdb";

  try {
    if (!std::filesystem::exists(staged) || !std::filesystem::exists(kel) || keep.empty()) {
      std::filesystem::remove_all(dir);
      const auto t = Clock::now();
      demo::build_demo(options, {staged.string(), kel.string(), (std::filesystem::path(KEL_SOURCE_DIR) / "schema").string()});
      std::printf("Empresa de %d empleados x %d años generada en %.1f s\n", options.employees, options.years,
                  Millis(t) / 1000);
    }
    db::SqliteConnection staging, destination;
    if (!staging.open(staged.string()) || !destination.open(kel.string())) {
      std::fprintf(stderr, "No se pudieron abrir las bases\n");
      return 2;
    }
    const std::string headers =
        db::as_text(staging.open_recordset("Select count(*) as N From Encabezados").field(std::size_t{0}));
    const std::string lines =
        db::as_text(staging.open_recordset("Select count(*) as N From Datos_Liquidacion").field(std::size_t{0}));
    std::printf("Base auxiliar: %s encabezados, %s líneas de liquidación\n", headers.c_str(), lines.c_str());
    const double rss_before = MemoryMb("VmRSS");

    preview::StagedPreview preview;
    mapping::MappingPanel mapping;
    std::string conc_crear;
    preview::PreviewInputs in;
    in.staging = &staging;
    in.destination = &destination;
    in.desde = std::to_string(options.last_year) + "-01-01";
    in.hasta = std::to_string(options.last_year) + "-12-01";
    in.conc_crear = &conc_crear;

    std::printf("Actualizar la vista previa (ActuGrillas):\n");
    Time("primera vez (todo)", [&] {
      preview.ActuGrillas(in, mapping);
      return preview.browser.GridLiq().row_count();
    });
    Time("segunda vez (todo)", [&] {
      preview.ActuGrillas(in, mapping);
      return preview.browser.GridLiq().row_count();
    });
    const double rss_preview = MemoryMb("VmRSS");

    std::printf("Cada grilla por separado:\n");
    Time("GCargos (lista)", [&] {
      return db::list_query(preview::sql::cargos_grid(), preview::sql::kCatalogueFields, "", staging).size();
    });
    Time("GContra (contratos)", [&] {
      return db::list_query(preview::sql::contracts_grid(), preview::sql::kContractFields, "", staging).size();
    });
    Time("GridDeduc (declaraciones del período)", [&] {
      return staging.open_recordset(preview::sql::declarations_select(in.hasta, in.desde)).row_count();
    });
    mapping::Databases dbs{staging, destination};
    Time("GridRelacTL (tipos)", [&] {
      mapping.refresh_types(dbs);
      return mapping.GridRelacTL.rows().size();
    });
    Time("GridRelacConc (conceptos)", [&] {
      mapping.refresh_concepts(dbs, -1, conc_crear);
      return mapping.GridRelacConc.rows().size();
    });
    Time("GridRelacConc reordenada (CodigoOS)", [&] {
      mapping.refresh_concepts(dbs, 0, conc_crear);
      return mapping.GridRelacConc.rows().size();
    });
    Time("GridRelacConc reordenada (CodigoOS Desc)", [&] {
      mapping.refresh_concepts(dbs, 0, conc_crear);
      return mapping.GridRelacConc.rows().size();
    });
    preview::LiquidationBrowser& b = preview.browser;
    Time("GridLiq primera página (id_Persona)", [&] {
      b.refresh(staging, -1);
      return b.GridLiq().row_count();
    }, repeats);
    Time("GridLiq página siguiente", [&] {
      b.fetch_more();
      return b.GridLiq().row_count();
    });
    Time("GridDatosLiq (líneas del encabezado actual)", [&] {
      b.set_current_row(staging, 150);
      return b.GridDatosLiq().row_count();
    });
    Time("GridLiq reordenada (Nombres)", [&] {
      b.refresh(staging, 4);
      return b.GridLiq().row_count();
    });
    Time("GridLiq reordenada (Nombres Desc)", [&] {
      b.refresh(staging, 4);
      return b.GridLiq().row_count();
    });
    // The month column always sorts ascending, so each repeat is the same sort.
    Time("GridLiq reordenada (mes, cdate)", [&] {
      b.refresh(staging, 5);
      return b.GridLiq().row_count();
    }, repeats);
    Time("GridLiq reordenada (id_Contrato)", [&] {
      b.refresh(staging, 2);
      return b.GridLiq().row_count();
    });
    std::printf("Memoria residente: %.1f MB antes, %.1f MB con la vista previa, %.1f MB al final (pico %.1f MB)\n",
                rss_before, rss_preview, MemoryMb("VmRSS"), MemoryMb("VmHWM"));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "Error: %s\n", e.what());
    return 2;
  }
  if (keep.empty()) std::filesystem::remove_all(dir);
  return 0;
}
