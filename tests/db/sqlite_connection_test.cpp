// Tests of the SQLite connection: opening, running statements, snapshots,
// errors and transactions.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "db/open_database.h"
#include "base/value.h"
#include "db_fixture.h"
#include "support/query_rows.h"

namespace {

using testing_db::SqliteTest;
using testing_db::TempFolder;

TEST(SqliteConnection, OpenFailuresLeaveItClosedWithASpanishReason) {
  TempFolder folder;
  struct Case {
    std::string path;
    std::string message;  // the whole message, or a piece of it after "…"
  };
  const std::string text = folder.write("notas.txt", "esto no es una base de datos, es un texto largo");
  // A file with a SQLite header but damaged content fails at open, not later.
  const std::string damaged =
      folder.write("rota.db", std::string("SQLite format 3\0", 16) + std::string(200, 'x'));
  // Jet and ACE files as their first page begins: the engine's name at offset 4.
  const std::string jet = folder.write(
      "nwind.mdb", std::string("\0\x01\0\0Standard Jet DB\0", 20) + std::string(2028, '\0'));
  const std::string ace = folder.write(
      "muestra.accdb", std::string("\0\x01\0\0Standard ACE DB\0", 20) + std::string(2028, '\0'));
  const Case cases[] = {
      {folder.file("nada.db"), "…No se encuentra el archivo"},
      {jet, "El archivo " + jet + " es una base de datos de Access (Jet/ACE), no una base SQLite"},
      {ace, "…de Access (Jet/ACE)"},
      {text, "El archivo " + text + " no es una base de datos SQLite"},
      {folder.path().string(), "…no es un archivo"},
      {damaged, "…No se pudo abrir la base"},
  };
  db::SqliteConnection conn;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    ASSERT_TRUE(conn.open(folder.database("buena.db")));
    EXPECT_FALSE(conn.open(c.path));
    EXPECT_EQ(conn.state(), 0);
    EXPECT_EQ(conn.data_source_name(), "");
    if (c.message.rfind("…", 0) == 0) {
      EXPECT_NE(conn.last_error().find(c.message.substr(3)), std::string::npos) << conn.last_error();
    } else {
      EXPECT_EQ(conn.last_error(), c.message);
    }
    EXPECT_THROW(conn.execute("Select 1"), db::Error);
  }
  EXPECT_FALSE(std::filesystem::exists(folder.file("nada.db"))) << "opening must not create";
}

TEST_F(SqliteTest, OpenSetsWalForeignKeysAndReopenSwitchesFiles) {
  open("CREATE TABLE TA (id INTEGER);", "a.db");
  EXPECT_EQ(conn.state(), 1);
  EXPECT_TRUE(conn.last_error().empty());
  EXPECT_EQ(conn.data_source_name(), folder.file("a.db"));
  EXPECT_EQ(test_support::QueryValue(conn, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(test_support::QueryValue(conn, "PRAGMA foreign_keys"), "1");
  EXPECT_EQ(conn.table_columns("main", "TA"), std::vector<std::string>{"id"});

  open("CREATE TABLE TB (id INTEGER);", "b.db");
  EXPECT_EQ(conn.data_source_name(), folder.file("b.db"));
  EXPECT_TRUE(conn.table_columns("main", "TA").empty());
  EXPECT_EQ(conn.table_columns("main", "TB"), std::vector<std::string>{"id"});

  // An empty file is an empty database.
  EXPECT_TRUE(conn.open(folder.write("vacia.db", ""))) << conn.last_error();
  conn.close();
  EXPECT_EQ(conn.state(), 0);

  // open_database replaces the connection variable with a fresh object.
  std::unique_ptr<db::Connection> var;
  db::open_database(folder.file("a.db"), var);
  ASSERT_TRUE(var);
  EXPECT_EQ(var->state(), 1);
  db::Connection* first = var.get();
  db::open_database(folder.file("a.db"), var);
  EXPECT_EQ(var->state(), 1);
  EXPECT_NE(var.get(), first);
  db::open_database(folder.file("no.db"), var);
  ASSERT_TRUE(var);
  EXPECT_EQ(var->state(), 0);
  EXPECT_FALSE(var->last_error().empty());
}

// The company file keeps the journal mode it came with, through writes,
// transactions and reads of another file; the program's own files go to WAL.
TEST_F(SqliteTest, KeptJournalModeSurvivesARunAndTheClose) {
  const std::string other = folder.database("pasaje.db", "CREATE TABLE P (id INTEGER);");
  // The two modes a file carries (the others last only while a connection is open).
  for (const char* mode : {"delete", "wal"}) {
    SCOPED_TRACE(mode);
    const std::string file =
        folder.database(std::string(mode) + ".db", std::string("PRAGMA journal_mode=") + mode + ";CREATE TABLE T (id INTEGER);");
    db::SqliteConnection kel;
    ASSERT_TRUE(kel.open(file, db::JournalMode::kKeep)) << kel.last_error();
    EXPECT_EQ(test_support::QueryValue(kel, "PRAGMA journal_mode"), mode);
    EXPECT_EQ(test_support::QueryValue(kel, "PRAGMA foreign_keys"), "1");
    kel.begin_transaction();
    kel.execute("Insert into T Select id From P in '" + other + "'");
    kel.execute("Insert into T (id) Values (1)");
    kel.commit_transaction();
    kel.close();
    db::SqliteConnection again;
    ASSERT_TRUE(again.open(file, db::JournalMode::kKeep));
    EXPECT_EQ(test_support::QueryValue(again, "PRAGMA journal_mode"), mode);
    EXPECT_EQ(db::as_int(again.open_recordset("Select Count(*) From T").field(0)), 1);
  }
  // A damaged file still fails at the open, in either mode.
  const std::string damaged = folder.write("rota.db", std::string("SQLite format 3") + '\0' + std::string(200, 'x'));
  db::SqliteConnection broken;
  EXPECT_FALSE(broken.open(damaged, db::JournalMode::kKeep));
  EXPECT_FALSE(broken.last_error().empty());
  std::unique_ptr<db::Connection> var;
  db::open_database(damaged, var, db::JournalMode::kKeep);
  EXPECT_EQ(var->state(), 0);
}

TEST_F(SqliteTest, StatementsReturnChangedRowsAndResultsAreSnapshots) {
  open("CREATE TABLE T (id INTEGER PRIMARY KEY, Nombre TEXT, Sueldo REAL, Fecha TEXT);");
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

TEST_F(SqliteTest, RefusedStatementsCarryJetTextTranslationAndMessage) {
  open("CREATE TABLE T (id INTEGER PRIMARY KEY);");
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
  EXPECT_NE(error_of([&] { conn.execute("Insert Into T (id) Values (1)"); }).find("UNIQUE"),
            std::string::npos);
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
  EXPECT_THROW(conn.execute_native("CREATE TABLE"), db::Error);
  // The connection keeps working after refused statements, and sees native
  // schema changes.
  conn.execute_native("ALTER TABLE T ADD COLUMN b TEXT;");
  db::Recordset rs = conn.open_recordset("Select * From T");
  EXPECT_EQ(rs.names(), (std::vector<std::string>{"id", "b"}));
  EXPECT_EQ(rs.row_count(), 1u);
}

TEST_F(SqliteTest, TransactionsCommitAndRollBack) {
  open("CREATE TABLE T (id INTEGER PRIMARY KEY);");
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
  ASSERT_TRUE(other.open(folder.file("main.db")));
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
