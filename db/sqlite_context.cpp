// db/sqlite_context.cpp — what the Jet translator asks of a SQLite connection:
// attaching the databases statements name by path, and column lists.
#include <sqlite3.h>

#include <algorithm>

#include "db/error.h"
#include "db/sqlite_messages.h"
#include "db/file_kind.h"
#include "db/source_reader.h"
#include "db/sqlite_connection.h"

namespace db {

namespace {

// Finalizes a statement prepared for a single look-up.
struct StmtGuard {
  sqlite3_stmt* stmt = nullptr;
  ~StmtGuard() { sqlite3_finalize(stmt); }
};

// `path` as a SQLite URI that opens the file read-only: the characters a URI
// gives a meaning to are escaped.
std::string read_only_uri(const std::string& path) {
  std::string uri = "file:";
  for (char c : path) {
    if (c == '%' || c == '?' || c == '#') {
      static const char* const kHex = "0123456789ABCDEF";
      const auto byte = static_cast<unsigned char>(c);
      uri += '%';
      uri += kHex[byte >> 4];
      uri += kHex[byte & 0x0F];
    } else {
      uri += c;
    }
  }
  return uri + "?mode=ro";
}

}  // namespace

std::string SqliteConnection::attach(const std::string& path) {
  if (!db_) throw Error("La conexión no está abierta");
  std::string key = key_of(path);
  // A statement that names the connection's own file reads its own tables.
  if (key == main_key_) return "main";
  if (auto schema = attachments_.use(key, statement_number_)) {
    if (attached_now_) attached_now_->push_back(key);
    refresh_schema(*schema);
    return *schema;
  }

  std::string file = path;
  FileKind kind = file_kind(path);
  // Readers also serve names that are no file at all (an ODBC connection text).
  auto reader = kind == FileKind::kSqlite ? nullptr : find_source_reader(path);
  if (reader) {
    file = reader->sqlite_image(path);
  } else if (kind == FileKind::kAccess || kind == FileKind::kOther) {
    throw Error("No se puede leer la base " + path + ": no es una base SQLite");
  } else if (kind == FileKind::kMissing) {
    throw Error("No se puede leer la base " + path + ": el archivo no existe");
  } else if (kind != FileKind::kSqlite) {
    throw Error("No se puede leer la base " + path + ": " + file_kind_message(kind, path));
  }
  if (!sqlite3_get_autocommit(db_)) {
    throw Error("No se puede abrir la base " + path +
                " dentro de una transacción: una instrucción que la lea debe ejecutarse antes "
                "de iniciar la transacción");
  }

  int limit = sqlite3_limit(db_, SQLITE_LIMIT_ATTACHED, -1);
  while (static_cast<int>(attachments_.size()) >= limit) {
    auto victim = attachments_.least_recently_used(statement_number_);
    if (!victim) {
      throw Error("Una instrucción no puede leer más de " + std::to_string(limit) +
                  " bases de datos a la vez (no se pudo abrir " + path + ")");
    }
    detach(*victim);
  }

  std::string schema = attachments_.next_schema_name();
  // Read-only: a statement reads other databases through `in '<path>'` and
  // never writes them, so a source file or the other company's file can never
  // be changed through an attachment, whatever a format's statement says.
  std::string sql = "ATTACH DATABASE ?1 AS " + schema;
  file = read_only_uri(file);
  StmtGuard guard;
  if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &guard.stmt, nullptr) != SQLITE_OK) {
    throw Error("No se pudo abrir la base " + path + ": " + sqlite_error_in_spanish(db_), {}, sql);
  }
  sqlite3_bind_text(guard.stmt, 1, file.c_str(), -1, SQLITE_TRANSIENT);
  if (sqlite3_step(guard.stmt) != SQLITE_DONE) {
    throw Error("No se pudo abrir la base " + path + ": " + sqlite_error_in_spanish(db_), {}, sql);
  }
  attachments_.add(key, schema, statement_number_);
  if (attached_now_) attached_now_->push_back(key);
  return schema;
}

void SqliteConnection::detach(const std::string& key) {
  std::string schema = attachments_.schema_of(key);
  if (schema.empty()) return;
  // Prepared statements and translations that name the schema would fail
  // after it goes; a later statement attaches the path again.
  statements_.clear();
  for (auto it = translations_.begin(); it != translations_.end();) {
    const auto& keys = it->second.attached_keys;
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) {
      it = translations_.erase(it);
    } else {
      ++it;
    }
  }
  std::string sql = "DETACH DATABASE " + schema;
  char* message = nullptr;
  if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = sqlite_message_in_spanish(sqlite3_extended_errcode(db_),
                                                 message ? message : sqlite3_errmsg(db_));
    sqlite3_free(message);
    throw Error("No se pudo cerrar la base " + key + ": " + text, {}, sql);
  }
  attachments_.remove(key);
}

std::vector<std::string> SqliteConnection::table_columns(const std::string& schema,
                                                         const std::string& table) {
  std::vector<std::string> names;
  if (!db_) return names;
  StmtGuard guard;
  const char* sql = "SELECT name FROM pragma_table_info(?1, ?2)";
  if (sqlite3_prepare_v2(db_, sql, -1, &guard.stmt, nullptr) != SQLITE_OK) return names;
  sqlite3_bind_text(guard.stmt, 1, table.c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_bind_text(guard.stmt, 2, schema.c_str(), -1, SQLITE_TRANSIENT);
  while (sqlite3_step(guard.stmt) == SQLITE_ROW) {
    const unsigned char* name = sqlite3_column_text(guard.stmt, 0);
    names.emplace_back(name ? reinterpret_cast<const char*>(name) : "");
  }
  return names;
}

std::vector<std::pair<std::string, std::string>> SqliteConnection::table_column_types(
    const std::string& schema, const std::string& table) {
  std::vector<std::pair<std::string, std::string>> columns;
  if (!db_) return columns;
  // Asked for every table of every statement translated: the query stays
  // prepared. Without a schema SQLite looks in TEMP first, as an unqualified
  // name does.
  bool main = schema == "main";
  sqlite3_stmt* stmt = statements_.get(db_, main ? "SELECT name, type FROM pragma_table_info(?1)"
                                                 : "SELECT name, type FROM pragma_table_info(?1, ?2)");
  if (!stmt) return columns;
  sqlite3_bind_text(stmt, 1, table.c_str(), -1, SQLITE_TRANSIENT);
  if (!main) sqlite3_bind_text(stmt, 2, schema.c_str(), -1, SQLITE_TRANSIENT);
  while (sqlite3_step(stmt) == SQLITE_ROW) {
    const unsigned char* name = sqlite3_column_text(stmt, 0);
    const unsigned char* type = sqlite3_column_text(stmt, 1);
    columns.emplace_back(name ? reinterpret_cast<const char*>(name) : "",
                         type ? reinterpret_cast<const char*>(type) : "");
  }
  sqlite3_reset(stmt);
  sqlite3_clear_bindings(stmt);
  // The declared collation is part of how the column compares: "TEXT" of a
  // column declared "TEXT COLLATE NOCASE" becomes the whole declaration.
  for (auto& [name, type] : columns) {
    const char* collation = nullptr;
    if (sqlite3_table_column_metadata(db_, main ? nullptr : schema.c_str(), table.c_str(), name.c_str(), nullptr,
                                      &collation, nullptr, nullptr, nullptr) == SQLITE_OK &&
        collation != nullptr && sqlite3_stricmp(collation, "BINARY") != 0) {
      type += std::string(" COLLATE ") + collation;
    }
  }
  return columns;
}

std::vector<std::string> SqliteConnection::select_columns(const std::string& sqlite_select) {
  if (!db_) throw Error("La conexión no está abierta", {}, sqlite_select);
  StmtGuard guard;
  if (sqlite3_prepare_v2(db_, sqlite_select.c_str(), -1, &guard.stmt, nullptr) != SQLITE_OK) {
    throw Error(std::string("La base de datos rechazó la instrucción: ") + sqlite_error_in_spanish(db_),
                {}, sqlite_select);
  }
  std::vector<std::string> names;
  int columns = sqlite3_column_count(guard.stmt);
  for (int i = 0; i < columns; ++i) {
    const char* name = sqlite3_column_name(guard.stmt, i);
    names.emplace_back(name ? name : "");
  }
  return names;
}

}  // namespace db
