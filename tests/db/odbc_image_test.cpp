// Tests of reading an ODBC data source's tables as `in '<connection text>'`:
// the table list, the streamed copy with its values, and a statement of the
// staging connection reading a table through the source connection. Runs
// against the SQLite ODBC driver with a data source declared in a test-local
// odbc.ini.
#include <gtest/gtest.h>

#include <cstdlib>

#include "db/odbc_image.h"
#include "db/source_reader.h"
#include "db_fixture.h"
#include "support/odbc_driver.h"

namespace {

using testing_db::SqliteTest;

class OdbcImageTest : public SqliteTest {
 protected:
  void SetUp() override {
    if (test_support::odbc_driver_library("SQLite3").empty()) GTEST_SKIP() << "SQLite ODBC driver not installed";
    std::string source = folder.database(
        "origen.db",
        "CREATE TABLE Empresa (Em_Nombre TEXT, Em_RSocial TEXT);"
        "INSERT INTO Empresa VALUES ('Peñarol Ñandú', 'P SA');"
        "CREATE TABLE \"Sueldos Mes\" (id INTEGER, Importe REAL, Fecha TIMESTAMP, Nota TEXT);"
        "INSERT INTO \"Sueldos Mes\" VALUES (1, 1500.75, '2024-02-29 13:05:00', NULL);"
        "INSERT INTO \"Sueldos Mes\" VALUES (2, -3, '2023-01-01 00:00:00', 'x');");
    // The driver by the name the driver manager declares it under.
    folder.write("odbc.ini", "[kel_origen_img]\nDriver=SQLite3\nDatabase=" + source + "\n");
    setenv("ODBCINI", folder.file("odbc.ini").c_str(), 1);
    ASSERT_TRUE(odbc.open("DSN=kel_origen_img;")) << odbc.last_error();
  }
  db::OdbcConnection odbc;
};

TEST_F(OdbcImageTest, TablesAreListedAndCopiedWithTheirValues) {
  auto tables = odbc.table_names();
  std::sort(tables.begin(), tables.end());
  EXPECT_EQ(tables, (std::vector<std::string>{"Empresa", "Sueldos Mes"}));

  const std::string image = folder.file("imagen.db");
  EXPECT_EQ(db::write_odbc_image(odbc, {"Sueldos Mes", "Empresa"}, image), 3);
  ASSERT_TRUE(conn.open(image)) << conn.last_error();
  db::Recordset rs = conn.open_recordset("Select id, Importe, Fecha, Nota From [Sueldos Mes] Order By id");
  ASSERT_EQ(rs.row_count(), 2u);
  EXPECT_EQ(db::as_int(rs.field(std::size_t{0})), 1);
  EXPECT_DOUBLE_EQ(std::get<double>(rs.field(std::size_t{1})), 1500.75);
  EXPECT_EQ(db::as_text(rs.field(std::size_t{2})), "2024-02-29 13:05:00");
  EXPECT_TRUE(db::is_null(rs.field(std::size_t{3})));
  rs.move_next();
  EXPECT_EQ(db::as_text(rs.field(std::size_t{2})), "2023-01-01");
  EXPECT_EQ(db::as_text(conn.open_recordset("Select Em_Nombre From Empresa").field(std::size_t{0})),
            "Peñarol Ñandú");

  EXPECT_THROW(db::write_odbc_image(odbc, {"NoHay"}, image), db::Error);
}

TEST_F(OdbcImageTest, StatementsReadTheTablesByConnectionText) {
  open("CREATE TABLE Staged (Nombre TEXT);");
  const std::string text = "DSN=kel_origen_img;";
  EXPECT_TRUE(db::is_connection_text(text));
  EXPECT_TRUE(db::is_connection_text("Driver=SQLite3;Database=/x/y.db;"));
  EXPECT_FALSE(db::is_connection_text("/datos/a=b/origen.mdb"));
  EXPECT_FALSE(db::is_connection_text("origen"));

  auto reader = std::make_shared<db::OdbcImageReader>(text, odbc, std::vector<std::string>{"Empresa"},
                                                      folder.path() / "cache");
  db::register_source_reader(reader);
  EXPECT_EQ(conn.execute("Insert Into Staged (Nombre) Select Em_Nombre From Empresa in '" + text + "'"), 1);
  EXPECT_EQ(db::as_text(conn.open_recordset("Select Nombre From Staged").field(std::size_t{0})), "Peñarol Ñandú");
  EXPECT_EQ(reader->rows_copied(), 1);
  db::unregister_source_reader(reader);
  EXPECT_FALSE(db::has_source_reader(reader));
}

}  // namespace
