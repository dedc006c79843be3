// Tests of the prepared statement cache: reuse, eviction of the least
// recently used statement, and refused texts.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "db/statement_cache.h"

namespace {

TEST(StatementCache, ReusesRecentStatementsAndEvictsTheOldest) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
  {
    db::StatementCache cache(2);
    sqlite3_stmt* a = cache.get(db, "SELECT 1");
    sqlite3_stmt* b = cache.get(db, "SELECT 2");
    ASSERT_TRUE(a && b);
    // A statement left in the middle of its rows comes back reset.
    ASSERT_EQ(sqlite3_step(a), SQLITE_ROW);
    EXPECT_EQ(cache.get(db, "SELECT 1"), a);
    EXPECT_EQ(sqlite3_stmt_busy(a), 0);
    // "SELECT 2" is now the oldest: a third text pushes it out, "SELECT 1" stays.
    sqlite3_stmt* c = cache.get(db, "SELECT 3");
    ASSERT_TRUE(c);
    EXPECT_EQ(cache.get(db, "SELECT 1"), a);
    EXPECT_EQ(cache.get(db, "SELECT 3"), c);
    sqlite3_stmt* b2 = cache.get(db, "SELECT 2");
    ASSERT_TRUE(b2);
    EXPECT_EQ(sqlite3_step(b2), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(b2, 0), 2);

    EXPECT_EQ(cache.get(db, "SELEC 1"), nullptr);
    EXPECT_NE(sqlite3_errcode(db), SQLITE_OK);
    EXPECT_EQ(cache.get(db, "  "), nullptr) << "nothing to run";
    EXPECT_EQ(sqlite3_errcode(db), SQLITE_OK);
    cache.clear();
    EXPECT_EQ(sqlite3_next_stmt(db, nullptr), nullptr) << "clear finalizes everything";
  }
  EXPECT_EQ(sqlite3_close(db), SQLITE_OK);
}

}  // namespace
