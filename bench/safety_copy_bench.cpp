// bench/safety_copy_bench.cpp — what the safety copy of an import run costs:
// the online-backup copy (with its check and flush) and the restore of each
// database file named on the command line.
//
//   bench_safety_copy ARCHIVO... [--relaciones AUXILIAR]
//
// --relaciones times the copy of the staging database's mapping tables
// (RelacConc, RelacTLiq), the part of the staging file the copy keeps.
// Run it on the databases bench_full_import leaves with --keep (the KEL
// company and the staging database of 1,000 employees x 10 years) and
// compare with that program's transfer times.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "db/backup.h"
#include "db/error.h"

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  if (argc < 2) {
    std::fprintf(stderr, "Uso: bench_safety_copy ARCHIVO...\n");
    return 3;
  }
  double total = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--relaciones" && i + 1 < argc) {
      const std::string file = argv[++i];
      const std::string copy = file + ".relaciones-bench";
      std::filesystem::remove(copy);
      try {
        const auto t = Clock::now();
        db::backup_tables(file, {"RelacConc", "RelacTLiq"}, copy);
        const double copy_s = std::chrono::duration<double>(Clock::now() - t).count();
        std::printf("%-60s relaciones: copia %6.3f s\n", file.c_str(), copy_s);
        total += copy_s;
        std::filesystem::remove(copy);
      } catch (const db::Error& e) {
        std::fprintf(stderr, "Error: %s\n", e.message().c_str());
        return 2;
      }
      continue;
    }
    const std::string file = argv[i];
    const std::string copy = file + ".antes-de-importar-bench";
    std::filesystem::remove(copy);
    try {
      auto t = Clock::now();
      db::backup_database(file, copy);
      const double copy_s = std::chrono::duration<double>(Clock::now() - t).count();
      t = Clock::now();
      const std::string target = file + ".restaurada-bench";
      db::restore_database(copy, target);
      const double restore_s = std::chrono::duration<double>(Clock::now() - t).count();
      const double mb = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
      std::printf("%-60s %8.1f MB  copia %6.2f s  restauración %6.2f s\n", file.c_str(), mb, copy_s, restore_s);
      total += copy_s;
      std::filesystem::remove(copy);
      std::filesystem::remove(target);
    } catch (const db::Error& e) {
      std::fprintf(stderr, "Error: %s\n", e.message().c_str());
      return 2;
    }
  }
  std::printf("Copias en total: %.2f s\n", total);
  return 0;
}
