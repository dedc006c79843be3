// staging/key_check.cpp — finding, describing and setting aside the rows of
// an interchange table that a staging table's key refuses.
#include "staging/key_check.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <system_error>

#include "settings/strings.h"
#include "staging/interchange_table.h"

namespace staging {

namespace {

// Keys and lines named in one message before the rest are only counted: the
// message must stay readable in a warning box.
constexpr std::size_t kShownKeys = 10;
constexpr std::size_t kShownLines = 10;

struct Statement {
  sqlite3_stmt* stmt = nullptr;
  Statement(sqlite3* db, const std::string& sql) {
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) stmt = nullptr;
  }
  ~Statement() { sqlite3_finalize(stmt); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
};

std::string ColumnText(sqlite3_stmt* stmt, int i) {
  const unsigned char* text = sqlite3_column_text(stmt, i);
  return text ? reinterpret_cast<const char*>(text) : std::string();
}

// "3", "3 y 8", "3, 8 y 12", "3, 8, ... y 40 más".
std::string JoinLines(const std::vector<std::int64_t>& lines) {
  std::string out;
  const std::size_t shown = std::min(lines.size(), kShownLines);
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0) out += (i + 1 == shown && shown == lines.size()) ? " y " : ", ";
    out += std::to_string(lines[i]);
  }
  if (shown < lines.size()) out += " y " + std::to_string(lines.size() - shown) + " más";
  return out;
}

std::string LinesText(const std::vector<std::int64_t>& lines, RowUnit unit) {
  if (unit == RowUnit::kSourceRow) return (lines.size() == 1 ? "en la fila " : "en las filas ") + JoinLines(lines);
  return (lines.size() == 1 ? "en la línea " : "en las líneas ") + JoinLines(lines);
}

std::string CsvField(const std::string& value) {
  if (value.find_first_of(";\"\r\n") == std::string::npos) return value;
  std::string out = "\"";
  for (char c : value) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

// Skips blanks and "--" comment lines at the start of a statement.
std::size_t SkipBlanksAndComments(const std::string& s, std::size_t at) {
  while (at < s.size()) {
    if (s[at] == ' ' || s[at] == '\t' || s[at] == '\r' || s[at] == '\n') {
      ++at;
    } else if (s.compare(at, 2, "--") == 0) {
      at = s.find('\n', at);
      if (at == std::string::npos) return s.size();
    } else {
      break;
    }
  }
  return at;
}

// The word at `at` (letters, digits, "_"), or a [bracketed] name without its
// brackets; `at` moves past it.
std::string TakeName(const std::string& s, std::size_t& at) {
  if (at < s.size() && s[at] == '[') {
    std::size_t end = s.find(']', at);
    if (end == std::string::npos) return {};
    std::string name = s.substr(at + 1, end - at - 1);
    at = end + 1;
    return name;
  }
  std::size_t start = at;
  while (at < s.size() && (std::isalnum(static_cast<unsigned char>(s[at])) || s[at] == '_' ||
                           static_cast<unsigned char>(s[at]) >= 0x80))
    ++at;
  return s.substr(start, at - start);
}

}  // namespace

std::string InsertTarget(const std::string& statement) {
  std::size_t at = SkipBlanksAndComments(statement, 0);
  if (!settings::IEquals(TakeName(statement, at), "insert")) return {};
  at = SkipBlanksAndComments(statement, at);
  if (!settings::IEquals(TakeName(statement, at), "into")) return {};
  at = SkipBlanksAndComments(statement, at);
  return TakeName(statement, at);
}

std::string KeyColumn(sqlite3* db, const std::string& table) {
  Statement info(db, "PRAGMA main.table_info(" + QuoteIdentifier(table) + ")");
  if (!info.stmt) return {};
  std::string key;
  int keys = 0;
  while (sqlite3_step(info.stmt) == SQLITE_ROW) {
    if (sqlite3_column_int(info.stmt, 5) == 0) continue;
    ++keys;
    if (settings::IEquals(ColumnText(info.stmt, 2), "INTEGER")) key = ColumnText(info.stmt, 1);
  }
  return keys == 1 ? key : std::string();
}

std::string InterchangeColumn(sqlite3* db, const std::string& interchange, const std::string& column) {
  Statement probe(db, "SELECT * FROM " + QuoteIdentifier(interchange) + " LIMIT 0");
  if (!probe.stmt) return {};
  for (int i = 0; i < sqlite3_column_count(probe.stmt); ++i) {
    const char* name = sqlite3_column_name(probe.stmt, i);
    if (name && settings::IEquals(name, column)) return name;
  }
  return {};
}

std::vector<BadRow> EmptyKeyRows(sqlite3* db, const std::string& interchange, const std::string& icol) {
  std::vector<BadRow> rows;
  const std::string c = QuoteIdentifier(icol);
  // No trim(): on a whole-number column it would turn every value into text.
  Statement q(db, "SELECT rowid FROM " + QuoteIdentifier(interchange) + " WHERE " + c + " IS NULL OR " + c +
                      " = '' ORDER BY rowid");
  if (!q.stmt) return rows;
  while (sqlite3_step(q.stmt) == SQLITE_ROW)
    rows.push_back({sqlite3_column_int64(q.stmt, 0), std::string(), icol + " vacío"});
  return rows;
}

std::vector<BadRow> KeyConflictRows(sqlite3* db, const std::string& interchange, const std::string& icol,
                                    const std::string& table, const std::string& key) {
  std::vector<BadRow> rows;
  const std::string c = QuoteIdentifier(icol);
  const std::string staged = "(SELECT " + QuoteIdentifier(key) + " FROM main." + QuoteIdentifier(table) + ")";
  // Numbered per key in line order: every occurrence after the first repeats
  // an earlier line; a first occurrence conflicts only with the table.
  Statement q(db, "SELECT r, k, n, k IN " + staged + " FROM (SELECT rowid AS r, " + c +
                      " AS k, row_number() OVER (PARTITION BY " + c + " ORDER BY rowid) AS n FROM " +
                      QuoteIdentifier(interchange) + " WHERE " + c + " IS NOT NULL) WHERE n > 1 OR k IN " + staged +
                      " ORDER BY r");
  if (!q.stmt) return rows;
  while (sqlite3_step(q.stmt) == SQLITE_ROW) {
    BadRow row{sqlite3_column_int64(q.stmt, 0), ColumnText(q.stmt, 1), {}};
    row.reason = sqlite3_column_int(q.stmt, 3) ? icol + " " + row.key + " ya cargado en " + table
                                                : icol + " " + row.key + " repetido";
    rows.push_back(std::move(row));
  }
  return rows;
}

std::string DescribeKeyLines(sqlite3* db, const std::string& interchange, const std::string& icol,
                             const std::vector<BadRow>& rows, RowUnit unit) {
  // Empty keys are told by their lines; other keys by value, with every line
  // that holds them (the first occurrence too).
  std::vector<std::int64_t> empty_lines;
  std::vector<std::string> keys;
  std::map<std::string, bool> seen;
  std::map<std::string, std::string> reason_of;
  for (const BadRow& row : rows) {
    if (row.key.empty()) {
      empty_lines.push_back(row.line);
    } else if (!seen[row.key]) {
      seen[row.key] = true;
      keys.push_back(row.key);
      reason_of[row.key] = row.reason;
    }
  }
  std::vector<std::string> parts;
  if (!empty_lines.empty()) parts.push_back(icol + " vacío " + LinesText(empty_lines, unit));

  const std::size_t shown = std::min(keys.size(), kShownKeys);
  std::map<std::string, std::vector<std::int64_t>> lines_of;
  if (shown > 0) {
    const std::string c = QuoteIdentifier(icol);
    std::string sql = "SELECT " + c + ", rowid FROM " + QuoteIdentifier(interchange) + " WHERE " + c + " IN (";
    for (std::size_t i = 0; i < shown; ++i) sql += i ? ", ?" : "?";
    sql += ") ORDER BY rowid";
    Statement q(db, sql);
    if (q.stmt) {
      for (std::size_t i = 0; i < shown; ++i)
        sqlite3_bind_text(q.stmt, static_cast<int>(i) + 1, keys[i].c_str(), static_cast<int>(keys[i].size()),
                          SQLITE_TRANSIENT);
      while (sqlite3_step(q.stmt) == SQLITE_ROW)
        lines_of[ColumnText(q.stmt, 0)].push_back(sqlite3_column_int64(q.stmt, 1));
    }
  }
  for (std::size_t i = 0; i < shown; ++i) {
    const std::string& reason = reason_of[keys[i]];
    std::vector<std::int64_t>& lines = lines_of[keys[i]];
    if (lines.empty())
      for (const BadRow& row : rows)
        if (row.key == keys[i]) lines.push_back(row.line);
    parts.push_back(reason + " " + LinesText(lines, unit));
  }
  if (shown < keys.size()) parts.push_back("y " + std::to_string(keys.size() - shown) + " claves más");

  std::string out;
  for (const std::string& part : parts) out += (out.empty() ? "" : "; ") + part;
  return out;
}

std::string RefusedTableMessage(const std::string& file, const std::string& table, const std::string& detail) {
  return file + ": la tabla " + table + " no se cargó: " + detail;
}

bool SetRowsAside(sqlite3* db, const std::string& interchange, const std::vector<BadRow>& rows,
                  const std::filesystem::path& folder, const std::string& table, std::filesystem::path* file,
                  std::string* error, RowUnit unit) {
  const std::filesystem::path path = folder / (table + ".csv");
  if (file) *file = path;
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  const bool is_new = !std::filesystem::exists(path, ec);
  std::ofstream out(path, std::ios::binary | std::ios::app);
  if (!out) {
    if (error) *error = "No se pudo escribir el archivo de filas apartadas " + path.string();
    return false;
  }
  Statement read(db, "SELECT * FROM " + QuoteIdentifier(interchange) + " WHERE rowid = ?");
  if (!read.stmt) {
    if (error) *error = "No se pudo leer la tabla " + interchange + ": " + sqlite3_errmsg(db);
    return false;
  }
  const int columns = sqlite3_column_count(read.stmt);
  if (is_new) {
    out << (unit == RowUnit::kSourceRow ? "Fila;Motivo" : "Linea;Motivo");
    for (int i = 0; i < columns; ++i) out << ";" << CsvField(sqlite3_column_name(read.stmt, i));
    out << "\r\n";
  }
  for (const BadRow& row : rows) {
    out << row.line << ";" << CsvField(row.reason);
    sqlite3_bind_int64(read.stmt, 1, row.line);
    if (sqlite3_step(read.stmt) == SQLITE_ROW)
      for (int i = 0; i < columns; ++i) out << ";" << CsvField(ColumnText(read.stmt, i));
    sqlite3_reset(read.stmt);
    out << "\r\n";
  }
  out.flush();
  if (!out) {
    if (error) *error = "No se pudo escribir el archivo de filas apartadas " + path.string();
    return false;
  }
  Statement remove(db, "DELETE FROM " + QuoteIdentifier(interchange) + " WHERE rowid = ?");
  if (!remove.stmt) {
    if (error) *error = "No se pudieron quitar las filas apartadas de " + interchange + ": " + sqlite3_errmsg(db);
    return false;
  }
  for (const BadRow& row : rows) {
    sqlite3_bind_int64(remove.stmt, 1, row.line);
    if (sqlite3_step(remove.stmt) != SQLITE_DONE) {
      if (error) *error = "No se pudieron quitar las filas apartadas de " + interchange + ": " + sqlite3_errmsg(db);
      return false;
    }
    sqlite3_reset(remove.stmt);
  }
  return true;
}

}  // namespace staging
