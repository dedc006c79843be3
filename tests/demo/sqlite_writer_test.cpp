// tests/demo/sqlite_writer_test.cpp — the SQLite writer inserts by column
// name, survives small schema changes, and writes all or nothing.
#include <gtest/gtest.h>

#include <set>

#include "demo/sqlite_writer.h"
#include "demo_test_util.h"

namespace {

using demo_test::Db;
using demo_test::TempDir;

std::string write_script(const TempDir& dir, const std::string& name, const std::string& text) {
  return dir.write(name, text).string();
}

TEST(SqliteWriter, InsertsByNameSkippingColumnsTheSchemaLacks) {
  TempDir dir;
  const std::string script = write_script(
      dir, "s.sql",
      "CREATE TABLE Personas (id_Persona INTEGER PRIMARY KEY, Nombre_1 TEXT, NUMERO TEXT, Extra TEXT DEFAULT 'x');"
      "CREATE INDEX ix_num ON Personas(NUMERO);");
  const std::string db_path = dir.file("d.mdb");
  {
    demo::SqliteWriter w(db_path, {script});
    // Declared in another order and case, with a column the schema lacks and a table it lacks.
    const int t = w.declare_table("Personas", {"numero", "Apodo", "ID_PERSONA", "Nombre_1"});
    const int gone = w.declare_table("Ausente", {"a"});
    demo::RowBuilder row;
    w.add_row(t, row.reset().t(" 1234567-8 ").t("Pepe").i(7).t("José").values());
    w.add_row(t, row.reset().t("2345678_9").null().i(8).null().values());
    w.add_row(gone, row.reset().i(1).values());
    EXPECT_THROW(w.add_row(t, row.reset().i(1).values()), std::runtime_error);
    w.finish();
    EXPECT_EQ(w.row_counts().at("Personas"), 2);
    EXPECT_EQ(w.row_counts().at("Ausente"), 0);
    EXPECT_EQ(w.missing_columns(), std::set<std::string>{"Personas.Apodo"});
    EXPECT_EQ(w.missing_tables(), std::set<std::string>{"Ausente"});
  }
  Db db{db_path};
  EXPECT_EQ(db.value("SELECT group_concat(id_Persona || '|' || NUMERO || '|' || COALESCE(Nombre_1, '-') || '|' || Extra, ';') FROM Personas"),
            "7| 1234567-8 |José|x;8|2345678_9|-|x");
  // The index the writer set aside during the load is back.
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' AND name = 'ix_num'"), 1);
}

TEST(SqliteWriter, AnExistingFileIsReplacedOnlyByAFinishedOne) {
  TempDir dir;
  const std::string script = write_script(dir, "s.sql", "CREATE TABLE T (id INTEGER PRIMARY KEY, v TEXT);");
  const std::string db_path = dir.file("d.mdb");
  demo::RowBuilder row;
  {
    demo::SqliteWriter w(db_path, {script});
    w.add_row(w.declare_table("T", {"id", "v"}), row.reset().i(1).t("a").values());
    w.finish();
  }
  {
    demo::SqliteWriter w(db_path, {script});
    const int t = w.declare_table("T", {"id", "v"});
    w.add_row(t, row.reset().i(2).t("b").values());
    // A duplicate key is refused with the table named.
    demo_test::ExpectError([&] { w.add_row(t, row.reset().i(2).t("c").values()); }, "insertar en T");
    // Abandoned without finish: the earlier file stays.
  }
  EXPECT_EQ(Db{db_path}.value("SELECT group_concat(v) FROM T"), "a");
  EXPECT_FALSE(std::filesystem::exists(db_path + ".tmp"));

  // A broken script and a missing one are reported with their names and
  // leave the earlier file alone.
  const std::string bad = write_script(dir, "bad.sql", "CREATE TABLE (;");
  demo_test::ExpectError([&] { demo::SqliteWriter w(db_path, {bad}); }, "bad.sql");
  demo_test::ExpectError([&] { demo::SqliteWriter w(db_path, {dir.file("missing.sql")}); }, "missing.sql");
  EXPECT_EQ(Db{db_path}.value("SELECT group_concat(v) FROM T"), "a");

  // A finished second writer replaces the file whole.
  {
    demo::SqliteWriter w(db_path, {script});
    w.add_row(w.declare_table("T", {"id", "v"}), row.reset().i(3).t("z").values());
    w.finish();
  }
  EXPECT_EQ(Db{db_path}.value("SELECT group_concat(v) FROM T"), "z");
}

}  // namespace
