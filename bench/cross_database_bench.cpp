// bench/cross_database_bench.cpp — rows per second of a cross-database
// insert, the shape of the transfer's big statements: the rows of a staged
// table read by path (`in '<path>'`) joined with a table of the destination.
// The Jet statement run through db::SqliteConnection (translation, attached
// staging file, Jet functions) is measured against the same statement written
// by hand in SQLite SQL on a plain sqlite3 connection with the same ATTACH.
// A second pair measures the cost per statement of small, all different
// statements (the ones the transfer builds with numbers in them).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "db/error.h"
#include "db/sqlite_connection.h"

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kRows = 1000000;

void exec(sqlite3* db, const std::string& sql) {
  char* message = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = message ? message : "?";
    sqlite3_free(message);
    throw std::runtime_error(text + " in " + sql);
  }
}

// The staged table (one million liquidation-like lines) and the destination
// with its lookup table, made once for all benchmarks.
struct Fixture {
  fs::path folder = fs::temp_directory_path() / "kel_bench_cross_database";
  std::string source = (folder / "Pasaje.mdb").string();
  std::string destination = (folder / "Destino.mdb").string();

  Fixture() {
    fs::remove_all(folder);
    fs::create_directories(folder);
    sqlite3* db = nullptr;
    sqlite3_open(source.c_str(), &db);
    exec(db,
         "PRAGMA journal_mode=WAL;"
         "CREATE TABLE Datos (id_Datos INTEGER PRIMARY KEY, id_Concepto INTEGER, "
         "Importe REAL, MesDeLiq TEXT, Detalle TEXT COLLATE NOCASE);"
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
             std::to_string(kRows) +
             ") INSERT INTO Datos SELECT i, i % 500 + 1, (i % 1000) * 1.25, "
             "printf('%04d-%02d-01', 2000 + i % 20, i % 12 + 1), 'Línea ' || i FROM n;");
    sqlite3_close(db);
    sqlite3_open(destination.c_str(), &db);
    exec(db,
         "PRAGMA journal_mode=WAL;"
         "CREATE TABLE Conceptos (id_Concepto INTEGER PRIMARY KEY, Factor REAL);"
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
         "INSERT INTO Conceptos SELECT i, 1 + i / 100.0 FROM n;"
         "CREATE TABLE Datos (id_Datos INTEGER PRIMARY KEY, id_Concepto INTEGER, "
         "Importe REAL, MesDeLiq TEXT, Detalle TEXT COLLATE NOCASE);");
    sqlite3_close(db);
  }
  ~Fixture() {
    std::error_code ec;
    fs::remove_all(folder, ec);
  }
};

Fixture& fixture() {
  static Fixture f;
  return f;
}

void BM_JetThroughConnection(benchmark::State& state) {
  Fixture& f = fixture();
  db::SqliteConnection conn;
  if (!conn.open(f.destination)) {
    state.SkipWithError(conn.last_error().c_str());
    return;
  }
  const std::string jet =
      "Insert into Datos Select A.id_Datos, A.id_Concepto, A.Importe * C.Factor as Importe, "
      "A.MesDeLiq, A.Detalle From (Select * From Datos in '" +
      f.source + "') as A inner join Conceptos as C on A.id_Concepto = C.id_Concepto";
  try {
    std::cerr << "SQLite: " << conn.translate(jet).statements.front() << "\n";
    for (auto _ : state) {
      state.PauseTiming();
      conn.execute_native("DELETE FROM Datos");
      state.ResumeTiming();
      std::int64_t rows = conn.execute(jet);
      if (rows != kRows) state.SkipWithError("wrong row count");
    }
  } catch (const db::Error& e) {
    state.SkipWithError((e.message() + " / " + e.translated_text()).c_str());
    return;
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

void BM_HandWrittenSqlite(benchmark::State& state) {
  Fixture& f = fixture();
  sqlite3* db = nullptr;
  sqlite3_open_v2(f.destination.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_busy_timeout(db, 15000);
  exec(db, "PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON;");
  sqlite3_stmt* attach = nullptr;
  sqlite3_prepare_v2(db, "ATTACH DATABASE ?1 AS src1", -1, &attach, nullptr);
  sqlite3_bind_text(attach, 1, f.source.c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_step(attach);
  sqlite3_finalize(attach);
  const std::string sql =
      "INSERT INTO Datos SELECT A.id_Datos, A.id_Concepto, A.Importe * C.Factor AS Importe, "
      "A.MesDeLiq, A.Detalle FROM (SELECT * FROM src1.Datos) AS A INNER JOIN Conceptos AS C "
      "ON A.id_Concepto = C.id_Concepto";
  for (auto _ : state) {
    state.PauseTiming();
    exec(db, "DELETE FROM Datos");
    state.ResumeTiming();
    exec(db, sql);
    if (sqlite3_changes64(db) != kRows) state.SkipWithError("wrong row count");
  }
  state.SetItemsProcessed(state.iterations() * kRows);
  sqlite3_close(db);
}

// Statements built by concatenation differ in their numbers, so each one is
// translated and prepared afresh: the per-statement cost of the connection.
void BM_SmallStatementsThroughConnection(benchmark::State& state) {
  Fixture& f = fixture();
  db::SqliteConnection conn;
  if (!conn.open(f.destination)) {
    state.SkipWithError(conn.last_error().c_str());
    return;
  }
  std::int64_t n = 0;
  conn.execute_native("DELETE FROM Datos");
  conn.begin_transaction();
  for (auto _ : state) {
    ++n;
    conn.execute("Update Conceptos Set Factor = Factor + 0 Where id_Concepto = " +
                 std::to_string(n % 500 + 1) + " and Factor > " + std::to_string(n % 7));
  }
  conn.commit_transaction();
  state.SetItemsProcessed(state.iterations());
}

void BM_SmallStatementsHandWritten(benchmark::State& state) {
  Fixture& f = fixture();
  sqlite3* db = nullptr;
  sqlite3_open_v2(f.destination.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  exec(db, "PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON; BEGIN");
  std::int64_t n = 0;
  for (auto _ : state) {
    ++n;
    exec(db, "UPDATE Conceptos SET Factor = Factor + 0 WHERE id_Concepto = " +
                 std::to_string(n % 500 + 1) + " AND Factor > " + std::to_string(n % 7));
  }
  exec(db, "COMMIT");
  state.SetItemsProcessed(state.iterations());
  sqlite3_close(db);
}

BENCHMARK(BM_SmallStatementsThroughConnection)->Iterations(20000);
BENCHMARK(BM_SmallStatementsHandWritten)->Iterations(20000);
BENCHMARK(BM_JetThroughConnection)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_HandWrittenSqlite)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
