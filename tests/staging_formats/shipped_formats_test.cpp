// End-to-end tests of the shipped formats: a small demo company written as
// interchange CSV files and as an interchange database, staged through both
// formats, must give the same staged data, table by table.
#include <gtest/gtest.h>

#include "demo/csv_writer.h"
#include "demo/demo.h"
#include "demo/sqlite_writer.h"
#include "format_run.h"
#include "settings/formats_table.h"

namespace {

class TempFolder {
 public:
  TempFolder() {
    path_ = std::filesystem::temp_directory_path() /
            ("kel_formats_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
             std::to_string(reinterpret_cast<std::uintptr_t>(this)));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::vector<std::string> Tables(db::SqliteConnection& c) {
  std::vector<std::string> names;
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(c.handle(), "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name", -1, &stmt, nullptr);
  while (sqlite3_step(stmt) == SQLITE_ROW) names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
  sqlite3_finalize(stmt);
  return names;
}

long long Count(db::SqliteConnection& c, const std::string& sql) {
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(c.handle(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << sqlite3_errmsg(c.handle()) << " in " << sql;
    return -1;
  }
  long long n = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : -1;
  sqlite3_finalize(stmt);
  return n;
}

// The first row of a query as text ("a|b|c"), to show what differs.
std::string FirstRow(db::SqliteConnection& c, const std::string& sql) {
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(c.handle(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) return sqlite3_errmsg(c.handle());
  std::string out;
  if (sqlite3_step(stmt) == SQLITE_ROW) {
    for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
      const unsigned char* t = sqlite3_column_text(stmt, i);
      out += (i ? "|" : "") + (t ? std::string(reinterpret_cast<const char*>(t)) : std::string("<null>")) + ":" +
             std::to_string(sqlite3_column_type(stmt, i));
    }
  }
  sqlite3_finalize(stmt);
  return out;
}

}  // namespace

TEST(ShippedFormats, ConfImpListsBothFormats) {
  const std::string text = settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "formats" / "ConfIMP.ini");
  settings::FormatsTable table;
  for (const auto& line : settings::SplitLines(text)) settings::ParseLine(line, table);
  ASSERT_EQ(table.size(), 2u);
  EXPECT_EQ(table.cell(0, 0), "Archivos de intercambio (CSV)");
  EXPECT_EQ(table.cell(1, 0), "Base de datos (carpeta)");
  const std::filesystem::path program = std::filesystem::path(KEL_SOURCE_DIR) / "formats";
  for (int i = 0; i < 2; ++i) {
    const std::string format = settings::ReadText(program / table.cell(i, 1));
    EXPECT_EQ(settings::KeyValue(format, "TablaNoBorrar"), "RelacConc,RelacTLiq,TiposRemuneracion,CobraPor");
    EXPECT_EQ(settings::SplitLines(settings::KeyValue(format, "Relaciones")).size(), 7u);
  }
  EXPECT_EQ(settings::KeyValue(settings::ReadText(program / table.cell(1, 1)), "TipoBD"), "1");
}

TEST(ShippedFormats, CsvAndDatabaseFormsStageTheSameData) {
  TempFolder dir;
  demo::DemoOptions options;
  options.employees = 20;
  options.years = 1;
  options.seed = 7;
  const demo::Staff staff = demo::plan_staff(options);
  std::map<std::string, std::int64_t> rows;
  {
    demo::CsvWriter csv(dir.path() / "Origen_CSV");
    demo::generate_source(options, staff, csv);
    csv.finish();
    rows = csv.row_counts();
    EXPECT_TRUE(csv.missing_columns().empty());
  }
  {
    std::filesystem::create_directories(dir.path() / "Origen_BD");
    demo::SqliteWriter db((dir.path() / "Origen_BD" / "origen.mdb").string(),
                          {std::string(KEL_SOURCE_DIR) + "/schema/pasaje.sql"});
    demo::generate_source(options, staff, db);
    db.finish();
  }

  FormatRun csv_run, bd_run;
  RunFormat(csv_run, "Intercambio_CSV.fmt", dir.path() / "Origen_CSV", dir.path() / "PasajeCSV.mdb");
  RunFormat(bd_run, "Intercambio_BD.fmt", dir.path() / "Origen_BD", dir.path() / "PasajeBD.mdb");
  EXPECT_EQ(csv_run.found, 24);
  EXPECT_EQ(bd_run.found, 24);
  // The demo's data convert cleanly: nothing refused, nothing lost.
  // (The demo's concepts carry no TotalBPS column, the only column the
  // format reads that it lacks.)
  for (const auto& w : csv_run.load.warnings) {
    if (w != "Conceptos.csv: el archivo no trae las columnas TotalBPS (quedan vacías)") ADD_FAILURE() << "CSV: " << w;
  }
  EXPECT_EQ(csv_run.load.stats.bad_values, 0);
  EXPECT_EQ(csv_run.load.stats.statements_failed, 0);
  // The demo database has no TotalBPS column: only the automatic-link
  // statement may fail there.
  EXPECT_EQ(bd_run.load.stats.statements_failed, 1);

  auto& a = *csv_run.staging;
  auto& b = *bd_run.staging;
  ASSERT_EQ(sqlite3_exec(a.handle(), ("ATTACH '" + (dir.path() / "PasajeBD.mdb").string() + "' AS bd").c_str(),
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  for (const std::string& table : Tables(b)) {
    if (table.rfind("sqlite_", 0) == 0) continue;
    long long n = Count(a, "SELECT count(*) FROM main." + table);
    EXPECT_EQ(n, Count(b, "SELECT count(*) FROM " + table)) << table;
    // Row by row, both ways.
    const std::string only_csv = "SELECT * FROM main." + table + " EXCEPT SELECT * FROM bd." + table;
    EXPECT_EQ(Count(a, "SELECT count(*) FROM (" + only_csv + ")"), 0)
        << table << ": " << FirstRow(a, only_csv) << " / " << FirstRow(a, "SELECT * FROM bd." + table + " EXCEPT SELECT * FROM main." + table);
    EXPECT_EQ(Count(a, "SELECT count(*) FROM (SELECT * FROM bd." + table + " EXCEPT SELECT * FROM main." + table + ")"), 0)
        << table;
    auto written = rows.find(table);
    bool staged_by_format = table != "RelacConc" && table != "RelacTLiq";
    if (written != rows.end() && staged_by_format) {
      EXPECT_EQ(n, written->second) << table;
    }
  }
  for (const char* t : {"Empresa", "Cargos", "Personas", "Contrato", "Declaraciones", "Conceptos",
                        "TiposLiquidacion", "Encabezados", "Datos_Liquidacion", "Cotizacion"}) {
    EXPECT_GT(Count(a, std::string("SELECT count(*) FROM main.") + t), 0) << t;
  }
  // A checksum over the liquidation lines and the amounts of the headers.
  EXPECT_EQ(Count(a, "SELECT sum(id_Dato * 7 + id_Concepto + CAST(round(Monto * 100) AS INTEGER)) FROM main.Datos_Liquidacion"),
            Count(b, "SELECT sum(id_Dato * 7 + id_Concepto + CAST(round(Monto * 100) AS INTEGER)) FROM Datos_Liquidacion"));
  EXPECT_EQ(Count(a, "SELECT sum(CAST(round(Liquido * 100) AS INTEGER)) FROM main.Encabezados"),
            Count(b, "SELECT sum(CAST(round(Liquido * 100) AS INTEGER)) FROM Encabezados"));
}
