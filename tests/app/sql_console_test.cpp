// Tests of `kelimport --sql`, running the built executable on a temporary
// database.
#include <gtest/gtest.h>
#include "run_program.h"
#include "support/sqlite_file.h"

namespace {

namespace fs = std::filesystem;

class SqlConsole : public testing::Test {
 protected:
  void SetUp() override {
    test_support::run_sqlite(db_,
                             "CREATE TABLE T (id INTEGER PRIMARY KEY, Nombre TEXT COLLATE NOCASE, "
                             "Sueldo REAL, Alta TEXT);"
                             "INSERT INTO T VALUES (1,'Ana',1500.0,'2024-02-29'),(2,'',0.25,NULL),"
                             "(3,NULL,-3.5,'2023-12-31 08:30:00');");
  }
  testing_app::RunResult run(const std::vector<std::string>& args, const std::string& input = "") {
    return testing_app::run_kelimport(args, input, folder_.path());
  }

  TempDir folder_;
  std::string db_ = (folder_ / "base.db").string();
};

TEST_F(SqlConsole, PrintsResultSetsAsTabSeparatedText) {
  auto r = run({"--sql", db_, "Select id, Nombre, Sueldo, Alta From T Order By id;"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "id\tNombre\tSueldo\tAlta\n"
            "1\tAna\t1500\t2024-02-29\n"
            "2\t\t0.25\tNULL\n"
            "3\tNULL\t-3.5\t2023-12-31 08:30:00\n");
  // A query with no rows still prints its header.
  r = run({"--sql", db_, "Select Nombre From T Where id = 99"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "Nombre\n");
  // --explain prints the translation and runs nothing.
  r = run({"--sql", "--explain", db_, "Delete From T Where Nombre Like 'A*'"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("jet_like"), std::string::npos) << r.out;
  EXPECT_EQ(run({"--sql", db_, "Select Count(*) As N From T"}).out, "N\n3\n");
}

TEST_F(SqlConsole, ReadsStatementsEndedBySemicolonFromStandardInput) {
  auto r = run({"--sql", db_},
               "Insert Into T (id, Nombre)\n  Values (4, 'Dora; la segunda');\n\n"
               "Update T Set Sueldo = 1 Where id >= 3;\n"
               "Select Count(*) As N From T Where Sueldo = 1;\n"
               "Select Nombre From T Where id = 4");  // the last one needs no ";"
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "N\n2\nNombre\nDora; la segunda\n");
  EXPECT_NE(r.err.find("1 fila afectada"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("2 filas afectadas"), std::string::npos) << r.err;
}

TEST_F(SqlConsole, StopsAtTheFirstRefusedStatement) {
  auto r = run({"--sql", db_},
               "Delete From T Where id = 1;\nSelect Nada From NoExiste;\n"
               "Delete From T Where id = 2;\n");
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("Error: La base de datos rechazó la instrucción"), std::string::npos)
      << r.err;
  EXPECT_NE(r.err.find("Instrucción: Select Nada From NoExiste"), std::string::npos) << r.err;
  r = run({"--sql", db_, "Select id From T Order By id"});
  EXPECT_EQ(r.out, "id\n2\n3\n") << "the first delete ran, the last did not";

  r = run({"--sql", db_, "Selec id Fro T"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("No se pudo traducir"), std::string::npos) << r.err;
}

TEST_F(SqlConsole, BadCommandLinesAndDatabases) {
  auto r = run({"--sql", (folder_ / "falta.db").string(), "Select 1"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("No se encuentra el archivo"), std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(folder_ / "falta.db"));

  const std::vector<std::pair<std::vector<std::string>, int>> lines = {
      {{"--sql"}, 2}, {{"--sql", db_, "Select 1", "extra"}, 2}, {{"--sql", "--desconocida", db_}, 2},
      {{"--modo-que-no-existe"}, 2}, {{"--sql", "--help"}, 0}};
  for (const auto& [args, status] : lines) EXPECT_EQ(run(args).status, status) << args.back();
  EXPECT_NE(run({"--sql"}).err.find("Falta la base de datos"), std::string::npos);
  EXPECT_NE(run({"--sql", "--help"}).out.find("Uso: kelimport --sql"), std::string::npos);
}

}  // namespace
