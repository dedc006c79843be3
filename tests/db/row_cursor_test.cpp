// Tests of the paged cursor: pages in the query's order, the end, a query
// that limits itself, a refused query, and writes on the same connection
// between pages reaching other connections at once.
#include "db/row_cursor.h"

#include "db_fixture.h"

namespace {

using testing_db::SqliteTest;

class RowCursorTest : public SqliteTest {
 protected:
  void SetUp() override {
    std::string sql = "CREATE TABLE T (id INTEGER PRIMARY KEY, nombre TEXT);";
    for (int i = 1; i <= 25; ++i) sql += "INSERT INTO T VALUES (" + std::to_string(i) + ", 'n" + std::to_string(i) + "');";
    open(sql);
  }
  static std::vector<std::string> ids(const std::vector<std::vector<db::Value>>& rows) {
    std::vector<std::string> out;
    for (const auto& r : rows) out.push_back(db::as_text(r.at(0)));
    return out;
  }
};

TEST_F(RowCursorTest, PagesInOrderUntilTheEnd) {
  auto cursor = db::open_cursor(conn, "Select id, nombre From T Where id > 5 Order By id Desc");
  EXPECT_EQ(cursor->names(), (std::vector<std::string>{"id", "nombre"}));
  struct Page {
    std::size_t asked;
    std::vector<std::string> ids;
    bool at_end;
  };
  const std::vector<Page> pages = {
      {8, {"25", "24", "23", "22", "21", "20", "19", "18"}, false},
      {10, {"17", "16", "15", "14", "13", "12", "11", "10", "9", "8"}, false},
      {2, {"7", "6"}, true},  // exactly the rest: the end is known at once
      {5, {}, true},
  };
  for (const Page& p : pages) {
    EXPECT_EQ(ids(cursor->fetch(p.asked)), p.ids) << p.asked;
    EXPECT_EQ(cursor->at_end(), p.at_end) << p.asked;
  }
}

TEST_F(RowCursorTest, TopQueryEmptyResultAndRefusal) {
  auto top = db::open_cursor(conn, "Select Top 3 id From T Order By id");
  EXPECT_EQ(ids(top->fetch(2)), (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(ids(top->fetch(2)), (std::vector<std::string>{"3"}));
  EXPECT_TRUE(top->at_end());

  auto none = db::open_cursor(conn, "Select id From T Where id > 100");
  EXPECT_TRUE(none->fetch(10).empty());
  EXPECT_TRUE(none->at_end());

  EXPECT_NE(error_of([&] { db::open_cursor(conn, "Select nada From T"); }), "<sin error>");
}

TEST_F(RowCursorTest, WritesBetweenPagesAreCommitted) {
  auto cursor = db::open_cursor(conn, "Select id From T Order By id");
  ASSERT_EQ(cursor->fetch(3).size(), 3u);
  conn.execute("Update T Set nombre='cambiado' Where id=20");
  // Another connection sees the write, and can write itself.
  db::SqliteConnection other;
  ASSERT_TRUE(other.open(folder.file("main.db")));
  EXPECT_EQ(db::as_text(other.open_recordset("Select nombre From T Where id=20").field(std::size_t{0})), "cambiado");
  EXPECT_EQ(other.execute("Update T Set nombre='otra' Where id=21"), 1);
  EXPECT_EQ(ids(cursor->fetch(2)), (std::vector<std::string>{"4", "5"}));
}

}  // namespace
