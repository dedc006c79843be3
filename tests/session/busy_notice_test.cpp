// Tests the waiting message: it names the file another connection holds,
// whether it is the connection's own database or one a statement reads with
// `in '<path>'`. The other connection lets go as soon as the message is
// given, so no case waits.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "controller_fixture.h"
#include "session/busy_notice.h"

namespace {

namespace fs = std::filesystem;
using kel_test::run_sqlite;

TEST(BusyNotice, NamesTheFileThatIsHeld) {
  for (const bool hold_source : {true, false}) {  // the attached source, or the connection's own file
    SCOPED_TRACE(hold_source ? "base adjunta (origen)" : "base propia");
    kel_test::TempFolder dir;
    const fs::path own = dir / "Pasaje.mdb", source = dir / "origen" / "Origen.mdb";
    run_sqlite(own, "CREATE TABLE Copia (id INTEGER, nombre TEXT);");
    run_sqlite(source, "CREATE TABLE Personas (id INTEGER, nombre TEXT); INSERT INTO Personas VALUES (1, 'Ana');");
    db::SqliteConnection conn;
    ASSERT_TRUE(conn.open(own.string())) << conn.last_error();
    conn.execute("Select count(*) From Personas in '" + source.string() + "'");  // attached before the hold

    const fs::path held = hold_source ? source : own;
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(held.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    std::vector<std::string> told;
    session::BusyNotice notice;
    notice.install(&conn, [&](const std::string& text) {
      told.push_back(text);
      sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);  // the other program lets go
    });
    EXPECT_EQ(conn.execute("Insert Into Copia Select * From Personas in '" + source.string() + "'"), 1);
    sqlite3_close(other);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0], "Esperando a que otro programa libere la base " + held.string() +
                           "; se espera hasta 15 segundos");
  }
}

}  // namespace
