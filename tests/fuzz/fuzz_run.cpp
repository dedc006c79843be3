// tests/fuzz/fuzz_run.cpp — translate and run on a real connection: any text
// must run or be refused with db::Error. Each input runs inside a transaction
// that is rolled back, so that inputs do not change what the next one sees.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sqlite3.h>
#include <cstdio>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "jet/fake_context.h"

namespace {

db::SqliteConnection* OpenFixture() {
  std::string path = "/tmp/kel_fuzz_run_" + std::to_string(getpid()) + ".db";
  std::remove(path.c_str());
  sqlite3* raw = nullptr;
  sqlite3_open(path.c_str(), &raw);
  sqlite3_exec(raw,
               "CREATE TABLE T (id INTEGER PRIMARY KEY, Nombre TEXT COLLATE NOCASE, Fecha DATETIME, "
               "Activo INTEGER, Monto REAL);"
               "INSERT INTO T VALUES (1,'Ana','2024-02-29',-1,10.5),(2,'ÑANDÚ',NULL,0,NULL),"
               "(3,'12abc','2024-01-01 13:05:00',1,-3);"
               "CREATE TABLE RelacConc (CodKEL INTEGER, CodOS TEXT COLLATE NOCASE);"
               "INSERT INTO RelacConc VALUES (1,'A'),(2,'b');",
               nullptr, nullptr, nullptr);
  sqlite3_close(raw);
  auto* connection = new db::SqliteConnection;
  if (!connection->open(path)) std::abort();
  return connection;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static db::SqliteConnection* connection = OpenFixture();
  std::string_view text(reinterpret_cast<const char*>(data), size);
  // A statement that names another database (`in '<path>'`) would make the
  // connection read whatever file the input names: such inputs stop at
  // translation, which fuzz_translate covers.
  static kel_test::FakeContext probe;
  probe.attached.clear();
  try {
    db::jet::translate(text, probe);
  } catch (const std::exception&) {
  }
  if (!probe.attached.empty()) return 0;
  try {
    connection->begin_transaction();
    connection->open_recordset(text);
  } catch (const db::Error&) {
  }
  try {
    connection->rollback_transaction();
  } catch (const db::Error&) {
  }
  return 0;
}
