// demo/sqlite_writer.cpp — SQLite writer of the demo generator.
#include "demo/sqlite_writer.h"

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <variant>

namespace demo {

namespace {

std::string lower(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

std::string sql_name(std::string_view name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

}  // namespace

std::string read_text_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("No se puede leer el archivo '" + path + "'");
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

SqliteWriter::SqliteWriter(const std::string& path, const std::vector<std::string>& scripts,
                           const std::vector<std::string>& statements)
    : path_(path), work_path_(path + ".tmp") {
  // Scripts are read before anything is touched, and the database is built
  // beside its final name: an existing file is replaced only by a complete one.
  std::vector<std::string> names = scripts;
  std::vector<std::string> texts;
  for (const std::string& script : scripts) texts.push_back(read_text_file(script));
  for (const std::string& statement : statements) {
    names.push_back(statement);
    texts.push_back(statement);
  }
  std::error_code ec;
  std::filesystem::remove(work_path_, ec);
  if (sqlite3_open_v2(work_path_.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
    std::string msg = db_ ? sqlite3_errmsg(db_) : "sin memoria";
    sqlite3_close(db_);
    db_ = nullptr;
    throw std::runtime_error("No se puede crear la base de datos '" + path + "': " + msg);
  }
  try {
    prepare(names, texts);
  } catch (...) {
    sqlite3_close(db_);
    db_ = nullptr;
    std::filesystem::remove(work_path_, ec);
    throw;
  }
}

void SqliteWriter::prepare(const std::vector<std::string>& scripts, const std::vector<std::string>& texts) {
  exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-65536; "
       "PRAGMA threads=2",
       "preparar la base");
  for (std::size_t i = 0; i < scripts.size(); ++i) exec(texts[i], "ejecutar el script '" + scripts[i] + "'");
  // Indexes are built once the rows are in: one sorted pass is far cheaper
  // than keeping them up to date row by row.
  {
    sqlite3_stmt* list = nullptr;
    if (sqlite3_prepare_v2(db_, "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL ORDER BY rowid",
                           -1, &list, nullptr) != SQLITE_OK) {
      fail("leer los índices");
    }
    while (sqlite3_step(list) == SQLITE_ROW) {
      deferred_indexes_.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(list, 0)),
                                     reinterpret_cast<const char*>(sqlite3_column_text(list, 1)));
    }
    sqlite3_finalize(list);
    for (const auto& index : deferred_indexes_) exec("DROP INDEX " + sql_name(index.first), "preparar los índices");
  }
  exec("BEGIN", "iniciar la transacción");
}

SqliteWriter::~SqliteWriter() {
  for (Target& t : targets_) sqlite3_finalize(t.stmt);
  if (db_) sqlite3_close(db_);
  if (!finished_) {
    std::error_code ec;
    std::filesystem::remove(work_path_, ec);
  }
}

void SqliteWriter::exec(const std::string& sql, const std::string& what) {
  char* err = nullptr;
  if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
    std::string msg = err ? err : sqlite3_errmsg(db_);
    sqlite3_free(err);
    throw std::runtime_error("Error al " + what + " en '" + path_ + "': " + msg);
  }
}

void SqliteWriter::fail(const std::string& what) {
  throw std::runtime_error("Error al " + what + " en '" + path_ + "': " + sqlite3_errmsg(db_));
}

int SqliteWriter::declare_table(std::string_view table, const std::vector<std::string>& columns) {
  // The schema's own spelling of each column, by lower-case name.
  std::map<std::string, std::string> existing;
  std::string schema_table(table);
  {
    sqlite3_stmt* info = nullptr;
    const std::string sql = "PRAGMA table_info(" + sql_name(table) + ")";
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &info, nullptr) != SQLITE_OK) fail("leer la tabla " + schema_table);
    while (sqlite3_step(info) == SQLITE_ROW) {
      const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(info, 1));
      if (name) existing.emplace(lower(name), name);
    }
    sqlite3_finalize(info);
  }

  Target target;
  target.table = schema_table;
  target.params.assign(columns.size(), 0);
  if (existing.empty()) {
    missing_tables_.insert(schema_table);
  } else {
    std::string names, marks;
    int bound = 0;
    std::set<std::string> used;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      auto it = existing.find(lower(columns[i]));
      if (it == existing.end()) {
        missing_columns_.insert(schema_table + "." + columns[i]);
        continue;
      }
      if (!used.insert(it->first).second) continue;  // declared twice: first wins
      if (bound) { names += ", "; marks += ", "; }
      names += sql_name(it->second);
      marks += "?";
      target.params[i] = ++bound;
    }
    const std::string sql = "INSERT INTO " + sql_name(table) + " (" + names + ") VALUES (" + marks + ")";
    if (bound == 0 || sqlite3_prepare_v2(db_, sql.c_str(), -1, &target.stmt, nullptr) != SQLITE_OK) {
      if (bound == 0) throw std::runtime_error("La tabla " + schema_table + " no tiene ninguna de las columnas de la demostración");
      fail("preparar la inserción en " + schema_table);
    }
  }
  target.count = &counts_[schema_table];
  targets_.push_back(std::move(target));
  return static_cast<int>(targets_.size()) - 1;
}

void SqliteWriter::add_row(int table, std::span<const Value> values) {
  Target& t = targets_.at(static_cast<std::size_t>(table));
  if (!t.stmt) return;
  if (values.size() != t.params.size()) {
    throw std::runtime_error("Fila de " + t.table + " con " + std::to_string(values.size()) + " valores; se esperaban " +
                             std::to_string(t.params.size()));
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int p = t.params[i];
    if (p == 0) continue;
    const Value& v = values[i];
    int rc = SQLITE_OK;
    if (const auto* n = std::get_if<std::int64_t>(&v)) {
      rc = sqlite3_bind_int64(t.stmt, p, *n);
    } else if (const auto* d = std::get_if<double>(&v)) {
      rc = sqlite3_bind_double(t.stmt, p, *d);
    } else if (const auto* s = std::get_if<std::string>(&v)) {
      rc = sqlite3_bind_text(t.stmt, p, s->data(), static_cast<int>(s->size()), SQLITE_STATIC);
    } else {
      rc = sqlite3_bind_null(t.stmt, p);
    }
    if (rc != SQLITE_OK) fail("preparar una fila de " + t.table);
  }
  const int rc = sqlite3_step(t.stmt);
  sqlite3_reset(t.stmt);
  if (rc != SQLITE_DONE) fail("insertar en " + t.table);
  ++*t.count;
}

void SqliteWriter::finish() {
  if (finished_) return;
  for (Target& t : targets_) {
    sqlite3_finalize(t.stmt);
    t.stmt = nullptr;
  }
  for (const auto& index : deferred_indexes_) exec(index.second, "crear el índice " + index.first);
  exec("COMMIT", "confirmar los datos");
  if (sqlite3_close(db_) != SQLITE_OK) fail("cerrar la base");
  db_ = nullptr;
  std::error_code ec;
  std::filesystem::rename(work_path_, path_, ec);
  if (ec) throw std::runtime_error("No se puede reemplazar '" + path_ + "': " + ec.message());
  finished_ = true;
}

}  // namespace demo
