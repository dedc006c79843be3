// db/backup.cpp — the safety copy (online backup API) and its restore (copy,
// fsync, rename).
#include "db/backup.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "db/error.h"

namespace db {

namespace fs = std::filesystem;

namespace {

// What an engine result code means to a user, in Spanish.
std::string reason_of(int rc, sqlite3* db) {
  switch (rc & 0xff) {
    case SQLITE_FULL:
      return "no queda espacio en el disco";
    case SQLITE_CANTOPEN:
      return "no se puede crear o abrir el archivo (¿la carpeta es de solo lectura o no existe?)";
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return "la carpeta o el archivo son de solo lectura";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "otro programa tiene la base bloqueada";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "la base está dañada o no es una base de datos";
    case SQLITE_IOERR:
      return "error de lectura o escritura en el disco";
    default:
      return db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  }
}

// What an errno means, in Spanish, for the file operations of the restore.
std::string errno_reason(int error) {
  switch (error) {
    case ENOSPC:
      return "no queda espacio en el disco";
    case EROFS:
    case EACCES:
    case EPERM:
      return "la carpeta o el archivo son de solo lectura";
    case ENOENT:
      return "el archivo no existe";
    default:
      return std::strerror(error);
  }
}

// Closes a handle on every path out.
struct Handle {
  sqlite3* db = nullptr;
  ~Handle() { sqlite3_close_v2(db); }
};

struct Fd {
  int fd = -1;
  ~Fd() {
    if (fd >= 0) ::close(fd);
  }
};

// Flushes the folder's entry of a renamed file, so the rename survives a
// power cut. Best effort: some file systems refuse to sync a folder.
void sync_folder(const fs::path& folder) {
  Fd dir{::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY)};
  if (dir.fd >= 0) ::fsync(dir.fd);
}

// Forces the file's contents to disk; throws on failure.
void sync_file(const std::string& path) {
  Fd f{::open(path.c_str(), O_RDONLY)};
  if (f.fd < 0 || ::fsync(f.fd) != 0)
    throw Error("No se pudo grabar en el disco el archivo " + path + ": " + errno_reason(errno));
}

void remove_quietly(const std::string& path) {
  std::error_code ec;
  fs::remove(path, ec);
}

}  // namespace

void wait_until_writable(const std::string& path, int busy_timeout_ms) {
  Handle h;
  int rc = sqlite3_open_v2(path.c_str(), &h.db, SQLITE_OPEN_READWRITE, nullptr);
  if (rc == SQLITE_OK) {
    sqlite3_busy_timeout(h.db, busy_timeout_ms);
    // BEGIN IMMEDIATE takes the write lock (waiting through the busy
    // handler) without changing anything; the rollback lets it go.
    rc = sqlite3_exec(h.db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) {
      sqlite3_exec(h.db, "ROLLBACK", nullptr, nullptr, nullptr);
      return;
    }
  }
  if ((rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED)
    throw Error("La base " + path + " está bloqueada por otro programa (se esperó " +
                std::to_string(busy_timeout_ms / 1000) +
                " segundos). Cierre el otro programa y vuelva a intentarlo.");
  throw Error("No se puede escribir en la base " + path + ": " + reason_of(rc, h.db));
}

std::string quick_check(const std::string& path) {
  Handle h;
  int rc = sqlite3_open_v2(path.c_str(), &h.db, SQLITE_OPEN_READONLY, nullptr);
  if (rc != SQLITE_OK) return reason_of(rc, h.db);
  sqlite3_busy_timeout(h.db, kBackupBusyTimeoutMs);
  sqlite3_stmt* stmt = nullptr;
  rc = sqlite3_prepare_v2(h.db, "PRAGMA quick_check", -1, &stmt, nullptr);
  if (rc != SQLITE_OK) return reason_of(rc, h.db);
  std::string problem;
  rc = sqlite3_step(stmt);
  if (rc == SQLITE_ROW) {
    const char* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
    if (!text || std::strcmp(text, "ok") != 0) problem = text ? text : "resultado vacío";
  } else {
    problem = reason_of(rc, h.db);
  }
  sqlite3_finalize(stmt);
  return problem;
}

namespace {

// The last steps of every copy: `partial` is verified, flushed to disk and
// renamed to `target_path`, whose folder is flushed too, so that a file under
// a copy's name is always whole. On failure `partial` is removed and the
// error says why after `fail`.
void publish_copy(const std::string& partial, const std::string& target_path, const std::string& fail) {
  const std::string problem = quick_check(partial);
  if (!problem.empty()) {
    remove_quietly(partial);
    throw Error(fail + "la copia no pasó la verificación (" + problem + ")");
  }
  try {
    sync_file(partial);
  } catch (const Error& e) {
    remove_quietly(partial);
    throw Error(fail + e.message());
  }
  if (::rename(partial.c_str(), target_path.c_str()) != 0) {
    const std::string why = errno_reason(errno);
    remove_quietly(partial);
    throw Error(fail + why);
  }
  sync_folder(fs::path(target_path).parent_path());
}

}  // namespace

void backup_database(const std::string& source_path, const std::string& target_path,
                     int busy_timeout_ms) {
  const std::string fail =
      "No se pudo hacer la copia de seguridad de " + source_path + " en " + target_path + ": ";
  std::error_code ec;
  if (fs::exists(target_path, ec)) throw Error(fail + "ya existe un archivo con ese nombre");
  const std::string partial = target_path + ".parcial";
  remove_quietly(partial);  // left by a copy that was interrupted

  {
    Handle source;
    int rc = sqlite3_open_v2(source_path.c_str(), &source.db, SQLITE_OPEN_READONLY, nullptr);
    if (rc != SQLITE_OK) throw Error(fail + reason_of(rc, source.db));
    sqlite3_busy_timeout(source.db, busy_timeout_ms);

    Handle target;
    rc = sqlite3_open_v2(partial.c_str(), &target.db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                         nullptr);
    if (rc != SQLITE_OK) {
      const std::string why = reason_of(rc, target.db);
      remove_quietly(partial);
      throw Error(fail + why);
    }
    // The copy is a fresh file nobody else reads: no journal is needed (a
    // failed copy is deleted), and it is flushed once, whole, below.
    sqlite3_exec(target.db, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;", nullptr, nullptr,
                 nullptr);

    sqlite3_backup* backup = sqlite3_backup_init(target.db, "main", source.db, "main");
    if (!backup) {
      const std::string why = reason_of(sqlite3_errcode(target.db), target.db);
      remove_quietly(partial);
      throw Error(fail + why);
    }
    // All pages in one step: the source's busy handler waits for a writer of
    // another program, and the copy is a single snapshot of the file.
    rc = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (rc != SQLITE_DONE) {
      const std::string why =
          reason_of(rc, rc == SQLITE_BUSY || rc == SQLITE_LOCKED ? source.db : target.db);
      sqlite3_close_v2(target.db);
      target.db = nullptr;
      remove_quietly(partial);
      throw Error(fail + why);
    }
  }

  publish_copy(partial, target_path, fail);
}

namespace {

// `name` as a quoted SQL identifier.
std::string quoted(const std::string& name) {
  std::string q = "\"";
  for (char c : name) q += c == '"' ? std::string("\"\"") : std::string(1, c);
  return q + "\"";
}

// `text` as a SQL string literal.
std::string literal(const std::string& text) {
  std::string q = "'";
  for (char c : text) q += c == '\'' ? std::string("''") : std::string(1, c);
  return q + "'";
}

// Runs `sql` on `db`; throws db::Error(prefix + reason) when refused.
void exec_or_throw(sqlite3* db, const std::string& sql, const std::string& prefix) {
  char* message = nullptr;
  const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message);
  if (rc == SQLITE_OK) return;
  std::string why = reason_of(rc, db);
  if ((rc & 0xff) != SQLITE_FULL && (rc & 0xff) != SQLITE_BUSY && message) why = message;
  sqlite3_free(message);
  throw Error(prefix + why);
}

// The names among `tables` that schema `schema` of `db` has.
std::vector<std::string> existing_tables(sqlite3* db, const std::string& schema,
                                         const std::vector<std::string>& tables) {
  std::vector<std::string> found;
  for (const std::string& table : tables) {
    sqlite3_stmt* st = nullptr;
    const std::string sql = "SELECT 1 FROM " + quoted(schema) +
                            ".sqlite_master WHERE type = 'table' AND name = " + literal(table);
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
      found.push_back(table);
    sqlite3_finalize(st);
  }
  return found;
}

}  // namespace

void backup_tables(const std::string& source_path, const std::vector<std::string>& tables,
                   const std::string& target_path, int busy_timeout_ms) {
  const std::string fail =
      "No se pudo hacer la copia de seguridad de " + source_path + " en " + target_path + ": ";
  std::error_code ec;
  if (fs::exists(target_path, ec)) throw Error(fail + "ya existe un archivo con ese nombre");
  if (!fs::is_regular_file(source_path, ec))
    throw Error(fail + reason_of(SQLITE_CANTOPEN, nullptr));
  const std::string partial = target_path + ".parcial";
  remove_quietly(partial);
  try {
    Handle target;
    int rc = sqlite3_open_v2(partial.c_str(), &target.db,
                             SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK) throw Error(fail + reason_of(rc, target.db));
    sqlite3_busy_timeout(target.db, busy_timeout_ms);
    exec_or_throw(target.db,
                  "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; ATTACH " +
                      literal(source_path) + " AS src",
                  fail);
    // One read transaction over the source: every table from the same moment.
    exec_or_throw(target.db, "BEGIN", fail);
    for (const std::string& table : existing_tables(target.db, "src", tables))
      exec_or_throw(target.db,
                    "CREATE TABLE main." + quoted(table) + " AS SELECT * FROM src." + quoted(table),
                    fail);
    exec_or_throw(target.db, "COMMIT; DETACH src", fail);
  } catch (const Error&) {
    remove_quietly(partial);
    throw;
  }
  publish_copy(partial, target_path, fail);
}

namespace {

// The start of a restore's error messages, once the copy was found and
// passed SQLite's quick check; throws (with that start) when it did not.
std::string checked_copy(const std::string& copy_path, const std::string& target_path) {
  const std::string fail = "No se pudo devolver " + target_path + " desde la copia " + copy_path + ": ";
  std::error_code ec;
  if (!fs::is_regular_file(copy_path, ec)) throw Error(fail + "la copia no existe");
  const std::string problem = quick_check(copy_path);
  if (!problem.empty()) throw Error(fail + "la copia no pasó la verificación (" + problem + ")");
  return fail;
}

}  // namespace

void restore_tables(const std::string& copy_path, const std::string& target_path,
                    int busy_timeout_ms) {
  const std::string fail = checked_copy(copy_path, target_path);
  Handle target;
  int rc = sqlite3_open_v2(target_path.c_str(), &target.db, SQLITE_OPEN_READWRITE, nullptr);
  if (rc != SQLITE_OK) throw Error(fail + reason_of(rc, target.db));
  sqlite3_busy_timeout(target.db, busy_timeout_ms);
  exec_or_throw(target.db, "ATTACH " + literal(copy_path) + " AS cp", fail);
  std::vector<std::string> tables;
  {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(target.db, "SELECT name FROM cp.sqlite_master WHERE type = 'table'", -1,
                           &st, nullptr) == SQLITE_OK)
      while (sqlite3_step(st) == SQLITE_ROW)
        tables.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
  }
  exec_or_throw(target.db, "BEGIN IMMEDIATE", fail);
  try {
    for (const std::string& table : existing_tables(target.db, "main", tables))
      exec_or_throw(target.db,
                    "DELETE FROM main." + quoted(table) + "; INSERT INTO main." + quoted(table) +
                        " SELECT * FROM cp." + quoted(table),
                    fail);
    exec_or_throw(target.db, "COMMIT", fail);
  } catch (const Error&) {
    sqlite3_exec(target.db, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void restore_database(const std::string& copy_path, const std::string& target_path) {
  const std::string fail = checked_copy(copy_path, target_path);

  const std::string temporary = target_path + ".restaurando";
  remove_quietly(temporary);
  {
    Fd in{::open(copy_path.c_str(), O_RDONLY)};
    if (in.fd < 0) throw Error(fail + errno_reason(errno));
    Fd out{::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644)};
    if (out.fd < 0) throw Error(fail + errno_reason(errno));
    char buffer[1 << 16];
    for (;;) {
      const ssize_t n = ::read(in.fd, buffer, sizeof buffer);
      if (n == 0) break;
      if (n < 0) {
        if (errno == EINTR) continue;
        const std::string why = errno_reason(errno);
        remove_quietly(temporary);
        throw Error(fail + why);
      }
      for (ssize_t done = 0; done < n;) {
        const ssize_t w = ::write(out.fd, buffer + done, static_cast<std::size_t>(n - done));
        if (w < 0) {
          if (errno == EINTR) continue;
          const std::string why = errno_reason(errno);
          remove_quietly(temporary);
          throw Error(fail + why);
        }
        done += w;
      }
    }
    if (::fsync(out.fd) != 0) {
      const std::string why = errno_reason(errno);
      remove_quietly(temporary);
      throw Error(fail + why);
    }
  }
  // A journal or WAL beside the target belongs to the file being replaced:
  // the engine would apply it to the restored file. They go before the
  // rename; if the program stops in between, the restore is simply run again.
  std::error_code ec;
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    const std::string side = target_path + suffix;
    if (fs::exists(side, ec) && !fs::remove(side, ec)) {
      remove_quietly(temporary);
      throw Error(fail + "no se pudo borrar " + side + " (" + ec.message() + ")");
    }
  }
  if (::rename(temporary.c_str(), target_path.c_str()) != 0) {
    const std::string why = errno_reason(errno);
    remove_quietly(temporary);
    throw Error(fail + why);
  }
  sync_folder(fs::path(target_path).parent_path());
}

}  // namespace db
