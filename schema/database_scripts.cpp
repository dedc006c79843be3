// schema/database_scripts.cpp — runs SQL definition scripts into a new database.
#include "schema/database_scripts.h"

#include <sqlite3.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace schema {
namespace {

bool read_file(const std::filesystem::path& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream buffer;
  buffer << in.rdbuf();
  text = buffer.str();
  return !in.bad();
}

// Removes a database file and the journal files SQLite may leave beside it.
void remove_database_files(const std::filesystem::path& path) {
  std::error_code ec;
  for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
    std::filesystem::remove(path.string() + suffix, ec);
  }
}

int line_of(const std::string& text, std::size_t offset) {
  offset = std::min(offset, text.size());
  return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<long>(offset), '\n'));
}

}  // namespace

bool run_script(void* handle, const std::string& script, const std::string& name,
                std::string& error) {
  auto* db = static_cast<sqlite3*>(handle);
  const char* begin = script.c_str();
  const char* rest = begin;
  while (*rest != '\0') {
    sqlite3_stmt* stmt = nullptr;
    const char* tail = nullptr;
    // Skip leading blanks so that the line reported is the statement's own.
    while (*rest == ' ' || *rest == '\t' || *rest == '\r' || *rest == '\n') ++rest;
    if (*rest == '\0') break;
    const std::size_t offset = static_cast<std::size_t>(rest - begin);
    int rc = sqlite3_prepare_v2(db, rest, -1, &stmt, &tail);
    if (rc == SQLITE_OK && stmt != nullptr) {
      do {
        rc = sqlite3_step(stmt);
      } while (rc == SQLITE_ROW);
      if (rc == SQLITE_DONE) rc = SQLITE_OK;
    }
    if (rc != SQLITE_OK) {
      error = name + ", línea " + std::to_string(line_of(script, offset)) + ": " + sqlite3_errmsg(db);
      sqlite3_finalize(stmt);
      return false;
    }
    sqlite3_finalize(stmt);
    if (tail == nullptr || tail == rest) break;  // only comments were left
    rest = tail;
  }
  return true;
}

bool create_database_from_scripts(const std::filesystem::path& path,
                                  const std::vector<std::filesystem::path>& scripts,
                                  std::string& error) {
  // Read every script before touching the file, so a missing script does not
  // destroy an existing database.
  std::vector<std::string> texts;
  for (const auto& script : scripts) {
    std::string text;
    if (!read_file(script, text)) {
      error = "No se pudo leer el archivo de definición '" + script.string() + "'";
      return false;
    }
    texts.push_back(std::move(text));
  }

  std::error_code ec;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), ec);
  remove_database_files(path);

  sqlite3* db = nullptr;
  if (sqlite3_open_v2(path.string().c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                      nullptr) != SQLITE_OK) {
    error = "No se pudo crear la base de datos '" + path.string() + "': " +
            (db != nullptr ? sqlite3_errmsg(db) : "sin memoria");
    sqlite3_close(db);
    remove_database_files(path);
    return false;
  }

  bool ok = sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!ok) error = std::string("No se pudo iniciar la transacción: ") + sqlite3_errmsg(db);
  for (std::size_t i = 0; ok && i < texts.size(); ++i) {
    ok = run_script(db, texts[i], scripts[i].filename().string(), error);
  }
  if (ok && sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK) {
    error = std::string("No se pudo confirmar la transacción: ") + sqlite3_errmsg(db);
    ok = false;
  }
  if (!ok) {
    error = "No se pudo crear la base de datos '" + path.string() + "': " + error;
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  }
  sqlite3_close(db);
  if (!ok) remove_database_files(path);
  return ok;
}

std::vector<std::filesystem::path> kel_company_scripts(const std::filesystem::path& program_dir) {
  return {program_dir / "schema" / "kel.sql", program_dir / "schema" / "kel_base.sql"};
}

}  // namespace schema
