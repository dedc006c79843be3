// tests/db/quick_date_functions_test.cpp — the direct paths that the
// liquidation browser's month sort takes give exactly what the general ones
// give: our strftime(format, date) against SQLite's own on a plain
// connection, and jet_cdate of a stored text against CDate itself, over odd
// inputs read from table rows as the view reads them.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <string>
#include <vector>

#include "db/jet/functions.h"
#include "db/jet_functions_sqlite.h"
#include "db/sqlite_strftime.h"
#include "db_fixture.h"

namespace {

using testing_db::exec;
using testing_db::typed_column;

// The same table of dates and formats on a connection with our strftime and
// on one with SQLite's own.
class QuickStrftime : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(sqlite3_open(":memory:", &quick_), SQLITE_OK);
    ASSERT_EQ(sqlite3_open(":memory:", &plain_), SQLITE_OK);
    db::register_quick_strftime(quick_);
    for (sqlite3* db : {quick_, plain_}) {
      exec(db, "CREATE TABLE D (v)");
      exec(db,
           "INSERT INTO D VALUES ('2024-02-29'), ('2023-02-29'), ('2024-02-30'), ('2024-04-31'), ('1900-02-29'),"
           "('2000-02-29'), ('2024-01-31 23:59:59'), ('2024-01-31 24:00:00'), ('2024-01-31 23:60:00'),"
           "('2024-01-31T10:00:00'), ('2024-01-31 10:00'), ('2024-01-31 10:00:00.5'), ('2024-01-31 10:00:00Z'),"
           "('0999-12-31'), ('1000-01-01'), ('9999-12-31'), (' 2024-01-01'), ('2024-01-01 '), ('2024-1-1'),"
           "('2024-13-01'), ('2024-00-10'), ('2024-01-00'), ('2024/01/15'), ('02/2024'), (''), ('abc'),"
           "(2460000.5), (1700000000), (NULL), (X'323032342D30312D3135'), ('２024-01-15')");
      exec(db, "CREATE TABLE F (f)");
      exec(db,
           "INSERT INTO F VALUES ('%m/%Y'), ('%d/%m/%Y %H:%M:%S'), ('%Y-%m-%d'), ('%%'), ('100%% %d'), ('%'),"
           "('x%'), ('%j'), ('%s'), ('%f'), ('%w'), ('%J'), (''), ('mes ñ %m'), ('%m/%Y%'), ('%Q'), (NULL), (7),"
           "('" + std::string(70, 'x') + "%d')");
    }
  }
  void TearDown() override {
    sqlite3_close(quick_);
    sqlite3_close(plain_);
  }

  sqlite3* quick_ = nullptr;
  sqlite3* plain_ = nullptr;
};

TEST_F(QuickStrftime, GivesWhatSqlitesOwnGivesForEveryDateAndFormat) {
  const std::string sql = "SELECT strftime(F.f, D.v) FROM F, D ORDER BY F.rowid, D.rowid";
  const std::vector<std::string> expected = typed_column(plain_, sql);
  const std::vector<std::string> got = typed_column(quick_, sql);
  ASSERT_EQ(got.size(), expected.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_EQ(got[i], expected[i]) << "fila " << i;
  // The month text of the staged headers is among them.
  EXPECT_EQ(typed_column(quick_, "SELECT strftime('%m/%Y', v) FROM D WHERE rowid = 1"),
            std::vector<std::string>{"text:02/2024"});
}

TEST_F(QuickStrftime, OtherArgumentCountsAndTheClockStaySqlites) {
  for (const char* sql : {"SELECT strftime('%Y-%m-%d', '2024-01-31', '+1 month')",
                          "SELECT strftime('%Y', '2024-06-01', 'start of year', '-1 day')",
                          "SELECT strftime('%Y')"}) {
    EXPECT_EQ(typed_column(quick_, sql), typed_column(plain_, sql)) << sql;
  }
  EXPECT_EQ(typed_column(quick_, "SELECT length(strftime('%Y-%m-%d %H:%M:%S', 'now'))"),
            std::vector<std::string>{"int:19"});
}

// jet_cdate's direct paths ("MM/yyyy" and stored ISO dates) against CDate
// itself, errors included.
TEST(QuickCdate, StoredTextsReadAsCDateReadsThem) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
  db::register_jet_functions(db);
  const std::vector<std::string> texts = {
      "02/2024",  "2/2024",    "12/2024",    "13/2024",     "00/2024",    "12/0099",     "12/0100",
      "12/9999",  "01/1000",   "1a/2024",    "02-2024",     "02.2024",    " 02/2024",    "02/2024 ",
      "02/20245", "02/",       "/2024",      "02//2024",    "2024-02-29", "2023-02-29",  "2024-02-30",
      "2024-2-29", "29/02/2024", "02/29/2024", "2024-12-31 10:00:00", "", "abc", "02/2O24", "０2/2024"};
  exec(db, "CREATE TABLE T (s TEXT)");
  for (const std::string& t : texts) exec(db, "INSERT INTO T VALUES ('" + t + "')");
  // A refused text fails its statement, so each row is asked on its own.
  std::size_t row = 0;
  for (const std::string& t : texts) {
    std::string expected;
    try {
      const db::Value v = db::jet::fn::CDate(db::Value(t));
      expected = "text:" + std::get<std::string>(v);
    } catch (const std::exception& e) {
      expected = std::string("error:") + e.what();
    }
    const std::vector<std::string> one = typed_column(db, "SELECT jet_cdate(s) FROM T WHERE rowid = " + std::to_string(row + 1));
    ASSERT_EQ(one.size(), 1u) << t;
    EXPECT_EQ(one[0], expected) << "'" << t << "'";
    ++row;
  }
  sqlite3_close(db);
}

}  // namespace
