// tests/db/sqlite_messages_test.cpp — the Spanish texts of SQLite's errors
// that come from the file rather than the statement (locked, read-only, full,
// damaged), which a golden file cannot provoke.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "db/sqlite_messages.h"

namespace {

TEST(SqliteMessages, CommonErrorsAreSpanishAndKeepTheOriginal) {
  const struct {
    int code;
    const char* original;
    const char* spanish;
  } cases[] = {
      {SQLITE_BUSY, "database is locked", "La base de datos está bloqueada"},
      {SQLITE_LOCKED, "database table is locked", "La base de datos está bloqueada"},
      {SQLITE_READONLY, "attempt to write a readonly database", "es de solo lectura"},
      {SQLITE_FULL, "database or disk is full", "No hay espacio en el disco"},
      {SQLITE_CORRUPT, "database disk image is malformed", "La base de datos está dañada"},
      {SQLITE_NOTADB, "file is not a database", "no es una base de datos"},
      {SQLITE_IOERR_WRITE, "disk I/O error", "Error de lectura o escritura"},
  };
  for (const auto& c : cases) {
    std::string text = db::sqlite_message_in_spanish(c.code, c.original);
    EXPECT_NE(text.find(c.spanish), std::string::npos) << text;
    EXPECT_NE(text.find(std::string("(") + c.original + ")"), std::string::npos) << text;
  }
  // Texts SQLite did not write (the jet_* functions' own) pass unchanged.
  EXPECT_EQ(db::sqlite_message_in_spanish(SQLITE_ERROR, "División por cero"), "División por cero");
}

}  // namespace
