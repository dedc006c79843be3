// staging/interchange_table.cpp — the bulk load of a data file into its TEMP
// table.
#include "staging/interchange_table.h"

#include <sqlite3.h>

#include <fstream>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "settings/strings.h"
#include "staging/interchange_convert.h"
#include "staging/interchange_decode.h"
#include "staging/interchange_parse.h"

namespace staging {

namespace {

// Detailed messages per file before the rest are only counted.
constexpr int kDetailedWarnings = 10;

// Where each table column's value comes from.
struct ColumnPlan {
  settings::DataColumn column;  // name and type in the table
  int field = -1;               // index of the field in a record; -1: none (Null)
};

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

bool ReadBytes(const std::filesystem::path& file, std::string* bytes) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return false;
  in.seekg(0, std::ios::end);
  std::streamoff size = in.tellg();
  if (size < 0) return false;
  in.seekg(0, std::ios::beg);
  bytes->resize(static_cast<std::size_t>(size));
  if (size > 0 && !in.read(bytes->data(), size)) return false;
  return true;
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

// A prepared statement finalized on every way out.
struct Statement {
  sqlite3_stmt* stmt = nullptr;
  ~Statement() { sqlite3_finalize(stmt); }
};

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

DataFileLoad LoadDataFile(db::SqliteConnection& connection, const std::filesystem::path& file,
                          const settings::DataFileLayout& layout) {
  DataFileLoad result;
  const std::string name = file.filename().string();
  sqlite3* db = connection.handle();
  if (!db) {
    result.error = "La base auxiliar no está abierta";
    return result;
  }
  std::string text;
  if (!std::filesystem::is_regular_file(file) || !ReadBytes(file, &text)) {
    result.error = "No se pudo leer el archivo de datos " + file.string();
    return result;
  }
  settings::TextEncoding found = settings::TextEncoding::Utf8;
  if (!DecodeDataFile(text, layout.encoding, name, &found, &result.error)) return result;

  RecordReader reader(text, layout);
  std::vector<std::string> header_names;
  std::vector<std::string_view> header_views;
  bool has_records = true;
  if (layout.header) {
    has_records = reader.next();
    if (has_records) {
      for (auto f : reader.fields()) header_names.emplace_back(f);
      for (const auto& h : header_names) header_views.emplace_back(h);
    } else if (layout.columns.empty()) {
      result.error = "El archivo " + name + " está vacío: falta la línea de encabezado";
      return result;
    }
  }
  std::vector<ColumnPlan> plan =
      PlanColumns(layout, layout.header && has_records ? &header_views : nullptr, name, result.notes);
  if (plan.empty()) {
    result.error = "El archivo " + name + " no tiene columnas";
    return result;
  }

  std::string create = "DROP TABLE IF EXISTS temp." + QuoteIdentifier(layout.table) + "; CREATE TEMP TABLE " +
                       QuoteIdentifier(layout.table) + " (";
  // The rowid is the line the record starts on, so that a row the staging
  // tables refuse can be told by its line (staging/key_check.h).
  std::string insert = "INSERT INTO temp." + QuoteIdentifier(layout.table) + " (rowid";
  std::string placeholders = "?";
  for (std::size_t i = 0; i < plan.size(); ++i) {
    create += (i ? ", " : "") + QuoteIdentifier(plan[i].column.name) + " " + SqlType(plan[i].column.type);
    insert += ", " + QuoteIdentifier(plan[i].column.name);
    placeholders += ", ?";
  }
  create += ")";
  insert += ") VALUES (" + placeholders + ")";
  try {
    // Through the connection, so that it forgets translations that knew an
    // earlier table of this name (and starts a transaction it was asked for).
    connection.execute_native(create);
  } catch (const db::Error& e) {
    result.error = "No se pudo crear la tabla " + layout.table + " para " + name + ": " + e.message();
    return result;
  }

  Statement insert_stmt;
  if (sqlite3_prepare_v2(db, insert.c_str(), -1, &insert_stmt.stmt, nullptr) != SQLITE_OK) {
    result.error = "No se pudo preparar la carga de " + name + ": " + sqlite3_errmsg(db);
    return result;
  }
  bool own_transaction = sqlite3_get_autocommit(db) != 0;
  if (own_transaction && sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK) {
    result.error = "No se pudo iniciar la carga de " + name + ": " + sqlite3_errmsg(db);
    return result;
  }

  std::vector<FieldValue> values(plan.size());
  int detailed = 0;
  std::int64_t short_records = 0, long_records = 0;
  std::size_t first_short = 0, first_long = 0;
  std::string failure;
  sqlite3_stmt* stmt = insert_stmt.stmt;
  const std::size_t declared_fields = layout.header ? header_names.size() : layout.columns.size();
  while (reader.next()) {
    const auto& fields = reader.fields();
    if (reader.unterminated_quote()) {
      result.warnings.push_back(name + ", línea " + std::to_string(reader.line()) +
                                ": las comillas no se cierran antes del fin del archivo");
    }
    if (!layout.fixed_width && declared_fields > 0) {
      if (fields.size() < declared_fields && short_records++ == 0) first_short = reader.line();
      if (fields.size() > declared_fields && long_records++ == 0) first_long = reader.line();
    }
    sqlite3_bind_int64(stmt, 1, static_cast<sqlite3_int64>(reader.line()));
    for (std::size_t c = 0; c < plan.size(); ++c) {
      int bind = static_cast<int>(c) + 2;
      const ColumnPlan& p = plan[c];
      FieldValue& v = values[c];
      std::string_view field;
      bool quoted = false;
      if (p.field >= 0 && static_cast<std::size_t>(p.field) < fields.size()) {
        field = fields[static_cast<std::size_t>(p.field)];
        quoted = reader.quoted()[static_cast<std::size_t>(p.field)];
      }
      if (!ConvertField(field, p.column, layout.decimal_separator, v, quoted)) {
        ++result.bad_values;
        if (detailed++ < kDetailedWarnings) {
          result.warnings.push_back(name + ", línea " + std::to_string(reader.line()) + ", columna " +
                                    p.column.name + ": '" + std::string(field) + "' no es " +
                                    ExpectedText(p.column) + "; queda vacío");
        }
      }
      switch (v.kind) {
        case FieldValue::Kind::Null:
          sqlite3_bind_null(stmt, bind);
          break;
        case FieldValue::Kind::Integer:
          sqlite3_bind_int64(stmt, bind, v.integer);
          break;
        case FieldValue::Kind::Real:
          sqlite3_bind_double(stmt, bind, v.real);
          break;
        case FieldValue::Kind::Text:
          // A null pointer would bind Null: an empty text needs a real one.
          sqlite3_bind_text(stmt, bind, v.text.empty() ? "" : v.text.data(), static_cast<int>(v.text.size()),
                            SQLITE_STATIC);
          break;
      }
    }
    int rc = sqlite3_step(stmt);
    sqlite3_reset(stmt);
    if (rc != SQLITE_DONE) {
      failure = name + ", línea " + std::to_string(reader.line()) + ": la base rechazó la fila: " + sqlite3_errmsg(db);
      break;
    }
    ++result.rows;
  }
  sqlite3_clear_bindings(stmt);

  if (detailed > kDetailedWarnings) {
    result.warnings.push_back(name + ": " + std::to_string(detailed - kDetailedWarnings) +
                              " valores más no se pudieron convertir y quedan vacíos");
  }
  if (short_records) {
    result.warnings.push_back(name + ": " + std::to_string(short_records) +
                              " líneas traen menos campos que columnas (la primera, la línea " +
                              std::to_string(first_short) + "); los campos que faltan quedan vacíos");
  }
  if (long_records) {
    result.warnings.push_back(name + ": " + std::to_string(long_records) +
                              " líneas traen más campos que columnas (la primera, la línea " +
                              std::to_string(first_long) + "); los campos de más se ignoran");
  }
  if (!failure.empty()) {
    if (own_transaction) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_finalize(insert_stmt.stmt);  // a prepared insert would keep the table in use
    insert_stmt.stmt = nullptr;
    // Half a file would stage half the data without a word: none at all.
    DropDataTable(connection, layout.table);
    result.error = failure;
    result.rows = 0;
    return result;
  }
  if (own_transaction && sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK) {
    result.error = "No se pudo terminar la carga de " + name + ": " + sqlite3_errmsg(db);
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    result.rows = 0;
    return result;
  }
  result.ok = true;
  return result;
}

}  // namespace staging
