// Tests of reading other databases by path: the attachment table's choice of
// what to give up, and the connection's attach() as the translator calls it.
#include <gtest/gtest.h>

#include "db/attachments.h"
#include "db/source_reader.h"
#include "db_fixture.h"

namespace {

using testing_db::SqliteTest;

TEST(AttachmentTable, GivesUpTheLeastRecentlyUsedNotNeededByTheStatement) {
  db::AttachmentTable table;
  EXPECT_FALSE(table.least_recently_used(1));
  std::string a = table.next_schema_name();
  std::string b = table.next_schema_name();
  EXPECT_EQ(a, "src1");
  EXPECT_EQ(b, "src2");
  table.add("/x/a.db", a, 1);
  table.add("/x/b.db", b, 2);
  table.add("/x/c.db", table.next_schema_name(), 3);
  EXPECT_EQ(table.least_recently_used(4), "/x/a.db");
  EXPECT_EQ(table.use("/x/a.db", 4), "src1");
  EXPECT_EQ(table.least_recently_used(5), "/x/b.db");
  // Statement 4 uses a.db: b.db is still the one to give up for it.
  EXPECT_EQ(table.least_recently_used(4), "/x/b.db");
  table.use("/x/b.db", 6);
  table.use("/x/c.db", 6);
  table.use("/x/a.db", 6);
  EXPECT_FALSE(table.least_recently_used(6)) << "all in use by statement 6";
  table.remove("/x/b.db");
  EXPECT_EQ(table.size(), 2u);
  EXPECT_EQ(table.schema_of("/x/b.db"), "");
  EXPECT_FALSE(table.use("/x/b.db", 7));
  EXPECT_EQ(table.next_schema_name(), "src4") << "names are never given twice";
}

// Reads an invented "source" file format: a text file whose first line is
// "FUENTE"; its image is a SQLite file made beside it.
class FakeReader : public db::SourceReader {
 public:
  explicit FakeReader(std::string image) : image_(std::move(image)) {}
  bool can_read(const std::string& path) const override {
    return path.size() > 7 && path.substr(path.size() - 7) == ".fuente";
  }
  std::string sqlite_image(const std::string&) override {
    ++calls;
    return image_;
  }
  int calls = 0;

 private:
  std::string image_;
};

TEST_F(SqliteTest, AttachesPathsOnceAndReusesThem) {
  open("CREATE TABLE M (id INTEGER);");
  std::string main = folder.file("main.db");
  std::string other = folder.database("other.db", "CREATE TABLE T (id INTEGER, Nombre TEXT);");

  std::string schema = conn.attach(other);
  EXPECT_EQ(schema, "src1");
  EXPECT_EQ(conn.attach(folder.path().string() + "/./other.db"), "src1");
  EXPECT_EQ(conn.attach(folder.path().string() + "/sub/../other.db"), "src1");
  EXPECT_EQ(conn.attachment_count(), 1u);
  EXPECT_EQ(conn.attach(main), "main") << "its own file is read directly";
  EXPECT_EQ(conn.table_columns("src1", "T"), (std::vector<std::string>{"id", "Nombre"}));
  EXPECT_TRUE(conn.table_columns("src1", "M").empty());
  EXPECT_EQ(conn.select_columns("SELECT Nombre AS N, id FROM src1.T"),
            (std::vector<std::string>{"N", "id"}));
  EXPECT_THROW(conn.select_columns("SELECT x FROM src1.NoHay"), db::Error);

  EXPECT_NE(error_of([&] { conn.attach(folder.file("falta.db")); }).find("el archivo no existe"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder.file("falta.db")));
  std::string text = folder.write("datos.txt", "hola");
  EXPECT_EQ(error_of([&] { conn.attach(text); }),
            "No se puede leer la base " + text + ": no es una base SQLite");
}

TEST_F(SqliteTest, NonSqliteSourcesGoThroughARegisteredReader) {
  open();
  std::string image = folder.database("imagen.db", "CREATE TABLE Fuente (x INTEGER);");
  std::string source = folder.write("datos.fuente", "FUENTE\n");
  EXPECT_THROW(conn.attach(source), db::Error) << "no reader registered";
  auto reader = std::make_shared<FakeReader>(image);
  db::register_source_reader(reader);
  std::string schema;
  EXPECT_NO_THROW(schema = conn.attach(source));
  EXPECT_EQ(conn.table_columns(schema, "Fuente"), std::vector<std::string>{"x"});
  EXPECT_EQ(conn.attach(source), schema);
  EXPECT_EQ(reader->calls, 1) << "the image is made once per attachment";
  db::clear_source_readers();
}

TEST_F(SqliteTest, MoreFilesThanTheAttachLimitRecycleAttachments) {
  open();
  int limit = sqlite3_limit(conn.handle(), SQLITE_LIMIT_ATTACHED, -1);
  std::vector<std::string> files;
  for (int i = 0; i <= limit; ++i) {
    files.push_back(folder.database("o" + std::to_string(i) + ".db",
                                    "CREATE TABLE T (id INTEGER); INSERT INTO T VALUES (" +
                                        std::to_string(i) + ");"));
  }
  // One statement each: the oldest attachment makes room for the next.
  for (const auto& file : files) {
    EXPECT_EQ(conn.open_recordset("Select id From T in '" + file + "'").row_count(), 1u);
  }
  EXPECT_EQ(static_cast<int>(conn.attachment_count()), limit);
  db::Recordset rs = conn.open_recordset("Select id From T in '" + files.front() + "'");
  ASSERT_EQ(rs.row_count(), 1u);
  EXPECT_EQ(db::as_int(rs.field(0)), 0);
  // One statement may read as many files as can be attached, not one more.
  std::string sql = "Select Count(*) From T in '" + files[0] + "' Where id In (Select id From T in '" + files[1] + "')";
  for (int i = 2; i < limit; ++i) sql += " Or id In (Select id From T in '" + files[i] + "')";
  EXPECT_EQ(conn.open_recordset(sql).row_count(), 1u);
  sql += " Or id In (Select id From T in '" + files[limit] + "')";
  EXPECT_NE(error_of([&] { conn.open_recordset(sql); }).find("no puede leer más de " + std::to_string(limit)),
            std::string::npos);
}

TEST_F(SqliteTest, AttachingInsideATransaction) {
  open("CREATE TABLE D (id INTEGER);");
  std::string a = folder.database("a.db", "CREATE TABLE T (id INTEGER); INSERT INTO T VALUES (1);");
  std::string b = folder.database("b.db", "CREATE TABLE T (id INTEGER); INSERT INTO T VALUES (2);");
  // The first statement of a transaction may name a new file: it is attached
  // before the transaction really begins.
  conn.begin_transaction();
  EXPECT_EQ(conn.execute("Insert Into D Select id From T in '" + a + "'"), 1);
  EXPECT_EQ(conn.execute("Insert Into D Select id From T in '" + a + "'"), 1);
  EXPECT_NE(error_of([&] { conn.execute("Insert Into D Select id From T in '" + b + "'"); })
                .find("dentro de una transacción"),
            std::string::npos);
  conn.rollback_transaction();
  EXPECT_EQ(conn.open_recordset("Select id From D").row_count(), 0u);
  EXPECT_EQ(conn.execute("Insert Into D Select id From T in '" + b + "'"), 1);
}

TEST_F(SqliteTest, TranslationsFollowTablesChangedByAnotherConnection) {
  open("CREATE TABLE D (a TEXT, b TEXT, c TEXT);");
  std::string other = folder.database("other.db", "CREATE TABLE T (a TEXT, b TEXT);"
                                                  "INSERT INTO T VALUES ('a1', 'b1');");
  const std::string insert = "Insert Into D Select * From T in '" + other + "'";
  EXPECT_EQ(conn.execute(insert), 1);
  // The staging load, on its own connection, makes the table again with
  // other columns; the same statement text must see them.
  db::SqliteConnection staging;
  ASSERT_TRUE(staging.open(other));
  staging.execute_native("DROP TABLE T; CREATE TABLE T (c TEXT, b TEXT, a TEXT);"
                         "INSERT INTO T VALUES ('c2', 'b2', 'a2');");
  EXPECT_EQ(conn.execute(insert), 1);
  db::Recordset rs = conn.open_recordset("Select a, b, c From D Where a = 'a2'");
  ASSERT_EQ(rs.row_count(), 1u);
  EXPECT_EQ(db::as_text(rs.field("b")), "b2");
  EXPECT_EQ(db::as_text(rs.field("c")), "c2");
}

}  // namespace
