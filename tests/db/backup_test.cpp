// Tests the safety copy and its restore: a copy equals its source in either
// journal mode and while another connection writes; a copy that cannot be
// made leaves nothing behind; a restore replaces the file whole, drops the
// journals left beside it and refuses a damaged copy.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "db/backup.h"
#include "db_fixture.h"
#include "support/sqlite_file.h"

namespace {

namespace fs = std::filesystem;
using testing_db::TempFolder;

// Runs native SQL on the file at `path` (created when missing).
void run(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  char* message = nullptr;
  const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message);
  EXPECT_EQ(rc, SQLITE_OK) << (message ? message : "");
  sqlite3_free(message);
  sqlite3_close(db);
}

// Every row of table t, in order, as one text ("" when the file cannot be read).
std::string rows(const std::string& path) {
  return test_support::query_text(path, "SELECT group_concat(id || ':' || name || ';', '') FROM (SELECT * FROM t ORDER BY id)");
}

const std::string kSchema =
    "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT);"
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)"
    " INSERT INTO t SELECT i, 'fila ' || i FROM n;";

TEST(Backup, CopyEqualsSourceInEitherJournalModeAndLeavesNoPartialFile) {
  for (const std::string mode : {"DELETE", "WAL"}) {
    SCOPED_TRACE(mode);
    TempFolder tmp;
    const std::string source = tmp.file("Datos.mdb");
    run(source, "PRAGMA journal_mode=" + mode + ";" + kSchema);
    const std::string copy = tmp.file("Datos.mdb.antes");
    db::backup_database(source, copy);
    EXPECT_EQ(rows(copy), rows(source));
    EXPECT_NE(rows(copy).find("3000:fila 3000;"), std::string::npos);
    EXPECT_EQ(db::quick_check(copy), "");
    EXPECT_FALSE(fs::exists(copy + ".parcial"));
    // An existing name is never overwritten.
    run(source, "DELETE FROM t");
    EXPECT_THROW(db::backup_database(source, copy), db::Error);
    EXPECT_NE(rows(copy), "");
  }
}

TEST(Backup, CopyTakesOnlyCommittedRowsWhileAnotherConnectionWrites) {
  TempFolder tmp;
  const std::string source = tmp.file("Datos.mdb");
  run(source, kSchema);
  sqlite3* writer = nullptr;
  ASSERT_EQ(sqlite3_open(source.c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN IMMEDIATE; DELETE FROM t WHERE id > 10;", nullptr, nullptr, nullptr),
            SQLITE_OK);
  const std::string copy = tmp.file("copia");
  db::backup_database(source, copy, 2000);
  sqlite3_exec(writer, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(writer);
  EXPECT_NE(rows(copy).find("3000:fila 3000;"), std::string::npos);
  EXPECT_EQ(rows(source), rows(copy).substr(0, rows(source).size()));
}

TEST(Backup, FailuresSayWhyAndLeaveNoFile) {
  TempFolder tmp;
  const std::string source = tmp.file("Datos.mdb");
  run(source, kSchema);
  struct Row {
    std::string source, target, reason;
  };
  const std::vector<Row> cases = {
      {source, tmp.file("no/existe/copia"), "no se puede crear"},
      {tmp.file("falta.mdb"), tmp.file("copia1"), "no se puede crear o abrir"},
      {tmp.write("basura.mdb", std::string(4096, 'x')), tmp.file("copia2"), "dañada"},
  };
  for (const Row& row : cases) {
    SCOPED_TRACE(row.source + " -> " + row.target);
    try {
      db::backup_database(row.source, row.target);
      ADD_FAILURE() << "no error";
    } catch (const db::Error& e) {
      EXPECT_NE(e.message().find(row.reason), std::string::npos) << e.message();
      EXPECT_NE(e.message().find(row.source), std::string::npos) << e.message();
    }
    EXPECT_FALSE(fs::exists(row.target));
    EXPECT_FALSE(fs::exists(row.target + ".parcial"));
  }
}

TEST(Backup, RestoreReplacesTheFileAndDropsItsJournals) {
  TempFolder tmp;
  const std::string company = tmp.file("Datos.mdb");
  run(company, kSchema);
  const std::string copy = tmp.file("Datos.mdb.copia");
  db::backup_database(company, copy);
  const std::string before = rows(company);
  run(company, "DELETE FROM t WHERE id > 5; INSERT INTO t VALUES (9999, 'nueva');");
  // A journal left by a run that was killed would be rolled into the
  // restored file: it must go.
  tmp.write("Datos.mdb-journal", std::string(512, '\0'));
  tmp.write("Datos.mdb-wal", "wal");
  db::restore_database(copy, company);
  EXPECT_EQ(rows(company), before);
  EXPECT_EQ(db::quick_check(company), "");
  for (const char* side : {"-journal", "-wal", ".restaurando"}) EXPECT_FALSE(fs::exists(company + side)) << side;
  EXPECT_TRUE(fs::exists(copy)) << "the copy is kept";

  // A damaged or missing copy changes nothing.
  run(company, "DELETE FROM t WHERE id > 100");
  const std::string after = rows(company);
  for (const std::string& bad : {tmp.write("rota", std::string(8192, 'z')), tmp.file("no-esta")}) {
    EXPECT_THROW(db::restore_database(bad, company), db::Error);
    EXPECT_EQ(rows(company), after);
  }
}

// A write transaction of another connection makes the wait give up after the
// timeout with a message naming the file; once it ends, the file is writable.
TEST(Backup, WaitUntilWritableGivesUpOnALockedFile) {
  TempFolder tmp;
  const std::string file = tmp.file("Datos.mdb");
  run(file, kSchema);
  sqlite3* holder = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  try {
    db::wait_until_writable(file, 200);
    ADD_FAILURE() << "no error";
  } catch (const db::Error& e) {
    EXPECT_NE(e.message().find("La base " + file + " está bloqueada por otro programa"), std::string::npos)
        << e.message();
  }
  sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(holder);
  EXPECT_NO_THROW(db::wait_until_writable(file, 200));
}

// A few tables of a database saved apart and put back: other tables are left
// alone, a table the source lacks is skipped, the rows come back exactly.
TEST(Backup, TablesSavedApartComeBackAlone) {
  TempFolder tmp;
  const std::string file = tmp.file("Pasaje.mdb");
  run(file, "PRAGMA journal_mode=WAL;" + kSchema +
                "CREATE TABLE m (a INTEGER, b TEXT); INSERT INTO m VALUES (1, 'uno'), (2, 'dos');");
  const std::string copy = tmp.file("Pasaje.mdb.tablas");
  db::backup_tables(file, {"m", "no_esta"}, copy);
  EXPECT_FALSE(fs::exists(copy + ".parcial"));
  run(file, "DELETE FROM m; INSERT INTO m VALUES (9, 'nueve'); DELETE FROM t WHERE id > 10;");
  db::restore_tables(copy, file);
  EXPECT_EQ(test_support::query_text(file, "SELECT group_concat(a || b, ',') FROM (SELECT * FROM m ORDER BY a)"), "1uno,2dos");
  EXPECT_EQ(rows(file).find("11:"), std::string::npos) << "t is not part of the copy";
  EXPECT_THROW(db::backup_tables(file, {"m"}, copy), db::Error) << "an existing copy is never overwritten";
}

}  // namespace
