// End-to-end: a session on a copy of the bundled demo company with the shipped
// formats stages the demo's source, in its database-file form (format 1) and
// in its CSV form (format 0), and both give the source's rows and link the
// concepts the source marks as totals. Importing them whole is checked in
// source_kinds_test.cpp.
#include <algorithm>
#include <cstdlib>
#include <map>

#include "controller_fixture.h"

namespace {

namespace fs = std::filesystem;
using Counts = std::map<std::string, std::string>;

const fs::path kBuiltProgram = KEL_PROGRAM_DIR;

Counts row_counts(const fs::path& db) {
  Counts counts;
  for (const std::string& t : kel_test::table_names(db))
    counts[t] = kel_test::query_text(db, "SELECT count(*) FROM \"" + t + "\"");
  return counts;
}

struct DemoCopy : kel_test::DemoFolders {
  transfer::Importer importer;

  // Stages `source` with the format `index` and returns the staged counts.
  Counts stage(const fs::path& source, int index, kel_test::RecordingUi& ui) {
    preview::StagedPreview preview;
    mapping::MappingPanel mapping;
    session::MainWindowController c(prog, ui, importer, preview, mapping);
    c.Form_Load(company.string() + "*" + source.string() + "*" + std::to_string(index));
    EXPECT_EQ(c.state.cmbFormato_index, index);
    c.Form_Activate();
    EXPECT_FALSE(preview.lblDatosCP_visible);
    // Both forms carry every column the formats read, Conceptos.TotalBPS
    // included: nothing is refused and there is nothing to warn about.
    EXPECT_EQ(c.last_load_stats.statements_failed, 0);
    for (const std::string& w : c.last_load_warnings) ADD_FAILURE() << w;
    EXPECT_EQ(c.state.ChkOP, (std::array<bool, 5>{true, true, true, true, true}));
    c.Form_Unload();
    return row_counts(staging);
  }
};

// The concept links the source's TotalBPS marks call for, "CodOS>CodKEL"
// in concept order, read from the interchange database: each mark's KEL
// concept is the shipped formats' Relaciones row for that total.
std::string marked_links(const fs::path& interchange_db) {
  return kel_test::query_text(
      interchange_db,
      "SELECT group_concat(id_Concepto || '>' || CASE TotalBPS WHEN '1' THEN 17 WHEN '2' THEN 13 WHEN '5' THEN 45 "
      "WHEN '7' THEN 12 WHEN '8' THEN 71 WHEN 'H' THEN 53 WHEN 'D' THEN 4 ELSE 'marca ' || TotalBPS END, ',') "
      "FROM (SELECT * FROM Conceptos WHERE TotalBPS IS NOT NULL ORDER BY id_Concepto)");
}

// The staged concept links, in the same form.
std::string staged_links(const fs::path& staging) {
  return kel_test::query_text(
      staging, "SELECT group_concat(CodOS || '>' || CodKEL, ',') FROM (SELECT * FROM RelacConc ORDER BY CodOS, CodKEL)");
}

// Every table of the source holds, once staged, the source's rows; the
// mapping tables and the kept base tables are not copied from the source.
void expect_source_rows_staged(const Counts& source, const Counts& staged) {
  const std::vector<std::string> kept = {"RelacConc", "RelacTLiq", "TiposRemuneracion", "CobraPor", "TablasPropias",
                                         "PasajeEmpresa"};
  int compared = 0;
  for (const auto& [table, rows] : source) {
    if (std::find(kept.begin(), kept.end(), table) != kept.end()) continue;
    ASSERT_TRUE(staged.count(table)) << table;
    EXPECT_EQ(staged.at(table), rows) << table;
    ++compared;
  }
  EXPECT_GE(compared, 20);
  EXPECT_EQ(staged.at("Empresa"), "1");
  EXPECT_NE(staged.at("Datos_Liquidacion"), "0");
}

// Both forms stage every table of the source alike: the CSV form on a new
// staging database, then the database-file form over the kept mappings.
TEST(DemoSession, CsvAndDatabaseFormsStageEveryTableAlike) {
  DemoCopy d;
  const fs::path csv = d.demo / "Origen_CSV";
  ASSERT_TRUE(fs::exists(csv / "Empresa.csv")) << "the build makes the demo's CSV files";
  kel_test::RecordingUi ui;
  const Counts from_csv = d.stage(csv, 0, ui);

  // A new staging database has no mappings: every marked concept is linked
  // by the format, and only those.
  const std::string links = marked_links(d.demo / "Origen_BD" / "origen.mdb");
  EXPECT_GE(std::count(links.begin(), links.end(), ','), 5) << links;
  EXPECT_EQ(links.find("marca"), std::string::npos) << links;
  EXPECT_EQ(staged_links(d.staging), links);

  // Loaded again from the other form, over the kept mappings: the links are
  // already there and none is added twice.
  const Counts from_db = d.stage(d.demo / "Origen_BD", 1, ui);
  EXPECT_TRUE(ui.log.empty()) << ui.log.front();
  EXPECT_EQ(staged_links(d.staging), links);
  EXPECT_EQ(from_csv, from_db);
  expect_source_rows_staged(row_counts(d.demo / "Origen.mdb"), from_csv);
  // The build tree's demo is untouched: its staging database is elsewhere.
  EXPECT_FALSE(fs::exists(kBuiltProgram / "Empresa" / "Pasaje.mdb") &&
               fs::last_write_time(kBuiltProgram / "Empresa" / "Pasaje.mdb") > fs::last_write_time(d.staging));
}

// An ODBC data source without the format's tables (format 2 finds them by
// name) is said, and leaves the staging database as it was. (The demo staged
// and imported through ODBC is compared whole in source_kinds_test.cpp.)
TEST(DemoSession, OdbcSourceWithoutTheFormatsTablesLeavesTheStagingAlone) {
  if (!kel_test::sqlite_odbc_declared()) GTEST_SKIP() << "no está instalado el controlador ODBC de SQLite (libsqliteodbc)";
  DemoCopy d;
  kel_test::run_sqlite(d.tmp.path() / "vacia.db", "CREATE TABLE Otra (x INTEGER);");
  kel_test::use_sqlite_data_sources(
      d.tmp.path(), {{"kel_demo", d.demo / "Origen_BD" / "origen.mdb"}, {"kel_vacia", d.tmp.path() / "vacia.db"}});
  kel_test::RecordingUi ui;
  const Counts staged = d.stage("kel_demo", 2, ui);
  EXPECT_TRUE(ui.log.empty()) << ui.log.front();

  // No table of the format: said, and nothing staged is lost.
  preview::StagedPreview preview;
  mapping::MappingPanel mapping;
  session::MainWindowController c(d.prog, ui, d.importer, preview, mapping);
  c.Form_Load(d.company.string() + "*kel_vacia*2");
  c.Form_Activate();
  ASSERT_FALSE(ui.log.empty());
  EXPECT_NE(ui.log.back().find("Ninguna tabla del origen de datos ODBC kel_vacia coincide"), std::string::npos)
      << ui.log.back();
  EXPECT_EQ(c.state.ChkOP, (std::array<bool, 5>{true, true, true, true, true}));
  c.Form_Unload();
  EXPECT_EQ(row_counts(d.staging), staged);
}

}  // namespace
