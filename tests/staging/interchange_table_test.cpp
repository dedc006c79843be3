// Tests of an interchange data file read as its TEMP table.
#include <gtest/gtest.h>

#include "settings/data_layout.h"
#include "staging/interchange_table.h"
#include "staging_db.h"
#include "support/temp_dir.h"

using settings::ParseDataFileLayout;
using staging::OpenDataTable;

namespace {

settings::DataFileLayout Layout(const std::vector<std::string>& lines) {
  std::string error;
  auto layout = ParseDataFileLayout(lines, &error);
  EXPECT_TRUE(layout) << error;
  return layout ? *layout : settings::DataFileLayout{};
}

class InterchangeTable : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeDatabase(dir_ / "Pasaje.mdb", "CREATE TABLE Personas (id INTEGER);");
    connection_ = OpenStaging(dir_ / "Pasaje.mdb");
  }
  TempDir dir_;
  std::unique_ptr<db::SqliteConnection> connection_;
};

}  // namespace

TEST_F(InterchangeTable, HeaderPlacesDeclaredColumnsAndConvertsTypes) {
  auto layout = Layout({"Tabla=Imp_Personas", "Encabezado=Si", "Columna=id:entero", "Columna=Nombre",
                        "Columna=Nacido:fecha:dd/MM/yyyy", "Columna=Sueldo:real", "Columna=Falta:entero"});
  auto file = dir_.write("p.csv",
                         "Nombre;Extra;Sueldo;ID;Nacido\r\n"
                         "\"Pérez; Ana\";x;1500.5;1;31/12/1980\r\n"
                         "Luis;y;;2;31/02/1980\r\n"
                         "Eva;z;abc;tres;\r\n"
                         "\"\";w;;4;\r\n");
  auto table = OpenDataTable(*connection_, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  auto& c = *connection_;
  EXPECT_EQ(QueryText(c, "SELECT Nombre || '|' || Nacido || '|' || Sueldo || '|' || typeof(id) FROM Imp_Personas WHERE id = 1"),
            "Pérez; Ana|1980-12-31|1500.5|integer");
  EXPECT_EQ(QueryText(c, "SELECT quote(Sueldo) || quote(Nacido) || quote(Falta) FROM Imp_Personas WHERE id = 2"),
            "NULLNULLNULL");
  EXPECT_EQ(QueryText(c, "SELECT quote(id) || quote(Sueldo) FROM Imp_Personas WHERE Nombre = 'Eva'"), "NULLNULL");
  EXPECT_EQ(QueryText(c, "SELECT quote(Nombre) FROM Imp_Personas WHERE id = 4"), "''");  // "" is an empty text
  // A TEMP table: the staging file itself gains nothing.
  EXPECT_EQ(QueryText(c, "SELECT count(*) FROM main.sqlite_master WHERE name = 'Imp_Personas'"), "0");
  // Each row knows its source line (rowid and the hidden column), and
  // "Select *" does not show it.
  EXPECT_EQ(QueryText(c, "SELECT group_concat(rowid || ':' || _linea, ' ') FROM Imp_Personas"), "2:2 3:3 4:4 5:5");
  EXPECT_EQ(QueryText(c, "SELECT _linea FROM temp.Imp_Personas WHERE id = 4"), "5");
  EXPECT_EQ(c.table_columns("temp", "Imp_Personas"), (std::vector<std::string>{"id", "Nombre", "Nacido", "Sueldo", "Falta"}));

  // The statements read it as plain Jet SQL, as often as they like; the
  // problems are told once, after them.
  c.execute("Insert into Personas (id) Select id From Imp_Personas Where Not IsNull(id)");
  EXPECT_EQ(QueryCount(c, "Personas"), 3);
  auto load = table.Close();
  EXPECT_TRUE(load.ok);
  EXPECT_EQ(load.rows, 4);
  EXPECT_EQ(load.bad_values, 3);  // 31/02, abc, tres
  EXPECT_TRUE(Contains(load.warnings, "p.csv, línea 3, columna Nacido: '31/02/1980' no es una fecha dd/MM/yyyy"));
  EXPECT_TRUE(Contains(load.notes, "no trae las columnas Falta"));
  EXPECT_TRUE(Contains(load.notes, "se ignoran las columnas Extra"));
  EXPECT_EQ(QueryText(c, "SELECT count(*) FROM temp.sqlite_master WHERE name = 'Imp_Personas'"), "0");

  // A second file under the same name; statements that never read it still
  // get its problems told.
  file = dir_.write("p2.csv", "ID\n7\nocho\n");
  table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryText(c, "SELECT group_concat(ifnull(id, 'null')) FROM Imp_Personas"), "7,null");
  load = table.Close();
  EXPECT_EQ(load.rows, 2);
  file = dir_.write("p3.csv", "ID\n7\nocho\n");
  table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  load = table.Close();
  EXPECT_EQ(load.bad_values, 1);
  EXPECT_TRUE(Contains(load.warnings, "p3.csv, línea 3, columna id: 'ocho' no es un número entero"));
}

TEST_F(InterchangeTable, PositionalHeaderOnlyAndFixedWidthFiles) {
  auto& c = *connection_;
  // No header: declared columns by position; short and long lines are reported.
  auto layout = Layout({"Tabla=Imp_A", "Separador=,", "Columna=a:entero", "Columna=b"});
  auto file = dir_.write("a.txt", "1,uno\n2\n3,tres,extra\n");
  auto table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryText(c, "SELECT group_concat(a || '=' || ifnull(b, 'null'), ' ') FROM Imp_A"), "1=uno 2=null 3=tres");
  auto load = table.Close();
  EXPECT_EQ(load.rows, 3);
  EXPECT_TRUE(Contains(load.warnings, "1 líneas traen menos campos que columnas (la primera, la línea 2)"));
  EXPECT_TRUE(Contains(load.warnings, "1 líneas traen más campos que columnas (la primera, la línea 3)"));

  // Header only: every column text, named by the header.
  layout = Layout({"Tabla=Imp_B", "Encabezado=Si"});
  file = dir_.write("b.csv", "Codigo;Nombre\n007;Ana\n");
  table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryText(c, "SELECT Codigo || Nombre FROM Imp_B"), "007Ana");
  table.Close();

  // Fixed width in Windows-1252.
  layout = Layout({"Tabla=Imp_C", "Formato=Fijo", "Anchos=3,5", "Codificacion=windows-1252", "Columna=n:entero",
                   "Columna=nom"});
  file = dir_.write("c.txt", "001Pe\xF1" "a\r\n002Ana  \r\n");
  table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryText(c, "SELECT group_concat(n || nom, ',') FROM Imp_C"), "1Peña,2Ana");
}

TEST_F(InterchangeTable, BadFilesGiveMessagesNotCrashes) {
  auto& c = *connection_;
  auto layout = Layout({"Tabla=Imp_D", "Encabezado=Si", "Codificacion=utf-8"});
  auto table = OpenDataTable(c, dir_ / "falta.csv", layout);
  EXPECT_FALSE(table.ok());
  EXPECT_NE(table.error().find("No se pudo leer el archivo de datos"), std::string::npos);

  // (A file in the wrong encoding is refused by the decoder, tested with it.)
  auto file = dir_.write("vacio.csv", "");
  table = OpenDataTable(c, file, layout);
  EXPECT_FALSE(table.ok());
  EXPECT_NE(table.error().find("falta la línea de encabezado"), std::string::npos);

  // Declared columns and an empty file: an empty table the statements can read.
  layout = Layout({"Tabla=Imp_E", "Encabezado=Si", "Columna=x:entero"});
  table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryCount(c, "Imp_E"), 0);
  EXPECT_EQ(table.Close().rows, 0);
}

// A file of several read blocks, UTF-8 with one stray Windows-1252 byte near
// its end, read on a thread of its own, batches ahead of the statement: every
// row arrives once, whole, accents intact, in file order with its line; a
// scan left early or started again (the inner side of a join) stops its
// reader cleanly; rows set aside stay out of later scans; the problems are
// counted by the first whole scan, as they were found; and the stray byte is
// read as Windows-1252 with a warning naming the file and its line.
TEST_F(InterchangeTable, LongFileArrivesWholeInOrderAndScansStopCleanly) {
  auto& c = *connection_;
  auto layout = Layout({"Tabla=Imp_L", "Encabezado=Si", "Columna=id:entero", "Columna=n:entero", "Columna=t"});
  std::string text = "id;n;t\r\n";
  const int rows = 120000;  // about 4 MB
  for (int i = 1; i <= rows; ++i)
    text += std::to_string(i) + ";" + (i % 1000 == 0 ? std::string("x") : std::to_string(2 * i)) + ";\"Muñoz Ñandú " +
            std::to_string(i) + "\"\r\n";
  text += std::to_string(rows + 1) + ";0;Pe\xF1" "a\r\n";
  auto file = dir_.write("largo.csv", text);
  auto table = OpenDataTable(c, file, layout);
  ASSERT_TRUE(table.ok()) << table.error();
  EXPECT_EQ(QueryText(c, "SELECT count(*) || ' ' || sum(id = _linea - 1) || ' ' || sum(t = 'Muñoz Ñandú ' || id) || "
                         "' ' || count(n) || ' ' || sum(n) FROM Imp_L"),
            "120001 120001 120000 119881 14385600000");
  EXPECT_EQ(QueryText(c, "SELECT t || ' ' || _linea FROM Imp_L WHERE id = 120001"), "Peña 120002");
  EXPECT_EQ(QueryText(c, "SELECT group_concat(id) FROM (SELECT id FROM Imp_L LIMIT 3)"), "1,2,3");
  EXPECT_EQ(QueryText(c, "SELECT count(*) FROM Imp_L AS a, Imp_L AS b WHERE a.id <= 3 AND b.id <= 2"), "6");
  c.execute_native("DELETE FROM temp.Imp_L WHERE id BETWEEN 10000 AND 20000");
  EXPECT_EQ(QueryText(c, "SELECT count(*) || ' ' || sum(id BETWEEN 10000 AND 20000) FROM Imp_L"), "110000 0");
  auto load = table.Close();
  EXPECT_EQ(load.rows, rows + 1);
  EXPECT_EQ(load.bad_values, 120);
  EXPECT_TRUE(Contains(load.warnings, "largo.csv, línea 1001, columna n: 'x' no es un número entero; queda vacío"));
  EXPECT_TRUE(Contains(load.warnings, "110 valores más no se pudieron convertir"));
  EXPECT_TRUE(Contains(load.warnings, "largo.csv está en UTF-8 pero trae caracteres que no lo son (el primero en la "
                                      "línea 120002)"));
}
