// tests/corpus/screens_corpus_test.cpp — every statement of the mapping grids,
// the staged data preview, the liquidation browser and the company check runs
// on demo-like databases without being refused.
#include <sqlite3.h>

#include <string>

#include "corpus_fixture.h"
#include "base/value.h"
#include "mapping/grid_sql.h"
#include "preview/preview_sql.h"
#include "session/valido_sql.h"

namespace corpus_test {
namespace {

TEST_F(CorpusTest, MappingGridStatementsRun) {
  namespace sql = mapping::sql;
  db::Recordset grid = query(staging_, sql::concept_grid_select(kel_path_, ""));
  EXPECT_EQ(grid.row_count(), 8u);
  EXPECT_EQ(grid.field_index("ConcCrear"), 5);
  query(staging_, sql::concept_grid_select(kel_path_, "CodigoKEL Desc"));
  run(staging_, sql::concept_relation_delete("7"));
  run(staging_, sql::concept_relation_insert("-1", "7"));
  run(staging_, sql::concept_relation_delete("7"));
  run(staging_, sql::concept_relation_insert("Null", "7"));
  run(staging_, sql::concept_relation_delete("7"));
  run(staging_, sql::concept_relation_insert("17", "7"));
  run(staging_, sql::concept_relation_remove(17, "7"));
  run(staging_, sql::concept_relation_remove(0, "6"));
  run(staging_, sql::automatic_links_delete("17,13,45,12,71,53,4"));
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM RelacConc WHERE CodOS IN (7, 13)"), 0);
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM RelacConc WHERE CodOS = 6"), 1);

  db::Recordset types = query(staging_, sql::type_grid_select(kel_path_));
  EXPECT_EQ(types.row_count(), 4u);
  run(staging_, sql::type_relation_insert("2", "4"));
  run(staging_, sql::type_relation_insert("2", "4"));
  run(staging_, sql::type_relation_delete("4", 2));
  run(staging_, sql::type_relation_insert("2", "1"));
  run(staging_, sql::type_relation_delete("1", 0));
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM RelacTLiq WHERE CodOS IN (1, 4)"), 0);
}

TEST_F(CorpusTest, PreviewStatementsRun) {
  namespace sql = preview::sql;
  run_all(staging_, sql::staging_tidy());
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM Personas WHERE NUMERO = '12345678'"), 1);
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM Contrato WHERE NUMERO_ALTERNATIVO IN ('1', '3')"), 2);
  db::Recordset company = query(staging_, sql::company_select());
  ASSERT_FALSE(company.eof());
  EXPECT_EQ(db::as_text(company.field("NBPS")), "BPS-999");
  for (const std::string& grid : {sql::cargos_grid(), sql::sectores_grid(), sql::sucursales_grid(),
                                  sql::horarios_grid()}) {
    db::Recordset rows = query(staging_, grid);
    EXPECT_GE(rows.field_index("id"), 0) << grid;
    EXPECT_GE(rows.field_index("Nombre"), 0) << grid;
  }
  EXPECT_EQ(query(staging_, sql::contracts_grid()).row_count(), 4u);
  db::Recordset declarations = query(staging_, sql::declarations_select("2024-06-01", "2024-01-01"));
  EXPECT_EQ(declarations.row_count(), 2u);
  query(kel_, sql::kel_concepts_lookup());
  query(kel_, sql::kel_types_lookup());
  query(staging_, sql::staged_types_lookup());
  run(staging_, sql::unused_concepts_delete());
  run(staging_, sql::unused_relations_delete());
  EXPECT_EQ(query(staging_, sql::staged_concepts_lookup()).row_count(), 6u);  // 6 (unused) and 8 are gone

  std::string sort;
  sort = sql::liquidation_sort_text(sort, "Nombres", 4);
  EXPECT_EQ(sort, "Nombres");
  sort = sql::liquidation_sort_text(sort, "Nombres", 4);
  EXPECT_EQ(sort, "Nombres Desc");
  sort = sql::liquidation_sort_text(sort, "Nombres", 4);
  EXPECT_EQ(sort, "Nombres");
  EXPECT_EQ(sql::liquidation_sort_text("NOMBRES", "Nombres", 4), "Nombres Desc");  // names compare ignoring case
  query(staging_, sql::liquidation_headers_select(sort));
  sort = sql::liquidation_sort_text(sort, "strMesDeLiq", sql::kMonthColumn);
  EXPECT_EQ(sort, "cdate(strMesDeLiq)");
  db::Recordset headers = query(staging_, sql::liquidation_headers_select(sort));
  EXPECT_EQ(headers.row_count(), 8u);
  db::Recordset lines = query(staging_, sql::liquidation_lines_select(1));
  ASSERT_EQ(lines.row_count(), 3u);
  EXPECT_EQ(db::as_text(lines.field("TipoOperacion")), "S");  // additions first
  EXPECT_EQ(query(staging_, sql::liquidation_lines_select(12345)).row_count(), 0u);
}

TEST_F(CorpusTest, CompanyCheckStatementsRun) {
  namespace sql = session::sql;
  db::Recordset name = query(kel_, sql::destination_company_name());
  ASSERT_FALSE(name.eof());
  EXPECT_EQ(db::as_text(name.field(0)), "DEMO S.A.");
  db::Recordset legal = query(kel_, sql::destination_legal_name());
  ASSERT_FALSE(legal.eof());
  EXPECT_EQ(db::as_text(legal.field(0)), "DEMO SOCIEDAD ANÓNIMA");

  // The source statements run untranslated in the source's own dialect; a
  // SQLite file with the source's company table stands in for it here.
  sqlite3* source = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &source), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(source,
                         "CREATE TABLE Empresa (Em_Nombre TEXT, Em_RSocial TEXT);"
                         "INSERT INTO Empresa VALUES ('Demo S.A.', 'Demo Sociedad Anonima')",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  for (const std::string& text : {sql::source_company_name(), sql::source_legal_name()}) {
    ++statements_run_;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(source, text.c_str(), -1, &stmt, nullptr) != SQLITE_OK ||
        sqlite3_step(stmt) != SQLITE_ROW) {
      refused_.push_back("* " + text + "\n    -> " + sqlite3_errmsg(source));
    } else {
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))).substr(0, 4), "DEMO");
    }
    sqlite3_finalize(stmt);
  }
  sqlite3_close(source);
}

}  // namespace
}  // namespace corpus_test
