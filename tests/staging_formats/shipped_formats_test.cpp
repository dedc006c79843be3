// End-to-end tests of the shipped formats: a small demo company written as
// interchange CSV files and as an interchange database, staged through both
// formats, must give the same staged data, table by table.
#include <gtest/gtest.h>

#include "demo/concepts.h"
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

// Every row of a table as text, in rowid order, each value written by
// quote() so that 1, 1.0 and '1' differ: the table byte for byte.
std::string TableText(db::SqliteConnection& c, const std::string& schema, const std::string& table) {
  std::string columns;
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(c.handle(), ("SELECT name FROM pragma_table_xinfo('" + table + "', '" + schema + "')").c_str(), -1,
                     &stmt, nullptr);
  while (sqlite3_step(stmt) == SQLITE_ROW) {
    columns += std::string(columns.empty() ? "" : " || '|' || ") + "quote(\"" +
               reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)) + "\")";
  }
  sqlite3_finalize(stmt);
  std::string sql = "SELECT " + columns + " FROM " + schema + ".\"" + table + "\" ORDER BY rowid";
  std::string out;
  if (sqlite3_prepare_v2(c.handle(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) return sqlite3_errmsg(c.handle());
  while (sqlite3_step(stmt) == SQLITE_ROW) out += reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)) + std::string("\n");
  sqlite3_finalize(stmt);
  return out;
}

// The names and definitions of a database's indexes.
std::string Indexes(db::SqliteConnection& c, const std::string& schema) {
  std::string out;
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(c.handle(),
                     ("SELECT name || ' ' || ifnull(sql, '') FROM " + schema +
                      ".sqlite_master WHERE type = 'index' ORDER BY name")
                         .c_str(),
                     -1, &stmt, nullptr);
  while (sqlite3_step(stmt) == SQLITE_ROW) out += reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)) + std::string("\n");
  sqlite3_finalize(stmt);
  return out;
}

// The KEL concept the format relates to a TotalBPS mark, by the order of the
// format's Relaciones rows (the run's relation ids).
int RelationFor(const FormatRun& run, char mark) {
  const std::string marks = "12578HD";
  const auto at = marks.find(mark);
  return at == std::string::npos ? -2 : run.load.values.relation_ids.at(at);
}

// RelacConc as source concept -> KEL concepts (several if a concept were
// linked twice).
std::multimap<long long, long long> Links(db::SqliteConnection& c) {
  std::multimap<long long, long long> links;
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(c.handle(), "SELECT CodOS, CodKEL FROM main.RelacConc", -1, &stmt, nullptr);
  while (sqlite3_step(stmt) == SQLITE_ROW) links.emplace(sqlite3_column_int64(stmt, 0), sqlite3_column_int64(stmt, 1));
  sqlite3_finalize(stmt);
  return links;
}

// A small demo company written in both interchange forms under `dir`:
// Origen_CSV/*.csv and Origen_BD/origen.mdb. Returns the rows per CSV file.
std::map<std::string, std::int64_t> WriteInterchangeForms(const std::filesystem::path& dir) {
  demo::DemoOptions options;
  options.employees = 20;
  options.years = 1;
  options.seed = 7;
  const demo::Staff staff = demo::plan_staff(options);
  std::map<std::string, std::int64_t> rows;
  {
    demo::CsvWriter csv(dir / "Origen_CSV");
    demo::generate_source(options, staff, csv, demo::SourceForm::Interchange);
    csv.finish();
    rows = csv.row_counts();
    EXPECT_TRUE(csv.missing_columns().empty());
  }
  std::filesystem::create_directories(dir / "Origen_BD");
  demo::SqliteWriter db((dir / "Origen_BD" / "origen.mdb").string(),
                        {std::string(KEL_SOURCE_DIR) + "/schema/pasaje.sql"}, {demo::kInterchangeSchemaSql});
  demo::generate_source(options, staff, db, demo::SourceForm::Interchange);
  db.finish();
  EXPECT_TRUE(db.missing_columns().empty()) << *db.missing_columns().begin();
  return rows;
}

}  // namespace

TEST(ShippedFormats, ConfImpListsBothFormats) {
  const std::string text = settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "formats" / "ConfIMP.ini");
  settings::FormatsTable table;
  for (const auto& line : settings::SplitLines(text)) settings::ParseLine(line, table);
  ASSERT_EQ(table.size(), 3u);
  EXPECT_EQ(table.cell(0, 0), "Archivos de intercambio (CSV)");
  EXPECT_EQ(table.cell(1, 0), "Base de datos (carpeta)");
  EXPECT_EQ(table.cell(2, 0), "Origen de datos ODBC");
  const std::filesystem::path program = std::filesystem::path(KEL_SOURCE_DIR) / "formats";
  for (int i = 0; i < 3; ++i) {
    const std::string format = settings::ReadText(program / table.cell(i, 1));
    EXPECT_EQ(settings::KeyValue(format, "TablaNoBorrar"), "RelacConc,RelacTLiq,TiposRemuneracion,CobraPor");
    EXPECT_EQ(settings::SplitLines(settings::KeyValue(format, "Relaciones")).size(), 7u);
  }
  EXPECT_EQ(settings::KeyValue(settings::ReadText(program / table.cell(1, 1)), "TipoBD"), "1");
  EXPECT_EQ(settings::KeyValue(settings::ReadText(program / table.cell(2, 1)), "TipoBD"), "0");
}

TEST(ShippedFormats, CsvAndDatabaseFormsStageTheSameData) {
  TempFolder dir;
  const std::map<std::string, std::int64_t> rows = WriteInterchangeForms(dir.path());

  FormatRun csv_run, bd_run;
  RunFormat(csv_run, "Intercambio_CSV.fmt", dir.path() / "Origen_CSV", dir.path() / "PasajeCSV.mdb");
  RunFormat(bd_run, "Intercambio_BD.fmt", dir.path() / "Origen_BD", dir.path() / "PasajeBD.mdb");
  EXPECT_EQ(csv_run.found, 24);
  EXPECT_EQ(bd_run.found, 24);
  // The demo's data convert cleanly, TotalBPS included: nothing refused,
  // nothing lost, nothing to warn about.
  for (const auto& w : csv_run.load.warnings) ADD_FAILURE() << "CSV: " << w;
  for (const auto& w : bd_run.load.warnings) ADD_FAILURE() << "BD: " << w;
  EXPECT_EQ(csv_run.load.stats.bad_values, 0);
  EXPECT_EQ(csv_run.load.stats.statements_failed, 0);
  EXPECT_EQ(bd_run.load.stats.statements_failed, 0);

  // On a new staging database every concept marked in TotalBPS is linked to
  // the KEL concept of its total, once, and nothing else is linked.
  for (FormatRun* run : {&csv_run, &bd_run}) {
    std::multimap<long long, long long> expected;
    for (const demo::TotalMark& m : demo::total_bps_marks()) expected.emplace(m.concepto, RelationFor(*run, m.total_bps));
    EXPECT_EQ(Links(*run->staging), expected);
  }
  EXPECT_GE(demo::total_bps_marks().size(), 6u);

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
    // Value by value, types included.
    const std::string csv_text = TableText(a, "main", table);
    EXPECT_TRUE(csv_text == TableText(a, "bd", table)) << table << " differs between the CSV and database forms";
    auto written = rows.find(table);
    bool staged_by_format = table != "RelacConc" && table != "RelacTLiq";
    if (written != rows.end() && staged_by_format) {
      EXPECT_EQ(n, written->second) << table;
    }
  }
  // The load leaves every index the schema makes.
  const std::string schema = settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / "pasaje.sql");
  int indexes = 0;
  for (std::size_t at = 0; (at = schema.find("CREATE INDEX ", at)) != std::string::npos; ++indexes) {
    const std::size_t end = schema.find(';', at);
    const std::string create = schema.substr(at, end - at);
    at = end;
    EXPECT_NE(Indexes(a, "main").find(create), std::string::npos) << create;
    EXPECT_NE(Indexes(a, "bd").find(create), std::string::npos) << create;
  }
  EXPECT_GE(indexes, 7);
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

// The automatic links never overrule the user: a concept the user already
// mapped (to a KEL concept or to "No Importar", -1) keeps that mapping, and a
// reload links nothing twice. The demo's own mappings agree with the links.
TEST(ShippedFormats, AutomaticLinksKeepTheUsersMappings) {
  TempFolder dir;
  WriteInterchangeForms(dir.path());
  // The user has the demo's mappings and set viáticos (marked '8') to
  // "No Importar"; ticket alimentación (marked '7') is still unmapped.
  auto user_mappings = [](FormatRun& run) {
    std::string sql = "INSERT INTO RelacConc (CodKEL, CodOS) VALUES (-1, " + std::to_string(demo::kViaticos) + ")";
    for (const demo::Mapping& m : demo::concept_mappings()) {
      sql += ", (" + std::to_string(m.cod_kel) + ", " + std::to_string(m.cod_os) + ")";
    }
    ASSERT_EQ(sqlite3_exec(run.staging->handle(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  };
  for (const char* format : {"Intercambio_CSV.fmt", "Intercambio_BD.fmt"}) {
    SCOPED_TRACE(format);
    const bool csv = std::string(format).find("CSV") != std::string::npos;
    FormatRun run;
    RunFormat(run, format, dir.path() / (csv ? "Origen_CSV" : "Origen_BD"), dir.path() / "Pasaje.mdb", user_mappings);
    EXPECT_EQ(run.load.stats.statements_failed, 0);
    EXPECT_TRUE(run.load.warnings.empty()) << run.load.warnings.front();

    std::multimap<long long, long long> expected = {{demo::kViaticos, -1}};
    for (const demo::Mapping& m : demo::concept_mappings()) expected.emplace(m.cod_os, m.cod_kel);
    bool some_marked_unmapped = false;
    for (const demo::TotalMark& m : demo::total_bps_marks()) {
      const auto mapped = expected.find(m.concepto);
      if (mapped == expected.end()) {
        expected.emplace(m.concepto, RelationFor(run, m.total_bps));
        some_marked_unmapped = true;
      } else if (m.concepto != demo::kViaticos) {
        // The demo maps a total's concept where the format would have.
        EXPECT_EQ(mapped->second, RelationFor(run, m.total_bps)) << "concepto " << m.concepto;
      }
    }
    EXPECT_TRUE(some_marked_unmapped) << "the demo leaves a marked concept for the format to link";
    EXPECT_EQ(expected.count(demo::kTicketAlimentacion), 1u);
    EXPECT_EQ(Links(*run.staging), expected);

    // The same source loaded again: RelacConc is kept and nothing is added.
    staging::CargarDatos(run.load);
    EXPECT_EQ(run.load.stats.statements_failed, 0);
    EXPECT_EQ(Links(*run.staging), expected);
  }
}
