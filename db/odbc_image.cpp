// db/odbc_image.cpp — ODBC tables streamed into a SQLite image.
#include "db/odbc_image.h"

#include <sqlite3.h>

#include <memory>
#include <system_error>

#include "db/error.h"
#include "settings/strings.h"

namespace db {

namespace {

struct SqliteCloser {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};
struct StmtFinalizer {
  void operator()(sqlite3_stmt* st) const { sqlite3_finalize(st); }
};

std::string quoted(const std::string& name, const std::string& quote) {
  std::string out = quote;
  for (char c : name) {
    out += c;
    if (std::string(1, c) == quote) out += c;
  }
  return out + quote;
}

void exec(sqlite3* db, const std::string& sql) {
  char* err = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
    std::string message = err ? err : "";
    sqlite3_free(err);
    throw Error("No se pudo preparar la copia del origen de datos ODBC: " + message, {}, sql);
  }
}

void bind(sqlite3_stmt* st, int param, const Value& value) {
  if (const auto* i = std::get_if<std::int64_t>(&value)) {
    sqlite3_bind_int64(st, param, *i);
  } else if (const auto* d = std::get_if<double>(&value)) {
    sqlite3_bind_double(st, param, *d);
  } else if (const auto* s = std::get_if<std::string>(&value)) {
    sqlite3_bind_text(st, param, s->data(), static_cast<int>(s->size()), SQLITE_TRANSIENT);
  } else {
    sqlite3_bind_null(st, param);
  }
}

}  // namespace

bool is_connection_text(const std::string& text) {
  const std::string t = settings::Trim(text);
  auto eq = t.find('=');
  if (eq == std::string::npos || eq == 0) return false;
  // A path may hold "=", but not before its first separator in a key=value form.
  return t.find('/') == std::string::npos || t.find('/') > eq;
}

std::int64_t write_odbc_image(OdbcConnection& source, const std::vector<std::string>& tables,
                              const std::string& image) {
  std::error_code ec;
  std::filesystem::remove(image, ec);
  sqlite3* raw = nullptr;
  int rc = sqlite3_open_v2(image.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  std::unique_ptr<sqlite3, SqliteCloser> out(raw);
  if (rc != SQLITE_OK) throw Error("No se puede crear la copia del origen de datos ODBC en " + image);
  // A throw-away file: no journal, no waiting for the disk, one transaction.
  exec(raw, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN;");
  const std::string quote = source.identifier_quote();
  std::int64_t rows = 0;
  for (const std::string& table : tables) {
    std::unique_ptr<sqlite3_stmt, StmtFinalizer> insert;
    try {
      source.stream(
          "SELECT * FROM " + quoted(table, quote),
          [&](const std::vector<std::string>& columns) {
            std::string create = "CREATE TABLE " + quoted(table, "\"") + " (";
            std::string values;
            for (std::size_t i = 0; i < columns.size(); ++i) {
              create += (i ? ", " : "") + quoted(columns[i], "\"") + " COLLATE NOCASE";
              values += i ? ",?" : "?";
            }
            exec(raw, create + ")");
            sqlite3_stmt* st = nullptr;
            const std::string sql = "INSERT INTO " + quoted(table, "\"") + " VALUES (" + values + ")";
            if (sqlite3_prepare_v2(raw, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
              throw Error(std::string("No se pudo preparar la copia: ") + sqlite3_errmsg(raw), {}, sql);
            insert.reset(st);
          },
          [&](const std::vector<Value>& row) {
            for (std::size_t i = 0; i < row.size(); ++i) bind(insert.get(), static_cast<int>(i + 1), row[i]);
            if (sqlite3_step(insert.get()) != SQLITE_DONE)
              throw Error(std::string("No se pudo copiar una fila: ") + sqlite3_errmsg(raw));
            sqlite3_reset(insert.get());
            ++rows;
          });
    } catch (const Error& e) {
      throw Error("No se pudo leer la tabla " + table + " del origen de datos ODBC: " + e.message(),
                  e.jet_text());
    }
  }
  exec(raw, "COMMIT;");
  return rows;
}

OdbcImageReader::OdbcImageReader(std::string connection_text, OdbcConnection& source,
                                 std::vector<std::string> tables, std::filesystem::path cache_folder)
    : connection_text_(settings::Trim(connection_text)),
      source_(source),
      tables_(std::move(tables)),
      cache_folder_(std::move(cache_folder)) {}

bool OdbcImageReader::can_read(const std::string& path) const {
  return settings::IEquals(settings::Trim(path), connection_text_);
}

std::string OdbcImageReader::sqlite_image(const std::string&) {
  std::error_code ec;
  std::filesystem::create_directories(cache_folder_, ec);
  const std::string image = (cache_folder_ / "origen-odbc.db").string();
  rows_ = write_odbc_image(source_, tables_, image);
  return image;
}

std::shared_ptr<SourceReader> odbc_image_reader(std::string connection_text, Connection& source,
                                                std::vector<std::string> tables, std::filesystem::path cache_folder) {
  auto* odbc = dynamic_cast<OdbcConnection*>(&source);
  if (!odbc) return nullptr;
  return std::make_shared<OdbcImageReader>(std::move(connection_text), *odbc, std::move(tables),
                                           std::move(cache_folder));
}

}  // namespace db
