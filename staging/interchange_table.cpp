// staging/interchange_table.cpp — a data file as a TEMP virtual table: the
// module's callbacks, the column plan and the scans' reports.
#include "staging/interchange_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_set>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "settings/strings.h"
#include "staging/interchange_convert.h"
#include "staging/interchange_prefetch.h"
#include "staging/interchange_stream.h"

namespace staging {

namespace {

// Detailed messages per file before the rest are only counted.
constexpr int kDetailedWarnings = 10;

// The module's name in the connection.
constexpr const char* kModuleName = "kel_intercambio";

// Where each table column's value comes from: its name and type in the
// table, and the index of its field in a record (-1: none, Null).
using ColumnPlan = PrefetchColumn;

const char* SqlType(settings::ColumnType type) {
  switch (type) {
    case settings::ColumnType::Integer:
      return "INTEGER";
    case settings::ColumnType::Real:
      return "REAL";
    case settings::ColumnType::Date:
      return "TEXT";
    case settings::ColumnType::Text:
      break;
  }
  return "TEXT COLLATE NOCASE";
}

// The table's columns and where their values are, from the layout and the
// header line (when there is one). Adds notes for columns the two disagree on.
std::vector<ColumnPlan> PlanColumns(const settings::DataFileLayout& layout,
                                    const std::vector<std::string_view>* header,
                                    const std::string& file_name, std::vector<std::string>& warnings) {
  std::vector<ColumnPlan> plan;
  if (!header) {
    for (std::size_t i = 0; i < layout.columns.size(); ++i) plan.push_back({layout.columns[i], static_cast<int>(i)});
    return plan;
  }
  if (layout.columns.empty()) {
    for (std::size_t i = 0; i < header->size(); ++i) {
      settings::DataColumn column;
      column.name = settings::Trim((*header)[i]);
      if (column.name.empty()) column.name = "Columna" + std::to_string(i + 1);
      bool repeated = false;
      for (const auto& p : plan) repeated = repeated || settings::IEquals(p.column.name, column.name);
      if (repeated) {
        warnings.push_back(file_name + ": la columna " + column.name +
                           " aparece dos veces en el encabezado; se toma la primera");
        continue;
      }
      plan.push_back({column, static_cast<int>(i)});
    }
    return plan;
  }
  std::vector<bool> used(header->size(), false);
  std::string missing;
  for (const auto& column : layout.columns) {
    int found = -1;
    for (std::size_t i = 0; i < header->size(); ++i) {
      if (!used[i] && settings::IEquals(settings::Trim((*header)[i]), column.name)) {
        found = static_cast<int>(i);
        used[i] = true;
        break;
      }
    }
    if (found < 0) missing += (missing.empty() ? "" : ", ") + column.name;
    plan.push_back({column, found});
  }
  std::string extra;
  for (std::size_t i = 0; i < header->size(); ++i) {
    if (!used[i]) extra += (extra.empty() ? "" : ", ") + settings::Trim((*header)[i]);
  }
  if (!missing.empty()) warnings.push_back(file_name + ": el archivo no trae las columnas " + missing + " (quedan vacías)");
  if (!extra.empty()) warnings.push_back(file_name + ": se ignoran las columnas " + extra + ", que el formato no usa");
  return plan;
}

// What one scan of the file found.
struct ScanReport {
  std::int64_t rows = 0;
  std::int64_t bad_values = 0;
  std::vector<std::string> warnings;
};

}  // namespace

// Everything a scan needs, shared by the table, its cursors and the DataTable.
struct DataTableSource {
  std::filesystem::path file;
  std::string name;  // the file name, for messages
  settings::DataFileLayout layout;
  DataFileEncoding encoding;
  std::vector<ColumnPlan> plan;
  std::size_t declared_fields = 0;  // fields a record should have (0: not checked)
  std::vector<std::string> open_warnings;
  std::vector<std::string> open_notes;  // what the header and the layout disagree on (nothing lost)
  std::optional<ScanReport> complete;  // the first scan that read the whole file
  // Lines set aside by the load (deleted from the table): the file is never
  // written, every later scan passes over them.
  std::unordered_set<std::int64_t> removed_lines;
  std::int64_t estimated_rows = 1;
  // Column (index into plan) whose empty value stops a scan; -1: none
  // (DataTable::StopScansOnEmpty).
  int stop_on_empty = -1;
};

namespace {

// Sources by the key their CREATE VIRTUAL TABLE names, from OpenDataTable
// until Close. SQLite may connect to a table again (after a schema reset), so
// the table finds its source by the key it was created with.
std::mutex registry_mutex;
std::map<std::string, std::shared_ptr<DataTableSource>> registry;
std::uint64_t registry_counter = 0;

std::shared_ptr<DataTableSource> FindSource(const std::string& key) {
  std::lock_guard lock(registry_mutex);
  auto it = registry.find(key);
  return it == registry.end() ? nullptr : it->second;
}

struct VTab : sqlite3_vtab {
  std::shared_ptr<DataTableSource> source;
};

struct Cursor : sqlite3_vtab_cursor {
  std::shared_ptr<DataTableSource> source;
  // Reads and converts the file on its own thread while SQLite stores the
  // rows already read.
  std::unique_ptr<PrefetchReader> reader;
  std::int64_t line = 0;
  bool eof = true;
  ScanReport report;
  int detailed = 0;
  std::int64_t short_records = 0, long_records = 0;
  std::size_t first_short = 0, first_long = 0;
};

int SetError(sqlite3_vtab* vtab, const std::string& message) {
  sqlite3_free(vtab->zErrMsg);
  vtab->zErrMsg = sqlite3_mprintf("%s", message.c_str());
  return SQLITE_ERROR;
}

int Connect(sqlite3* db, void*, int argc, const char* const* argv, sqlite3_vtab** out, char** error) {
  std::shared_ptr<DataTableSource> source = argc > 3 ? FindSource(argv[3]) : nullptr;
  if (!source) {
    *error = sqlite3_mprintf("la tabla de un archivo de datos solo existe mientras se carga su entrada");
    return SQLITE_ERROR;
  }
  std::string schema = "CREATE TABLE x(";
  for (std::size_t i = 0; i < source->plan.size(); ++i) {
    schema += (i ? ", " : "") + QuoteIdentifier(source->plan[i].column.name) + " " + SqlType(source->plan[i].column.type);
  }
  schema += std::string(", ") + kLineColumn + " INTEGER HIDDEN)";
  int rc = sqlite3_declare_vtab(db, schema.c_str());
  if (rc != SQLITE_OK) {
    *error = sqlite3_mprintf("%s", sqlite3_errmsg(db));
    return rc;
  }
  auto* vtab = new VTab();
  vtab->source = std::move(source);
  *out = vtab;
  return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* vtab) {
  delete static_cast<VTab*>(vtab);
  return SQLITE_OK;
}

int BestIndex(sqlite3_vtab* vtab, sqlite3_index_info* info) {
  // Only whole scans: the file has no index. Its size makes the planner put
  // it in the outer loop of a join, so that it is read once.
  const auto rows = static_cast<VTab*>(vtab)->source->estimated_rows;
  info->estimatedRows = rows;
  info->estimatedCost = static_cast<double>(rows) * 10.0;
  return SQLITE_OK;
}

int Open(sqlite3_vtab* vtab, sqlite3_vtab_cursor** out) {
  auto* cursor = new Cursor();
  cursor->source = static_cast<VTab*>(vtab)->source;
  *out = cursor;
  return SQLITE_OK;
}

// The end of a scan: its counted problems, and the report kept when it is
// the first scan to read the whole file.
void FinishScan(Cursor& c) {
  DataTableSource& s = *c.source;
  if (c.detailed > kDetailedWarnings) {
    c.report.warnings.push_back(s.name + ": " + std::to_string(c.detailed - kDetailedWarnings) +
                                " valores más no se pudieron convertir y quedan vacíos");
  }
  if (c.short_records) {
    c.report.warnings.push_back(s.name + ": " + std::to_string(c.short_records) +
                                " líneas traen menos campos que columnas (la primera, la línea " +
                                std::to_string(c.first_short) + "); los campos que faltan quedan vacíos");
  }
  if (c.long_records) {
    c.report.warnings.push_back(s.name + ": " + std::to_string(c.long_records) +
                                " líneas traen más campos que columnas (la primera, la línea " +
                                std::to_string(c.first_long) + "); los campos de más se ignoran");
  }
  if (!s.complete) s.complete = std::move(c.report);
}

int Next(sqlite3_vtab_cursor* base) {
  auto& c = *static_cast<Cursor*>(base);
  DataTableSource& s = *c.source;
  const PrefetchedRecord* r = nullptr;
  do {
    r = c.reader->next();
    if (!r) {
      c.eof = true;
      if (!c.reader->error().empty()) return SetError(base->pVtab, c.reader->error());
      FinishScan(c);
      return SQLITE_OK;
    }
  } while (!s.removed_lines.empty() && s.removed_lines.count(r->line) != 0);
  c.line = r->line;
  const auto line = static_cast<std::size_t>(r->line);
  if (s.stop_on_empty >= 0) {
    const PrefetchedValue& key = c.reader->value(static_cast<std::size_t>(s.stop_on_empty));
    if (key.kind == FieldValue::Kind::Null || (key.kind == FieldValue::Kind::Text && key.text_size == 0)) {
      c.eof = true;
      return SetError(base->pVtab, s.name + ", línea " + std::to_string(line) + ": " +
                                       s.plan[static_cast<std::size_t>(s.stop_on_empty)].column.name + " vacío");
    }
  }
  ++c.report.rows;
  if (r->unterminated_quote) {
    c.report.warnings.push_back(s.name + ", línea " + std::to_string(line) +
                                ": las comillas no se cierran antes del fin del archivo");
  }
  if (s.declared_fields > 0) {
    if (r->field_count < s.declared_fields && c.short_records++ == 0) c.first_short = line;
    if (r->field_count > s.declared_fields && c.long_records++ == 0) c.first_long = line;
  }
  for (std::uint32_t i = 0; i < r->bad_count; ++i) {
    const PrefetchedBadField& bad = c.reader->bad_field(i);
    ++c.report.bad_values;
    if (c.detailed++ < kDetailedWarnings) {
      const settings::DataColumn& column = s.plan[bad.column].column;
      c.report.warnings.push_back(s.name + ", línea " + std::to_string(line) + ", columna " + column.name + ": '" +
                                  std::string(c.reader->text(bad)) + "' no es " + ExpectedText(column) +
                                  "; queda vacío");
    }
  }
  return SQLITE_OK;
}

int Filter(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value**) {
  auto& c = *static_cast<Cursor*>(base);
  DataTableSource& s = *c.source;
  c.report = {};
  c.detailed = 0;
  c.short_records = c.long_records = 0;
  c.reader.reset();  // a scan started again: the earlier one's thread stops first
  try {
    c.reader = std::make_unique<PrefetchReader>(s.file, s.encoding, s.layout, s.plan);
  } catch (const std::exception&) {  // no thread or no memory: nothing may reach SQLite's C code
    c.eof = true;
    return SetError(base->pVtab, "No se pudo empezar a leer el archivo de datos " + s.file.string());
  }
  c.eof = false;
  return Next(base);
}

int Close(sqlite3_vtab_cursor* base) {
  delete static_cast<Cursor*>(base);
  return SQLITE_OK;
}

int Eof(sqlite3_vtab_cursor* base) { return static_cast<Cursor*>(base)->eof ? 1 : 0; }

int Column(sqlite3_vtab_cursor* base, sqlite3_context* ctx, int n) {
  auto& c = *static_cast<Cursor*>(base);
  const auto i = static_cast<std::size_t>(n);
  if (i >= c.source->plan.size()) {
    sqlite3_result_int64(ctx, c.line);
    return SQLITE_OK;
  }
  const PrefetchedValue& v = c.reader->value(i);
  switch (v.kind) {
    case FieldValue::Kind::Null:
      sqlite3_result_null(ctx);
      break;
    case FieldValue::Kind::Integer:
      sqlite3_result_int64(ctx, v.integer);
      break;
    case FieldValue::Kind::Real:
      sqlite3_result_double(ctx, v.real);
      break;
    case FieldValue::Kind::Text:
      // Copied: the batch's text is reused, and a sort or an aggregate may
      // keep the value longer.
      sqlite3_result_text(ctx, v.text_size == 0 ? "" : c.reader->text(v).data(), static_cast<int>(v.text_size),
                          SQLITE_TRANSIENT);
      break;
  }
  return SQLITE_OK;
}

int Rowid(sqlite3_vtab_cursor* base, sqlite_int64* rowid) {
  *rowid = static_cast<Cursor*>(base)->line;
  return SQLITE_OK;
}

// Only deleting rows (the load setting bad rows aside); the row's rowid is
// its line, which later scans pass over.
int Update(sqlite3_vtab* vtab, int argc, sqlite3_value** argv, sqlite_int64*) {
  if (argc == 1 && sqlite3_value_type(argv[0]) != SQLITE_NULL) {
    static_cast<VTab*>(vtab)->source->removed_lines.insert(sqlite3_value_int64(argv[0]));
    return SQLITE_OK;
  }
  return SetError(vtab, "La tabla de un archivo de intercambio solo admite quitar filas");
}

sqlite3_module MakeModule() {
  sqlite3_module m{};
  m.iVersion = 1;
  m.xCreate = Connect;
  m.xConnect = Connect;
  m.xBestIndex = BestIndex;
  m.xDisconnect = Disconnect;
  m.xDestroy = Disconnect;
  m.xOpen = Open;
  m.xClose = Close;
  m.xFilter = Filter;
  m.xNext = Next;
  m.xEof = Eof;
  m.xColumn = Column;
  m.xRowid = Rowid;
  m.xUpdate = Update;
  return m;
}

const sqlite3_module kModule = MakeModule();

}  // namespace

std::string QuoteIdentifier(const std::string& name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

void DropDataTable(db::SqliteConnection& connection, const std::string& table) {
  if (!connection.handle()) return;
  try {
    connection.execute_native("DROP TABLE IF EXISTS temp." + QuoteIdentifier(table));
  } catch (const db::Error&) {
    // Nothing to drop, or the table is in use: the next load replaces it.
  }
}

DataTable::~DataTable() { Close(); }

DataTable::DataTable(DataTable&& other) noexcept { *this = std::move(other); }

DataTable& DataTable::operator=(DataTable&& other) noexcept {
  if (this != &other) {
    Close();
    connection_ = other.connection_;
    source_ = std::move(other.source_);
    key_ = std::move(other.key_);
    result_ = std::move(other.result_);
    other.connection_ = nullptr;
    other.key_.clear();
  }
  return *this;
}

void DataTable::StopScansOnEmpty(const std::string& column) {
  if (!source_) return;
  DataTableSource& s = *source_;
  s.stop_on_empty = -1;
  for (std::size_t i = 0; i < s.plan.size() && !column.empty() && s.stop_on_empty < 0; ++i) {
    if (settings::IEquals(s.plan[i].column.name, column)) s.stop_on_empty = static_cast<int>(i);
  }
}

DataFileLoad DataTable::Close() {
  if (!connection_ || !source_) return std::move(result_);
  DataTableSource& s = *source_;
  s.stop_on_empty = -1;
  sqlite3* db = connection_->handle();
  if (result_.ok && !s.complete && db) {
    // The statements never read the whole file (one failed, or none reads
    // it): read it once so that its problems are still told.
    sqlite3_stmt* stmt = nullptr;
    std::string sql = "SELECT count(*) FROM temp." + QuoteIdentifier(s.layout.table);
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) != SQLITE_ROW) {
      result_.warnings.push_back(s.name + ": " + sqlite3_errmsg(db));
    }
    sqlite3_finalize(stmt);
  }
  for (auto& w : s.open_warnings) result_.warnings.push_back(std::move(w));
  for (auto& n : s.open_notes) result_.notes.push_back(std::move(n));
  if (s.complete) {
    result_.rows = s.complete->rows;
    result_.bad_values = s.complete->bad_values;
    for (auto& w : s.complete->warnings) result_.warnings.push_back(std::move(w));
  }
  DropDataTable(*connection_, s.layout.table);
  {
    std::lock_guard lock(registry_mutex);
    registry.erase(key_);
  }
  source_.reset();
  connection_ = nullptr;
  return std::move(result_);
}

DataTable OpenDataTable(db::SqliteConnection& connection, const std::filesystem::path& file,
                        const settings::DataFileLayout& layout) {
  DataTable table;
  DataFileLoad& result = table.result_;
  auto source = std::make_shared<DataTableSource>();
  source->file = file;
  source->name = file.filename().string();
  source->layout = layout;
  const std::string& name = source->name;
  sqlite3* db = connection.handle();
  if (!db) {
    result.error = "La base auxiliar no está abierta";
    return table;
  }
  std::string warning;
  auto encoding = InspectDataFile(file, layout.encoding, name, &result.error, &warning);
  if (!encoding) return table;
  source->encoding = std::move(*encoding);
  if (!warning.empty()) source->open_warnings.push_back(warning);

  std::vector<std::string> header_names;
  std::vector<std::string_view> header_views;
  bool has_records = true;
  if (layout.header) {
    DataFileReader reader(file, source->encoding, source->layout);
    has_records = reader.next();
    if (!reader.error().empty()) {
      result.error = reader.error();
      return table;
    }
    if (has_records) {
      for (auto f : reader.fields()) header_names.emplace_back(f);
      for (const auto& h : header_names) header_views.emplace_back(h);
    } else if (layout.columns.empty()) {
      result.error = "El archivo " + name + " está vacío: falta la línea de encabezado";
      return table;
    }
  }
  source->plan = PlanColumns(layout, layout.header && has_records ? &header_views : nullptr, name,
                             source->open_notes);
  if (source->plan.empty()) {
    result.error = "El archivo " + name + " no tiene columnas";
    return table;
  }
  if (!layout.fixed_width) source->declared_fields = layout.header ? header_names.size() : layout.columns.size();
  std::error_code ec;
  const auto size = std::filesystem::file_size(file, ec);
  source->estimated_rows = ec ? 1000 : std::max<std::int64_t>(1, static_cast<std::int64_t>(size / 64));

  std::string key;
  {
    std::lock_guard lock(registry_mutex);
    key = "t" + std::to_string(++registry_counter);
    registry[key] = source;
  }
  table.connection_ = &connection;
  table.source_ = source;
  table.key_ = key;
  // Registering again replaces the same callbacks; tables made with the
  // earlier registration keep working.
  sqlite3_create_module_v2(db, kModuleName, &kModule, nullptr, nullptr);
  const std::string quoted = QuoteIdentifier(layout.table);
  try {
    // Through the connection, so that it forgets translations that knew an
    // earlier table of this name (and starts a transaction it was asked for).
    connection.execute_native("DROP TABLE IF EXISTS temp." + quoted + "; CREATE VIRTUAL TABLE temp." + quoted +
                              " USING " + kModuleName + "(" + key + ")");
  } catch (const db::Error& e) {
    result.error = "No se pudo crear la tabla " + layout.table + " para " + name + ": " + e.message();
    return table;
  }
  result.ok = true;
  return table;
}

}  // namespace staging
