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
#include "support/query_rows.h"
#include "support/temp_dir.h"

namespace {

using test_support::QueryRows;

std::string Lines(const std::vector<std::string>& rows) {
  std::string out;
  for (const std::string& row : rows) out += row + "\n";
  return out;
}

// Every row of a table as text, in rowid order, each value written by
// quote() so that 1, 1.0 and '1' differ: the table byte for byte.
std::string TableText(db::SqliteConnection& c, const std::string& schema, const std::string& table) {
  std::string columns;
  for (const std::string& name : QueryRows(c, "SELECT name FROM pragma_table_xinfo('" + table + "', '" + schema + "')"))
    columns += std::string(columns.empty() ? "" : " || '|' || ") + "quote(\"" + name + "\")";
  return Lines(QueryRows(c, "SELECT " + columns + " FROM " + schema + ".\"" + table + "\" ORDER BY rowid"));
}

// The names and definitions of a database's indexes.
std::string Indexes(db::SqliteConnection& c, const std::string& schema) {
  return Lines(QueryRows(c, "SELECT name || ' ' || ifnull(sql, '') FROM " + schema +
                                ".sqlite_master WHERE type = 'index' ORDER BY name"));
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
  for (const std::string& row : QueryRows(c, "SELECT CodOS, CodKEL FROM main.RelacConc"))
    links.emplace(std::stoll(row), std::stoll(row.substr(row.find('|') + 1)));
  return links;
}

// A small demo company written in both interchange forms under `dir`:
// Origen_CSV/*.csv and Origen_BD/origen.mdb.
void WriteInterchangeForms(const std::filesystem::path& dir) {
  demo::DemoOptions options;
  options.employees = 20;
  options.years = 1;
  options.seed = 7;
  const demo::Staff staff = demo::plan_staff(options);
  {
    demo::CsvWriter csv(dir / "Origen_CSV");
    demo::generate_source(options, staff, csv, demo::SourceForm::Interchange);
    csv.finish();
    EXPECT_TRUE(csv.missing_columns().empty());
  }
  std::filesystem::create_directories(dir / "Origen_BD");
  demo::SqliteWriter db((dir / "Origen_BD" / "origen.mdb").string(),
                        {std::string(KEL_SOURCE_DIR) + "/schema/pasaje.sql"}, {demo::kInterchangeSchemaSql});
  demo::generate_source(options, staff, db, demo::SourceForm::Interchange);
  db.finish();
  EXPECT_TRUE(db.missing_columns().empty()) << *db.missing_columns().begin();
}

}  // namespace

TEST(ShippedFormats, ConfImpListsBothFormats) {
  const std::string text = settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "formats" / "ConfIMP.ini");
  settings::FormatsTable table;
  for (const auto& line : settings::SplitLines(text)) settings::ParseLine(line, table);
  ASSERT_EQ(table.size(), 3u);
  const std::filesystem::path program = std::filesystem::path(KEL_SOURCE_DIR) / "formats";
  for (int i = 0; i < 3; ++i) {
    const std::string format = settings::ReadText(program / table.cell(i, 1));
    EXPECT_EQ(settings::KeyValue(format, "TablaNoBorrar"), "RelacConc,RelacTLiq,TiposRemuneracion,CobraPor");
    EXPECT_EQ(settings::SplitLines(settings::KeyValue(format, "Relaciones")).size(), 7u);
  }
  EXPECT_EQ(settings::KeyValue(settings::ReadText(program / table.cell(1, 1)), "TipoBD"), "1");
  EXPECT_EQ(settings::KeyValue(settings::ReadText(program / table.cell(2, 1)), "TipoBD"), "0");
}

// What both forms stage is compared value by value here; that the staged
// rows are the source's, and that a new staging database links exactly the
// marked concepts, is checked on the real session in
// DemoSession.CsvAndDatabaseFormsStageEveryTableAlike.
TEST(ShippedFormats, CsvAndDatabaseFormsStageTheSameData) {
  TempDir dir;
  WriteInterchangeForms(dir.path());

  FormatRun csv_run, bd_run;
  RunFormat(csv_run, "Intercambio_CSV.fmt", dir.path() / "Origen_CSV", dir.path() / "PasajeCSV.mdb");
  RunFormat(bd_run, "Intercambio_BD.fmt", dir.path() / "Origen_BD", dir.path() / "PasajeBD.mdb");
  EXPECT_EQ(csv_run.found, 24);
  EXPECT_EQ(bd_run.found, 24);
  // The demo's data convert cleanly, TotalBPS included: nothing refused,
  // nothing lost, nothing to warn about, and no column missing from a file.
  for (const auto& w : csv_run.load.warnings) ADD_FAILURE() << "CSV: " << w;
  for (const auto& w : bd_run.load.warnings) ADD_FAILURE() << "BD: " << w;
  EXPECT_TRUE(csv_run.load.notes.empty()) << csv_run.load.notes.front();
  EXPECT_EQ(csv_run.load.stats.bad_values, 0);
  EXPECT_EQ(csv_run.load.stats.statements_failed, 0);
  EXPECT_EQ(bd_run.load.stats.statements_failed, 0);

  auto& a = *csv_run.staging;
  auto& b = *bd_run.staging;
  ASSERT_EQ(sqlite3_exec(a.handle(), ("ATTACH '" + (dir.path() / "PasajeBD.mdb").string() + "' AS bd").c_str(),
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  for (const std::string& table : QueryRows(b, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
    if (table.rfind("sqlite_", 0) == 0) continue;
    // Value by value, types and row order included.
    EXPECT_TRUE(TableText(a, "main", table) == TableText(a, "bd", table)) << table << " differs between the forms";
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
}

// The automatic links never overrule the user: a concept the user already
// mapped (to a KEL concept or to "No Importar", -1) keeps that mapping, and a
// reload links nothing twice. The demo's own mappings agree with the links,
// and a link goes to the KEL concept of the user's relation table.
TEST(ShippedFormats, AutomaticLinksKeepTheUsersMappings) {
  TempDir dir;
  WriteInterchangeForms(dir.path());
  // The user has the demo's mappings and set viáticos (marked '8') to
  // "No Importar"; ticket alimentación (marked '7') is still unmapped, and
  // the user related BPS 7 to KEL concept 30 instead of 12.
  auto user_mappings = [](FormatRun& run) {
    run.load.values.relation_ids[3] = 30;
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
    EXPECT_EQ(expected.find(demo::kTicketAlimentacion)->second, 30);
    EXPECT_EQ(Links(*run.staging), expected);

    // The same source loaded again: RelacConc is kept and nothing is added.
    staging::CargarDatos(run.load);
    EXPECT_EQ(run.load.stats.statements_failed, 0);
    EXPECT_EQ(Links(*run.staging), expected);
  }
}
