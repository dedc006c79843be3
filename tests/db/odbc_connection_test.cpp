// Tests of the ODBC connection against a real data source: a SQLite file
// reached through the SQLite ODBC driver, declared in driver and data source
// lists written into a temporary folder.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "db/error.h"
#include "db/odbc_connection.h"
#include "db/odbc_sources.h"
#include "db_fixture.h"
#include "support/odbc_driver.h"

namespace {

using testing_db::TempFolder;

// The driver manager keeps the system folder (ODBCSYSINI) it read first for
// the whole process, so all tests share one: it declares the driver and two
// machine data sources. Each test's own data source is a user one (ODBCINI,
// read afresh at every connection) on a database of its own.
struct SystemFolder {
  TempFolder folder;
  SystemFolder() {
    std::string db = folder.database("sistema.db", "CREATE TABLE S (x INTEGER);");
    folder.write("odbcinst.ini", std::string("[SQLite3]\nDescription=SQLite3\nDriver=") +
                                     test_support::odbc_driver_library("SQLite3") + "\n");
    folder.write("odbc.ini", "[kel_sistema]\nDriver=SQLite3\nDatabase=" + db +
                                 "\n\n[kel_sistema2]\nDriver=SQLite3\nDatabase=" + db + "\n");
  }
};

SystemFolder& system_folder() {
  static SystemFolder folder;
  return folder;
}

class OdbcConnectionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (test_support::odbc_driver_library("SQLite3").empty()) GTEST_SKIP() << "SQLite ODBC driver not installed";
    database_ = folder_.database(
        "origen.db",
        "CREATE TABLE Personas (id INTEGER PRIMARY KEY, Nombre TEXT, Sueldo REAL, "
        "Nacimiento DATE, Alta TIMESTAMP, Activo INTEGER, Notas TEXT);"
        "INSERT INTO Personas VALUES (1, 'Peñarol Ñandú', 1500.75, '1980-05-17', "
        "'2024-02-29 13:05:00', -1, NULL);"
        "INSERT INTO Personas VALUES (2, NULL, NULL, NULL, '2023-01-01 00:00:00', 0, '');");
    folder_.write("odbc.ini", "[kel_prueba]\nDriver=SQLite3\nDatabase=" + database_ + "\n");
    setenv("ODBCSYSINI", system_folder().folder.path().c_str(), 1);
    setenv("ODBCINI", folder_.file("odbc.ini").c_str(), 1);
  }

  TempFolder folder_;
  std::string database_;
};

TEST_F(OdbcConnectionTest, ReadsRowsWithTypedValues) {
  db::OdbcConnection conn;
  ASSERT_TRUE(conn.open("DSN=kel_prueba;")) << conn.last_error();
  EXPECT_EQ(conn.state(), 1);
  EXPECT_EQ(conn.data_source_name(), "kel_prueba");

  db::Recordset rs = conn.open_recordset(
      "SELECT id, Nombre, Sueldo, Nacimiento, Alta, Activo, Notas FROM Personas ORDER BY id");
  ASSERT_EQ(rs.row_count(), 2u);
  EXPECT_EQ(rs.names(), (std::vector<std::string>{"id", "Nombre", "Sueldo", "Nacimiento", "Alta",
                                                  "Activo", "Notas"}));
  EXPECT_EQ(std::get<std::int64_t>(rs.field("id")), 1);
  EXPECT_EQ(std::get<std::string>(rs.field("Nombre")), "Peñarol Ñandú");
  EXPECT_DOUBLE_EQ(std::get<double>(rs.field("Sueldo")), 1500.75);
  EXPECT_EQ(std::get<std::string>(rs.field("Nacimiento")), "1980-05-17");
  EXPECT_EQ(std::get<std::string>(rs.field("Alta")), "2024-02-29 13:05:00");
  EXPECT_EQ(std::get<std::int64_t>(rs.field("Activo")), -1);
  EXPECT_TRUE(db::is_null(rs.field("Notas")));
  rs.move_next();
  EXPECT_TRUE(db::is_null(rs.field("Nombre")));
  EXPECT_TRUE(db::is_null(rs.field("Sueldo")));
  EXPECT_TRUE(db::is_null(rs.field("Nacimiento")));
  EXPECT_EQ(std::get<std::string>(rs.field("Alta")), "2023-01-01");
  EXPECT_EQ(std::get<std::string>(rs.field("Notas")), "");
}

TEST_F(OdbcConnectionTest, RunsStatementsUntranslatedCountsRowsAndKeepsTransactions) {
  db::OdbcConnection conn;
  ASSERT_TRUE(conn.open("kel_prueba")) << conn.last_error();  // a bare name is a DSN
  EXPECT_EQ(conn.execute("INSERT INTO Personas (id, Notas) VALUES (3, 'nueva')"), 1);
  EXPECT_EQ(conn.execute("UPDATE Personas SET Activo = 5"), 3);
  EXPECT_EQ(conn.execute("DELETE FROM Personas WHERE id = 99"), 0);

  try {
    conn.execute("SELECT * FROM NoExiste");
    FAIL() << "no error";
  } catch (const db::Error& e) {
    EXPECT_EQ(e.message().rfind("La base de datos rechazó la instrucción: ", 0), 0u);
    EXPECT_NE(e.message().find("NoExiste"), std::string::npos) << e.message();
    EXPECT_EQ(e.jet_text(), "SELECT * FROM NoExiste");
    EXPECT_TRUE(e.translated_text().empty());
  }
  EXPECT_EQ(conn.open_recordset("SELECT id FROM Personas").row_count(), 3u);

  conn.begin_transaction();
  EXPECT_THROW(conn.begin_transaction(), db::Error);
  conn.execute("DELETE FROM Personas");
  conn.rollback_transaction();
  EXPECT_EQ(conn.open_recordset("SELECT id FROM Personas").row_count(), 3u);
  conn.begin_transaction();
  conn.execute("DELETE FROM Personas WHERE id = 3");
  conn.commit_transaction();
  EXPECT_THROW(conn.commit_transaction(), db::Error);
  conn.close();
  ASSERT_TRUE(conn.open("kel_prueba"));
  EXPECT_EQ(conn.open_recordset("SELECT id FROM Personas").row_count(), 2u);
}

TEST_F(OdbcConnectionTest, FailedOpensLeaveItClosedWithTheDriverMessage) {
  // The connection text, and the name the message shows for the data source.
  const std::pair<std::string, std::string> cases[] = {
      {"DSN=no_existe;", "no_existe"},
      {"no_existe", "no_existe"},  // a bare name is a DSN
      {folder_.file("falta.dsn"), folder_.file("falta.dsn")},
      {"Driver=NoHayDriver;Database=x.db;", "Driver=NoHayDriver;Database=x.db;"},
  };
  db::OdbcConnection conn;
  for (const auto& [text, shown] : cases) {
    SCOPED_TRACE(text);
    ASSERT_TRUE(conn.open("DSN=kel_prueba;")) << conn.last_error();
    EXPECT_FALSE(conn.open(text));
    EXPECT_EQ(conn.state(), 0);
    EXPECT_EQ(conn.last_error().rfind("No se pudo conectar con el origen de datos " + shown + ": ", 0), 0u)
        << conn.last_error();
    EXPECT_THROW(conn.execute("SELECT 1"), db::Error);
  }
  // A driver connection text works as well, and reopening replaces the session.
  ASSERT_TRUE(conn.open("Driver=SQLite3;Database=" + database_ + ";"));
  EXPECT_EQ(conn.state(), 1);
  EXPECT_TRUE(conn.last_error().empty());
  EXPECT_FALSE(conn.data_source_name().empty());
}

TEST_F(OdbcConnectionTest, ListsMachineDataSourcesAndTheFileDsnFolder) {
  // The user's own data source (kel_prueba) is not a machine one.
  EXPECT_EQ(db::odbc_system_data_sources(),
            (std::vector<std::string>{"kel_sistema", "kel_sistema2"}));
  const TempFolder& system = system_folder().folder;
  EXPECT_EQ(db::odbc_file_dsn_folder(), system.path().string() + "/ODBCDataSources/");
  std::string drivers = system.file("odbcinst.ini");
  std::string saved = testing_db::TempFolder::read(drivers);
  system.write("odbcinst.ini", "[ODBC]\nFileDSNPath = /srv/dsn\n\n" + saved);
  EXPECT_EQ(db::odbc_file_dsn_folder(), "/srv/dsn/");
  system.write("odbcinst.ini", saved);

  std::unique_ptr<db::Connection> conn;
  db::open_odbc("DSN=kel_sistema2;", conn);
  ASSERT_TRUE(conn);
  EXPECT_EQ(conn->state(), 1) << conn->last_error();
  EXPECT_EQ(conn->data_source_name(), "kel_sistema2");
  EXPECT_EQ(conn->open_recordset("SELECT x FROM S").field_count(), 1u);
  db::open_odbc("DSN=kel_no_existe;", conn);
  EXPECT_EQ(conn->state(), 0);

  // A file data source: a ".dsn" file name stands for "FILEDSN=<file>;".
  std::string dsn = folder_.write("Origen.dsn", "[ODBC]\nDriver=SQLite3\nDatabase=" + database_ + "\n");
  db::open_odbc(dsn, conn);
  EXPECT_EQ(conn->state(), 1) << conn->last_error();
  EXPECT_EQ(conn->data_source_name(), dsn);
  EXPECT_EQ(conn->open_recordset("SELECT id FROM Personas").row_count(), 2u);
}

// Long texts (memos) through the SQLite driver arrive whole: 100 KB, and 100
// KB of accented letters, between short rows.
TEST_F(OdbcConnectionTest, LongTextsArriveWhole) {
  std::string accented;
  while (accented.size() < 100 * 1024) accented += "Ñandú peñarol águila ";
  const std::string plain(100 * 1024, 'x');
  db::OdbcConnection conn;
  ASSERT_TRUE(conn.open("DSN=kel_prueba;")) << conn.last_error();
  conn.execute("UPDATE Personas SET Notas = '" + plain + "' WHERE id = 1");
  conn.execute("UPDATE Personas SET Notas = '" + accented + "' WHERE id = 2");
  conn.execute("INSERT INTO Personas (id, Notas) VALUES (3, 'corta')");
  std::vector<std::string> seen;
  conn.stream("SELECT Notas FROM Personas ORDER BY id", [](const std::vector<std::string>&) {},
              [&](const std::vector<db::Value>& row) { seen.push_back(db::as_text(row[0])); });
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0].size(), plain.size());
  EXPECT_TRUE(seen[0] == plain);
  EXPECT_EQ(seen[1].size(), accented.size());
  EXPECT_TRUE(seen[1] == accented);
  EXPECT_EQ(seen[2], "corta");
  db::Recordset rs = conn.open_recordset("SELECT Notas FROM Personas WHERE id = 2");
  EXPECT_TRUE(db::as_text(rs.field(std::size_t{0})) == accented);
}

}  // namespace
