// Tests of an ODBC source on PostgreSQL: a server of its own is started by
// scripts/pg_test_server.sh on a loopback port with its own data folder and
// stopped at the end; the tests skip, saying why, where it cannot be started.
// Checks the table list, the streamed copy's values and its speed.
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <cstdlib>

#include "db/odbc_image.h"
#include "db_fixture.h"
#include "support/pg_server.h"

namespace {

using testing_db::TempFolder;

class OdbcPostgresTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { server_ = new PgTestServer; }
  static void TearDownTestSuite() {
    delete server_;
    server_ = nullptr;
  }
  void SetUp() override {
    if (!server_->started()) GTEST_SKIP() << PgTestServer::reason();
    ASSERT_TRUE(odbc.open(server_->connection_text())) << odbc.last_error();
  }

  static inline PgTestServer* server_ = nullptr;
  db::OdbcConnection odbc;
  TempFolder work;
};

TEST_F(OdbcPostgresTest, TablesAreCopiedWithTheirValues) {
  odbc.execute("DROP TABLE IF EXISTS empresa");
  odbc.execute("CREATE TABLE empresa (em_nombre varchar(40), alta timestamp, sueldo numeric(12,2), activo integer)");
  odbc.execute("INSERT INTO empresa VALUES ('Peñarol Ñandú', '2024-02-29 13:05:00', 1500.75, -1), (NULL, NULL, NULL, 0)");
  auto tables = odbc.table_names();
  EXPECT_NE(std::find(tables.begin(), tables.end(), "empresa"), tables.end());
  const std::string image = work.file("imagen.db");
  EXPECT_EQ(db::write_odbc_image(odbc, {"empresa"}, image), 2);
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(image));
  db::Recordset rs = conn.open_recordset("Select em_nombre, alta, sueldo, activo From empresa Order By activo");
  ASSERT_EQ(rs.row_count(), 2u);
  EXPECT_EQ(db::as_text(rs.field(std::size_t{0})), "Peñarol Ñandú");
  EXPECT_EQ(db::as_text(rs.field(std::size_t{1})), "2024-02-29 13:05:00");
  EXPECT_DOUBLE_EQ(db::as_double(rs.field(std::size_t{2})), 1500.75);
  EXPECT_EQ(db::as_int(rs.field(std::size_t{3})), -1);
  rs.move_next();
  EXPECT_TRUE(db::is_null(rs.field(std::size_t{0})));
}

// Streaming 100,000 rows from the local server: at least 100,000 rows/s of
// this process's processor time (the wall-clock figure is printed too; on a
// busy machine it measures the machine, not the copy).
TEST_F(OdbcPostgresTest, StreamsAHundredThousandRowsFast) {
  odbc.execute("DROP TABLE IF EXISTS sueldos");
  odbc.execute("CREATE TABLE sueldos AS SELECT g AS id, 'Nombre ' || g AS nombre, g * 1.5 AS importe, "
               "date '2024-01-01' + (g % 365) AS fecha FROM generate_series(1, 100000) g");
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t cpu_start = std::clock();
  std::int64_t rows = db::write_odbc_image(odbc, {"sueldos"}, work.file("sueldos.db"));
  const double cpu = static_cast<double>(std::clock() - cpu_start) / CLOCKS_PER_SEC;
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  ASSERT_EQ(rows, 100000);
  const double rate = static_cast<double>(rows) / cpu;
  RecordProperty("rows_per_second", static_cast<int>(rate));
  std::printf("PostgreSQL (ODBC) -> SQLite: %lld filas, %.3f s de CPU = %.0f filas/s; %.3f s de reloj = %.0f filas/s\n",
              static_cast<long long>(rows), cpu, rate, wall, static_cast<double>(rows) / wall);
  EXPECT_GE(rate, 100000.0);
}

// Long texts (memos) arrive whole, wherever they fall in a fetched block:
// a 100 KB text, one with accented letters (two bytes each, so the pieces the
// driver hands out end inside a character) and one just past the bound size.
TEST_F(OdbcPostgresTest, LongTextsArriveWhole) {
  std::string accented;
  while (accented.size() < 100 * 1024) accented += "Ñandú peñarol águila ";
  const std::vector<std::pair<int, std::string>> long_rows = {
      {7, std::string(100 * 1024, 'x')}, {1500, accented}, {1501, std::string(1025, 'b')}, {2999, "corto"}};
  odbc.execute("DROP TABLE IF EXISTS notas");
  odbc.execute("CREATE TABLE notas (id integer, nota text)");
  odbc.execute("INSERT INTO notas SELECT g, 'nota ' || g FROM generate_series(1, 3000) g");
  for (const auto& [id, text] : long_rows)
    odbc.execute("UPDATE notas SET nota = '" + text + "' WHERE id = " + std::to_string(id));
  odbc.execute("UPDATE notas SET nota = NULL WHERE id = 8");
  const std::string image = work.file("notas.db");
  ASSERT_EQ(db::write_odbc_image(odbc, {"notas"}, image), 3000);
  db::SqliteConnection conn;
  ASSERT_TRUE(conn.open(image));
  for (const auto& [id, text] : long_rows) {
    db::Recordset rs = conn.open_recordset("Select nota From notas Where id = " + std::to_string(id));
    ASSERT_EQ(rs.row_count(), 1u);
    const std::string got = db::as_text(rs.field(std::size_t{0}));
    EXPECT_EQ(got.size(), text.size()) << id;
    EXPECT_TRUE(got == text) << id;
  }
  EXPECT_TRUE(db::is_null(conn.open_recordset("Select nota From notas Where id = 8").field(std::size_t{0})));
  EXPECT_EQ(db::as_text(conn.open_recordset("Select nota From notas Where id = 2998").field(std::size_t{0})),
            "nota 2998");
  // The same through a whole result set.
  db::Recordset whole = odbc.open_recordset("SELECT nota FROM notas WHERE id IN (7, 1500) ORDER BY id");
  ASSERT_EQ(whole.row_count(), 2u);
  EXPECT_EQ(db::as_text(whole.field(std::size_t{0})).size(), long_rows[0].second.size());
  whole.move_next();
  EXPECT_TRUE(db::as_text(whole.field(std::size_t{0})) == accented);
}

}  // namespace
