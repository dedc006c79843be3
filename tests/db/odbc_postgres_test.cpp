// Tests of an ODBC source on PostgreSQL: a server of its own is started by
// scripts/pg_test_server.sh on a loopback port with its own data folder and
// stopped at the end; the tests skip, saying why, where it cannot be started.
// Checks the table list, the streamed copy's values and its speed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <cstdlib>

#include "db/odbc_image.h"
#include "db_fixture.h"

namespace {

using testing_db::TempFolder;

class OdbcPostgresTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TempFolder("pg");
    port_ = 55400 + static_cast<int>(getpid() % 500);
    const std::string script = std::string(KEL_SOURCE_DIR) + "/scripts/pg_test_server.sh";
    const std::string data = (folder_->path() / "datos").string();
    started_ = std::system((script + " start " + data + " " + std::to_string(port_) + " >/dev/null 2>&1").c_str()) == 0;
  }
  static void TearDownTestSuite() {
    if (started_) {
      const std::string script = std::string(KEL_SOURCE_DIR) + "/scripts/pg_test_server.sh";
      [[maybe_unused]] int rc = std::system((script + " stop " + (folder_->path() / "datos").string()).c_str());
    }
    delete folder_;
    folder_ = nullptr;
  }
  void SetUp() override {
    if (!started_) GTEST_SKIP() << "no se pudo iniciar un servidor PostgreSQL local (paquetes postgresql y odbc-postgresql)";
    ASSERT_TRUE(odbc.open(connection_text())) << odbc.last_error();
  }
  static std::string connection_text() {
    return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(port_) +
           ";Database=postgres;Uid=kel;";
  }

  static inline TempFolder* folder_ = nullptr;
  static inline int port_ = 0;
  static inline bool started_ = false;
  db::OdbcConnection odbc;
  TempFolder work{"pg_trabajo"};
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

}  // namespace
