// Tests of the SQLite connection: opening, running statements, snapshots,
// errors and transactions.
#include <gtest/gtest.h>

#include <memory>

#include "db/error.h"
#include "db/open_database.h"
#include "db/sqlite_connection.h"
#include "temp_folder.h"

namespace {

using testing_db::TempFolder;

const std::string kAccessDir = std::string(KEL_SHARED_DIR) + "/fixtures/access/";

std::string pragma_text(sqlite3* db, const char* sql) {
  sqlite3_stmt* stmt = nullptr;
  std::string out;
  if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK &&
      sqlite3_step(stmt) == SQLITE_ROW) {
    out = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
  }
  sqlite3_finalize(stmt);
  return out;
}

TEST(SqliteConnection, OpenFailuresLeaveItClosedWithASpanishReason) {
  TempFolder folder;
  db::SqliteConnection conn;

  EXPECT_FALSE(conn.open(folder.file("nada.db")));
  EXPECT_EQ(conn.state(), 0);
  EXPECT_NE(conn.last_error().find("No se encuentra el archivo"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder.file("nada.db"))) << "opening must not create";

  std::string mdb = kAccessDir + "nwind.mdb";
  EXPECT_FALSE(conn.open(mdb));
  EXPECT_EQ(conn.last_error(), "El archivo " + mdb +
                                   " es una base de datos de Access (Jet/ACE), no una base SQLite");
  std::string accdb = kAccessDir + "ASampleDatabase.accdb";
  EXPECT_FALSE(conn.open(accdb));
  EXPECT_NE(conn.last_error().find("de Access (Jet/ACE)"), std::string::npos);

  std::string text = folder.write("notas.txt", "esto no es una base de datos, es un texto largo");
  EXPECT_FALSE(conn.open(text));
  EXPECT_EQ(conn.last_error(), "El archivo " + text + " no es una base de datos SQLite");

  EXPECT_FALSE(conn.open(folder.path().string()));
  EXPECT_NE(conn.last_error().find("no es un archivo"), std::string::npos);

  // A file with a SQLite header but damaged content fails at open, not later.
  std::string damaged = folder.write("rota.db", std::string("SQLite format 3\0", 16) +
                                                    std::string(200, 'x'));
  EXPECT_FALSE(conn.open(damaged));
  EXPECT_NE(conn.last_error().find("No se pudo abrir la base"), std::string::npos);
  EXPECT_EQ(conn.state(), 0);
  EXPECT_THROW(conn.execute("Select 1"), db::Error);
}

TEST(SqliteConnection, OpenSetsWalForeignKeysAndReopenSwitchesFiles) {
  TempFolder folder;
  std::string a = folder.database("a.db", "CREATE TABLE TA (id INTEGER);");
  std::string b = folder.database("b.db", "CREATE TABLE TB (id INTEGER);");
  std::string empty = folder.write("vacia.db", "");

  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(a)) << conn.last_error();
  EXPECT_EQ(conn.state(), 1);
  EXPECT_TRUE(conn.last_error().empty());
  EXPECT_EQ(conn.data_source_name(), a);
  EXPECT_EQ(pragma_text(conn.handle(), "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(pragma_text(conn.handle(), "PRAGMA foreign_keys"), "1");
  EXPECT_EQ(conn.table_columns("main", "TA"), std::vector<std::string>{"id"});

  ASSERT_TRUE(conn.open(b));
  EXPECT_EQ(conn.data_source_name(), b);
  EXPECT_TRUE(conn.table_columns("main", "TA").empty());
  EXPECT_EQ(conn.table_columns("main", "TB"), std::vector<std::string>{"id"});

  // A failed open after a good one leaves the connection closed.
  EXPECT_FALSE(conn.open(folder.file("falta.db")));
  EXPECT_EQ(conn.state(), 0);
  EXPECT_EQ(conn.data_source_name(), "");

  // An empty file is an empty database.
  EXPECT_TRUE(conn.open(empty)) << conn.last_error();
  conn.close();
  EXPECT_EQ(conn.state(), 0);
}

TEST(SqliteConnection, OpenDatabaseReplacesTheConnectionVariable) {
  TempFolder folder;
  std::string a = folder.database("a.db");
  std::unique_ptr<db::Connection> conn;
  db::open_database(a, conn);
  ASSERT_TRUE(conn);
  EXPECT_EQ(conn->state(), 1);
  db::Connection* first = conn.get();
  db::open_database(a, conn);
  EXPECT_EQ(conn->state(), 1);
  EXPECT_NE(conn.get(), first) << "a fresh connection object";
  db::open_database(folder.file("no.db"), conn);
  ASSERT_TRUE(conn);
  EXPECT_EQ(conn->state(), 0);
  EXPECT_FALSE(conn->last_error().empty());
}

TEST(SqliteConnection, StatementsReturnChangedRowsAndResultsAreSnapshots) {
  TempFolder folder;
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(folder.database(
      "a.db", "CREATE TABLE T (id INTEGER PRIMARY KEY, Nombre TEXT, Sueldo REAL, Fecha TEXT);")));
  EXPECT_EQ(conn.execute("Insert Into T (id, Nombre, Sueldo, Fecha) Values (1, 'Ana', 10.5, "
                         "'2024-02-29')"),
            1);
  EXPECT_EQ(conn.execute("Insert Into T (id, Nombre) Values (2, 'Bruno')"), 1);
  EXPECT_EQ(conn.execute("Insert Into T (id, Nombre) Values (3, 'Carla')"), 1);
  EXPECT_EQ(conn.execute("Update T Set Sueldo = 1 Where id > 1"), 2);
  EXPECT_EQ(conn.execute("Update T Set Sueldo = 1 Where id > 100"), 0);

  db::Recordset rs = conn.open_recordset("Select id, Nombre, Sueldo, Fecha From T Order By id");
  ASSERT_EQ(rs.field_count(), 4u);
  EXPECT_EQ(rs.field_name(1), "Nombre");
  // Writing while the result set is walked does not change it.
  EXPECT_EQ(conn.execute("Delete From T Where id = 2"), 1);
  EXPECT_EQ(conn.execute("Update T Set Nombre = 'Otro'"), 2);
  ASSERT_EQ(rs.row_count(), 3u);
  EXPECT_EQ(std::get<std::int64_t>(rs.field("id")), 1);
  EXPECT_EQ(std::get<std::string>(rs.field("nombre")), "Ana");
  EXPECT_EQ(std::get<double>(rs.field(2)), 10.5);
  EXPECT_EQ(std::get<std::string>(rs.field("Fecha")), "2024-02-29");
  rs.move_next();
  EXPECT_EQ(db::as_text(rs.field("Nombre")), "Bruno");
  EXPECT_TRUE(db::is_null(rs.field("Fecha")));

  EXPECT_TRUE(conn.open_recordset("Select id From T Where id = 99").eof());
}

TEST(SqliteConnection, RefusedStatementsCarryJetTextTranslationAndMessage) {
  TempFolder folder;
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(folder.database("a.db", "CREATE TABLE T (id INTEGER PRIMARY KEY);")));
  try {
    conn.execute("Select id From NoExiste");
    FAIL() << "no error";
  } catch (const db::Error& e) {
    EXPECT_EQ(e.jet_text(), "Select id From NoExiste");
    EXPECT_FALSE(e.translated_text().empty());
    EXPECT_EQ(e.message().rfind("La base de datos rechazó la instrucción: ", 0), 0u);
    EXPECT_NE(e.message().find("NoExiste"), std::string::npos);
  }
  conn.execute("Insert Into T (id) Values (1)");
  try {
    conn.execute("Insert Into T (id) Values (1)");
    FAIL() << "no error";
  } catch (const db::Error& e) {
    EXPECT_NE(e.message().find("UNIQUE"), std::string::npos);
  }
  try {
    conn.open_recordset("Selec id Fro T");
    FAIL() << "no error";
  } catch (const db::Error& e) {
    EXPECT_EQ(e.message().rfind("No se pudo traducir la instrucción", 0), 0u) << e.message();
    EXPECT_EQ(e.jet_text(), "Selec id Fro T");
    EXPECT_TRUE(e.translated_text().empty());
  }
  // A misspelt double-quoted name is an error, not the text "Nada".
  EXPECT_THROW(conn.execute_native("SELECT \"Nada\" FROM T"), db::Error);
  // The connection keeps working after refused statements.
  EXPECT_EQ(conn.open_recordset("Select id From T").row_count(), 1u);
}

TEST(SqliteConnection, NativeSchemaChangesAreSeenByLaterStatements) {
  TempFolder folder;
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(folder.database("a.db", "CREATE TABLE T (a INTEGER);")));
  EXPECT_EQ(conn.open_recordset("Select * From T").names(), std::vector<std::string>{"a"});
  conn.execute_native("ALTER TABLE T ADD COLUMN b TEXT; INSERT INTO T VALUES (1, 'x');");
  db::Recordset rs = conn.open_recordset("Select * From T");
  EXPECT_EQ(rs.names(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(rs.row_count(), 1u);
  EXPECT_THROW(conn.execute_native("CREATE TABLE"), db::Error);
}

TEST(SqliteConnection, TransactionsCommitAndRollBack) {
  TempFolder folder;
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(folder.database("a.db", "CREATE TABLE T (id INTEGER PRIMARY KEY);")));
  conn.begin_transaction();
  EXPECT_THROW(conn.begin_transaction(), db::Error);
  conn.execute("Insert Into T (id) Values (1)");
  conn.rollback_transaction();
  EXPECT_EQ(conn.open_recordset("Select id From T").row_count(), 0u);

  conn.begin_transaction();
  conn.execute("Insert Into T (id) Values (2)");
  EXPECT_EQ(conn.open_recordset("Select id From T").row_count(), 1u);
  conn.commit_transaction();
  EXPECT_THROW(conn.commit_transaction(), db::Error);
  EXPECT_THROW(conn.rollback_transaction(), db::Error);

  // What a second connection sees: committed rows only.
  db::SqliteConnection other;
  ASSERT_TRUE(other.open(folder.file("a.db")));
  conn.begin_transaction();
  conn.execute("Insert Into T (id) Values (3)");
  EXPECT_EQ(other.open_recordset("Select id From T").row_count(), 1u);
  conn.commit_transaction();
  EXPECT_EQ(other.open_recordset("Select id From T").row_count(), 2u);

  // A transaction with nothing run in it commits and rolls back quietly.
  conn.begin_transaction();
  conn.commit_transaction();
  conn.begin_transaction();
  conn.rollback_transaction();
}

}  // namespace
