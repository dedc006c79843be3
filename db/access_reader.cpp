// db/access_reader.cpp — Access files copied through libmdb into SQLite images.
#include "db/access_reader.h"

#include <mdbtools.h>
#include <sqlite3.h>

#include <bit>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "db/access_date.h"
#include "db/error.h"
#include "db/file_kind.h"

namespace db {

static_assert(std::endian::native == std::endian::little, "Access files store numbers little-endian");

namespace {

struct MdbCloser {
  void operator()(MdbHandle* mdb) const { mdb_close(mdb); }
};
struct TableFreer {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
struct SqliteCloser {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};
struct StmtFinalizer {
  void operator()(sqlite3_stmt* st) const { sqlite3_finalize(st); }
};
using SqlitePtr = std::unique_ptr<sqlite3, SqliteCloser>;
using StmtPtr = std::unique_ptr<sqlite3_stmt, StmtFinalizer>;

std::string quoted(const std::string& name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

// The column types libmdb cannot give as values; their name for the report,
// or nullptr for a type that is read.
const char* unreadable_type(int type) {
  switch (type) {
    case MDB_BOOL: case MDB_BYTE: case MDB_INT: case MDB_LONGINT: case MDB_MONEY: case MDB_FLOAT:
    case MDB_DOUBLE: case MDB_DATETIME: case MDB_BINARY: case MDB_TEXT: case MDB_MEMO:
    case MDB_REPID: case MDB_NUMERIC:
      return nullptr;
    case MDB_OLE:
      return "objeto OLE";
    case MDB_COMPLEX:
      return "adjunto o campo de varios valores";
    default:
      return "tipo desconocido";
  }
}

const char* declared_type(int type) {
  switch (type) {
    case MDB_BOOL: case MDB_BYTE: case MDB_INT: case MDB_LONGINT:
      return "INTEGER";
    case MDB_MONEY: case MDB_FLOAT: case MDB_DOUBLE: case MDB_NUMERIC:
      return "REAL";
    case MDB_BINARY:
      return "BLOB";
    default:  // text, memo, dates (ISO texts), replication ids
      return "TEXT COLLATE NOCASE";
  }
}

template <typename T>
T read_le(const unsigned char* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

std::string unreadable_message(const std::string& path, const std::string& why) {
  return "No se puede leer el archivo de Access " + path + ": " + why;
}

// Copies the rows of one Access table into the prepared insert. `columns` are
// the indexes of the columns kept, in the insert's order.
std::int64_t copy_rows(MdbHandle* mdb, MdbTableDef* table, const std::vector<unsigned>& columns,
                       sqlite3* out, sqlite3_stmt* insert, const std::string& source) {
  std::vector<char> text(1024);
  std::int64_t rows = 0;
  const size_t default_bind = mdb->bind_size;
  while (mdb_fetch_row(table)) {
    int param = 0;
    for (unsigned index : columns) {
      auto* col = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, index));
      ++param;
      const int len = col->cur_value_len;
      const unsigned char* p = mdb->pg_buf + col->cur_value_start;
      if (col->col_type == MDB_BOOL) {
        // A Yes/No lives in the row's null mask: "not null" is Yes.
        sqlite3_bind_int(insert, param, len == 0 ? -1 : 0);
        continue;
      }
      if (len == 0) {
        sqlite3_bind_null(insert, param);
        continue;
      }
      switch (col->col_type) {
        case MDB_BYTE:
          sqlite3_bind_int(insert, param, p[0]);
          break;
        case MDB_INT:
          sqlite3_bind_int(insert, param, read_le<std::int16_t>(p));
          break;
        case MDB_LONGINT:
          sqlite3_bind_int64(insert, param, read_le<std::int32_t>(p));
          break;
        case MDB_FLOAT:
          sqlite3_bind_double(insert, param, read_le<float>(p));
          break;
        case MDB_DOUBLE:
          sqlite3_bind_double(insert, param, read_le<double>(p));
          break;
        case MDB_MONEY:
          // Ten-thousandths in 64 bits; one division gives the double
          // nearest to the exact amount.
          sqlite3_bind_double(insert, param, static_cast<double>(read_le<std::int64_t>(p)) / 10000.0);
          break;
        case MDB_DATETIME: {
          auto date = access_date_text(read_le<double>(p));
          if (date) {
            sqlite3_bind_text(insert, param, date->data(), static_cast<int>(date->size()), SQLITE_TRANSIENT);
          } else {
            sqlite3_bind_null(insert, param);
          }
          break;
        }
        case MDB_TEXT: {
          // At most 255 characters; UTF-8 needs up to 3 bytes for each.
          const size_t room = static_cast<size_t>(len) * 3 + 16;
          if (text.size() < room) text.resize(room);
          int n = mdb_unicode2ascii(mdb, reinterpret_cast<const char*>(p), static_cast<size_t>(len),
                                    text.data(), text.size());
          sqlite3_bind_text(insert, param, text.data(), n, SQLITE_TRANSIENT);
          break;
        }
        case MDB_MEMO: {
          // libmdb writes memo text into a buffer of its bind size: raise it
          // to what this value can take in UTF-8, so nothing is cut.
          const auto stored = static_cast<size_t>(read_le<std::uint32_t>(p) & 0x3fffffffu);
          const size_t room = stored * 3 + 16;
          if (room > default_bind) mdb_set_bind_size(mdb, room);
          char* value = mdb_col_to_string(mdb, mdb->pg_buf, col->cur_value_start, MDB_MEMO, len);
          if (room > default_bind) mdb_set_bind_size(mdb, default_bind);
          if (value) {
            sqlite3_bind_text(insert, param, value, -1, SQLITE_TRANSIENT);
            g_free(value);
          } else {
            sqlite3_bind_null(insert, param);
          }
          break;
        }
        case MDB_NUMERIC: {
          char* value = mdb_numeric_to_string(mdb, col->cur_value_start, col->col_scale, col->col_prec);
          double number = 0;
          if (value && std::from_chars(value, value + std::strlen(value), number).ec == std::errc()) {
            sqlite3_bind_double(insert, param, number);
          } else {
            sqlite3_bind_null(insert, param);
          }
          g_free(value);
          break;
        }
        case MDB_REPID: {
          char* value = mdb_uuid_to_string(mdb->pg_buf, col->cur_value_start);
          sqlite3_bind_text(insert, param, value, -1, SQLITE_TRANSIENT);
          g_free(value);
          break;
        }
        case MDB_BINARY:
          sqlite3_bind_blob(insert, param, p, len, SQLITE_TRANSIENT);
          break;
        default:
          sqlite3_bind_null(insert, param);
          break;
      }
    }
    if (sqlite3_step(insert) != SQLITE_DONE) {
      throw Error("No se pudo copiar la tabla " + std::string(table->name) + " del archivo de Access " +
                  source + ": " + sqlite3_errmsg(out));
    }
    sqlite3_reset(insert);
    ++rows;
  }
  return rows;
}

void exec(sqlite3* db, const std::string& sql, const std::string& source) {
  char* err = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
    std::string message = err ? err : "";
    sqlite3_free(err);
    throw Error("No se pudo preparar la copia del archivo de Access " + source + ": " + message, {}, sql);
  }
}

StmtPtr prepare(sqlite3* db, const std::string& sql, const std::string& source) {
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK) {
    throw Error("No se pudo preparar la copia del archivo de Access " + source + ": " + sqlite3_errmsg(db),
                {}, sql);
  }
  return StmtPtr(st);
}

// Size and modification time of the source, which decide whether its image
// is still current.
struct Stamp {
  std::int64_t size = -1;
  std::int64_t modified = 0;
};

Stamp stamp_of(const std::string& path) {
  std::error_code ec;
  Stamp stamp;
  auto size = std::filesystem::file_size(path, ec);
  if (ec) return stamp;
  auto time = std::filesystem::last_write_time(path, ec);
  if (ec) return stamp;
  stamp.size = static_cast<std::int64_t>(size);
  stamp.modified = static_cast<std::int64_t>(time.time_since_epoch().count());
  return stamp;
}

// True when `image` holds a copy of `source` made when it had `stamp`.
bool image_is_current(const std::string& image, const std::string& source, const Stamp& stamp) {
  std::error_code ec;
  if (!std::filesystem::exists(image, ec)) return false;
  sqlite3* raw = nullptr;
  int rc = sqlite3_open_v2(image.c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
  SqlitePtr db(raw);
  if (rc != SQLITE_OK) return false;
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(raw, "SELECT Ruta, Tamano, Modificado FROM KelOrigen", -1, &st, nullptr) != SQLITE_OK)
    return false;
  StmtPtr guard(st);
  if (sqlite3_step(st) != SQLITE_ROW) return false;
  const auto* ruta = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
  return ruta && source == ruta && sqlite3_column_int64(st, 1) == stamp.size &&
         sqlite3_column_int64(st, 2) == stamp.modified;
}

std::uint64_t fnv1a(const std::string& text) {
  std::uint64_t hash = 14695981039346656037ull;
  for (unsigned char c : text) {
    hash ^= c;
    hash *= 1099511628211ull;
  }
  return hash;
}

}  // namespace

AccessImageReport write_access_image(const std::string& source, const std::string& image) {
  if (file_kind(source) != FileKind::kAccess) {
    throw Error(unreadable_message(source, "no es una base de datos de Access"));
  }
  // Text comes out in UTF-8, and Jet 3 files (which carry no code page libmdb
  // reads) are taken as Windows-1252, whatever the environment says.
  setenv("MDBICONV", "UTF-8", 1);
  setenv("MDB_JET3_CHARSET", "CP1252", 1);
  std::unique_ptr<MdbHandle, MdbCloser> mdb(mdb_open(source.c_str(), MDB_NOFLAGS));
  if (!mdb) throw Error(unreadable_message(source, "libmdb no lo puede abrir (¿archivo dañado?)"));
  if (!mdb_read_catalog(mdb.get(), MDB_TABLE)) {
    throw Error(unreadable_message(source,
                                   "está cifrado con una contraseña o dañado; quite la contraseña en "
                                   "Access y vuelva a intentarlo"));
  }

  std::error_code ec;
  std::filesystem::remove(image, ec);
  sqlite3* raw = nullptr;
  int rc = sqlite3_open_v2(image.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  SqlitePtr out(raw);
  if (rc != SQLITE_OK) {
    throw Error("No se puede crear la copia del archivo de Access " + source + " en " + image + ": " +
                (raw ? sqlite3_errmsg(raw) : "sin memoria"));
  }
  // A throw-away file: no journal, no waiting for the disk.
  exec(raw, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN;", source);
  exec(raw, "CREATE TABLE KelColumnasOmitidas (Tabla TEXT, Columna TEXT, Tipo TEXT);", source);
  StmtPtr omitted = prepare(raw, "INSERT INTO KelColumnasOmitidas VALUES (?1, ?2, ?3)", source);

  AccessImageReport report;
  for (unsigned i = 0; i < mdb->num_catalog; ++i) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
    if (!mdb_is_user_table(entry)) continue;
    std::unique_ptr<MdbTableDef, TableFreer> table(mdb_read_table(entry));
    if (!table || !mdb_read_columns(table.get())) {
      throw Error(unreadable_message(source, std::string("la tabla ") + entry->object_name +
                                                 " está dañada o cifrada"));
    }
    mdb_rewind_table(table.get());
    const std::string name = table->name;
    std::vector<unsigned> kept;
    std::string create = "CREATE TABLE " + quoted(name) + " (";
    for (unsigned j = 0; j < table->num_cols; ++j) {
      auto* col = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, j));
      if (const char* why = unreadable_type(col->col_type)) {
        report.omitted.push_back(name + "." + col->name + " (" + why + ")");
        sqlite3_bind_text(omitted.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(omitted.get(), 2, col->name, -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(omitted.get(), 3, why, -1, SQLITE_STATIC);
        sqlite3_step(omitted.get());
        sqlite3_reset(omitted.get());
        continue;
      }
      create += (kept.empty() ? "" : ", ") + quoted(col->name) + " " + declared_type(col->col_type);
      kept.push_back(j);
    }
    if (kept.empty()) continue;
    exec(raw, create + ")", source);
    std::string insert_sql = "INSERT INTO " + quoted(name) + " VALUES (";
    for (std::size_t k = 0; k < kept.size(); ++k) insert_sql += k ? ",?" : "?";
    StmtPtr insert = prepare(raw, insert_sql + ")", source);
    report.rows += copy_rows(mdb.get(), table.get(), kept, raw, insert.get(), source);
    ++report.tables;
  }
  exec(raw, "COMMIT;", source);
  return report;
}

AccessReader::AccessReader(std::filesystem::path cache_folder) : cache_folder_(std::move(cache_folder)) {}

void AccessReader::set_cache_folder(std::filesystem::path folder) {
  std::lock_guard lock(mutex_);
  cache_folder_ = std::move(folder);
}

bool AccessReader::can_read(const std::string& path) const { return file_kind(path) == FileKind::kAccess; }

std::filesystem::path AccessReader::image_path(const std::string& source) const {
  std::filesystem::path folder = cache_folder_;
  if (folder.empty()) folder = std::filesystem::temp_directory_path() / "kelimport-access";
  char hash[17];
  std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(fnv1a(source)));
  return folder / (std::filesystem::path(source).stem().string() + "-" + hash + ".origen.db");
}

std::string AccessReader::sqlite_image(const std::string& path) {
  std::lock_guard lock(mutex_);
  std::error_code ec;
  std::string source = std::filesystem::absolute(path, ec).lexically_normal().string();
  if (ec) source = path;
  const std::string image = image_path(source).string();
  const Stamp stamp = stamp_of(source);
  if (image_is_current(image, source, stamp)) return image;

  std::filesystem::create_directories(std::filesystem::path(image).parent_path(), ec);
  // Made under another name and renamed, so that a half-made image is never
  // taken for a current one.
  const std::string partial = image + ".parcial";
  try {
    last_report_ = write_access_image(source, partial);
    SqlitePtr db;
    sqlite3* raw = nullptr;
    if (sqlite3_open_v2(partial.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
      db.reset(raw);
      exec(raw, "CREATE TABLE KelOrigen (Ruta TEXT, Tamano INTEGER, Modificado INTEGER);", source);
      StmtPtr st = prepare(raw, "INSERT INTO KelOrigen VALUES (?1, ?2, ?3)", source);
      sqlite3_bind_text(st.get(), 1, source.c_str(), -1, SQLITE_TRANSIENT);
      sqlite3_bind_int64(st.get(), 2, stamp.size);
      sqlite3_bind_int64(st.get(), 3, stamp.modified);
      sqlite3_step(st.get());
    } else {
      sqlite3_close(raw);
    }
  } catch (...) {
    std::filesystem::remove(partial, ec);
    throw;
  }
  std::filesystem::rename(partial, image, ec);
  if (ec) {
    std::filesystem::remove(partial, ec);
    throw Error("No se puede guardar la copia del archivo de Access " + source + " en " + image);
  }
  return image;
}

AccessImageReport AccessReader::last_report() const {
  std::lock_guard lock(mutex_);
  return last_report_;
}

void use_access_reader(const std::filesystem::path& cache_folder) {
  static std::shared_ptr<AccessReader> reader;
  if (!reader) reader = std::make_shared<AccessReader>(cache_folder);
  reader->set_cache_folder(cache_folder);
  if (!has_source_reader(reader)) register_source_reader(reader);
}

}  // namespace db
