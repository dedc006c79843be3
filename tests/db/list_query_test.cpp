// Tests of the list query helper: the statement it builds and the rows it
// returns.
#include <gtest/gtest.h>

#include "db/list_query.h"
#include "db_fixture.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

TEST(ListQuery, BuildsTheStatementFromTableOrSelect) {
  // A table name: the field list, the condition and the first field's order.
  EXPECT_EQ(db::build_list_query("Cargos", "id,Nombre", ""),
            "select id,Nombre from Cargos order by id");
  EXPECT_EQ(db::build_list_query("Cargos", " id , Nombre", "id>3"),
            "select id , Nombre from Cargos Where id>3 order by id");
  // A whole statement without ORDER BY: the condition goes at its end.
  EXPECT_EQ(db::build_list_query("Select * From (Select ID_Cargo as ID From Cargos)", "id", "ID=2"),
            "Select * From (Select ID_Cargo as ID From Cargos) Where ID=2");
  EXPECT_EQ(db::build_list_query("SELECT id FROM T", "id", ""), "SELECT id FROM T");
  // With ORDER BY (found in any case): the condition goes before it.
  EXPECT_EQ(db::build_list_query("Select * From cLstCont order by id_Persona", "x", "Activo<>0"),
            "Select * From cLstCont  Where Activo<>0 order by id_Persona");
  EXPECT_EQ(db::build_list_query("select a from T Order By a", "a", ""),
            "select a from T Order By a");
  // "SELECT" must be followed by a blank to be a statement.
  EXPECT_EQ(db::build_list_query("Selection", "a", ""), "select a from Selection order by a");
  // "++" drops the first two characters; the rest is read as usual.
  EXPECT_EQ(db::build_list_query("++Select a From T order by a", "a", "a>1"),
            "Select a From T  Where a>1 order by a");
  EXPECT_EQ(db::build_list_query("++Cargos", "id,Nombre", ""),
            "select id,Nombre from Cargos order by id");
}

using ListQueryTest = testing_db::SqliteTest;

TEST_F(ListQueryTest, ReturnsTrimmedTextsOfTheNamedFields) {
  open("CREATE TABLE Cargos (ID_Cargo INTEGER PRIMARY KEY, CARGO TEXT, Sueldo REAL);"
       "INSERT INTO Cargos VALUES (3, '  Peón  ', 10.0), (1, 'Capataz', NULL), (2, NULL, 2.5);");
  EXPECT_EQ(db::list_query("Cargos", "ID_Cargo,CARGO,Sueldo", "", conn),
            (Rows{{"1", "Capataz", ""}, {"2", "", "2.5"}, {"3", "Peón", "10"}}));
  EXPECT_EQ(db::list_query("Select * From (Select ID_Cargo as ID, CARGO as Nombre From Cargos)",
                           "id,Nombre", "ID=3", conn),
            (Rows{{"3", "Peón"}}));
  // Fields are found by name whatever their case; a missing one is empty.
  EXPECT_EQ(db::list_query("SELECT ID_Cargo, Cargo FROM Cargos ORDER BY ID_Cargo DESC",
                           "id_cargo,NoEsta", "ID_Cargo<3", conn),
            (Rows{{"2", ""}, {"1", ""}}));
  // Errors are ignored: no rows.
  EXPECT_TRUE(db::list_query("NoExiste", "id", "", conn).empty());
  conn.close();
  EXPECT_TRUE(db::list_query("Cargos", "ID_Cargo", "", conn).empty());
}

}  // namespace
