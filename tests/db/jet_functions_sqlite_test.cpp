// tests/db/jet_functions_sqlite_test.cpp — the jet_* SQLite functions called
// from native SQL: what the golden files cannot see (expr_function_names.test
// calls every function with every arity): determinism, the SQLite type of results,
// the fast paths for SQLite texts and numbers, and errors as SQLite errors.
// The values of the functions are checked in tests/jet and the golden files.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <string>

#include "db/jet_functions_sqlite.h"
#include "db_fixture.h"

namespace {

class JetSqlite : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(sqlite3_open(":memory:", &db_), SQLITE_OK);
    db::register_jet_functions(db_);
  }
  void TearDown() override { sqlite3_close(db_); }

  // The single value of a one-row, one-column query (see typed_column), or
  // the error that stopped it.
  std::string one(const std::string& sql) {
    const std::vector<std::string> column = testing_db::typed_column(db_, sql);
    return column.empty() ? "<sin filas>" : column.front();
  }
  void exec(const std::string& sql) { testing_db::exec(db_, sql); }

  sqlite3* db_ = nullptr;
};

TEST_F(JetSqlite, DeterminismAllowsIndexesButNotForTheClock) {
  exec("CREATE TABLE P (Numero TEXT)");
  exec("CREATE INDEX P_Val ON P (jet_val(Numero))");  // refused for non-deterministic functions
  sqlite3_stmt* stmt = nullptr;
  EXPECT_NE(sqlite3_prepare_v2(db_, "CREATE INDEX P_Now ON P (jet_now())", -1, &stmt, nullptr), SQLITE_OK);
  sqlite3_finalize(stmt);
  EXPECT_EQ(one("SELECT length(jet_now()) >= 10"), "int:1");
}

TEST_F(JetSqlite, ResultsKeepTheirTypeAndFastPathsMatchTheGenericOnes) {
  const std::pair<const char*, const char*> cases[] = {
      {"jet_val(' 12abc')", "int:12"},       {"jet_val('1.5e2')", "int:150"},
      {"jet_val('2.5')", "real:2.5"},        {"jet_val(7.25)", "real:7.25"},
      {"jet_nz(NULL)", "text:"},             {"jet_nz(NULL, 0)", "int:0"},
      {"jet_cbool(7)", "int:-1"},            {"jet_cdate(45351)", "text:2024-02-29"},
      {"jet_cstr(2.0)", "text:2"},           {"jet_day(45351)", "int:29"},
      {"jet_left('Peña', 3)", "text:Peñ"},   {"jet_left(123456, 2)", "text:12"},
      {"jet_right(2.5, 2)", "text:.5"},      {"jet_left('abc', 1.6)", "text:ab"},
      {"jet_left('abc', '2')", "text:ab"},   {"jet_left(NULL, 2)", "null"},
      {"jet_len(2.5)", "int:3"},             {"jet_trim(12)", "text:12"},
      {"jet_instr(2.0, 'a-b-c', '-')", "int:2"}, {"jet_instr('JOSÉ', 'é')", "int:4"},
      {"jet_concat(1000000000 + 5, '_' || 1)", "text:1000000005_1"},
      {"jet_concat(0.5, 2.0)", "text:0.52"}, {"jet_concat(NULL, NULL)", "null"},
      {"jet_like('PÉREZ', '*érez')", "int:-1"}, {"jet_format(NULL, '0')", "null"},
      {"jet_date() = date('now', 'localtime')", "int:1"},
  };
  for (const auto& [sql, expected] : cases) EXPECT_EQ(one(std::string("SELECT ") + sql), expected) << sql;
}

TEST_F(JetSqlite, RefusedArgumentsFailTheStatementInSpanish) {
  EXPECT_EQ(one("SELECT jet_like('a', '[a')"), "error:Patrón no válido en Like: '[a'");
}

TEST_F(JetSqlite, FunctionsWorkOverTableRows) {
  exec("CREATE TABLE Personas (id INTEGER PRIMARY KEY, Numero TEXT COLLATE NOCASE, Alta TEXT, Activo INTEGER)");
  exec("INSERT INTO Personas VALUES (1,'1234567-8','2024-02-29',-1),(2,'007','1999-12-31 23:59:59',0),"
       "(3,NULL,NULL,NULL),(4,'12_3','2000-01-01',-1)");
  EXPECT_EQ(one("SELECT group_concat(jet_format(Alta, 'MM/yyyy'), ',') FROM Personas"),
            "text:02/2024,12/1999,01/2000");
  EXPECT_EQ(one("SELECT group_concat(jet_cstr(Alta), ',') FROM Personas"),
            "text:29/02/2024,31/12/1999 23:59:59,01/01/2000");
  EXPECT_EQ(one("SELECT group_concat(jet_concat(Numero, Activo), ',') FROM Personas"),
            "text:1234567-8-1,0070,12_3-1");
  // A Like pattern kept for the whole statement, and one that changes per row.
  EXPECT_EQ(one("SELECT group_concat(id, ',') FROM Personas WHERE jet_like(Numero, '*#-#') <> 0 OR jet_like(Numero, '0*') <> 0"),
            "text:1,2");
  exec("CREATE TABLE Patrones (id INTEGER PRIMARY KEY, p TEXT)");
  exec("INSERT INTO Patrones VALUES (1,'1*'),(2,'00?'),(3,'*[_]#'),(4,'x*')");
  EXPECT_EQ(one("SELECT group_concat(P.id || ':' || T.id, ',') FROM Patrones AS T JOIN Personas AS P "
                "ON jet_like(P.Numero, T.p) <> 0 ORDER BY T.id"),
            "text:1:1,4:1,2:2,4:3");
}

}  // namespace
