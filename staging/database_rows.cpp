// staging/database_rows.cpp — splitting the translated insert and copying a
// source database's rows into a numbered temporary table.
#include "staging/database_rows.h"

#include <sqlite3.h>

#include <cctype>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "db/sqlite_messages.h"
#include "settings/strings.h"
#include "staging/interchange_table.h"

namespace staging {

namespace {

void SkipBlanks(const std::string& s, std::size_t& at) {
  while (at < s.size() && std::isspace(static_cast<unsigned char>(s[at]))) ++at;
}

// Takes the keyword `word` (any case) at `at`, followed by a blank.
bool TakeKeyword(const std::string& s, std::size_t& at, const std::string& word) {
  SkipBlanks(s, at);
  if (at + word.size() > s.size() || !settings::IEquals(s.substr(at, word.size()), word)) return false;
  at += word.size();
  return at < s.size() && (std::isspace(static_cast<unsigned char>(s[at])) || s[at] == '(' || s[at] == '"');
}

// An identifier at `at`: "quoted" (doubled quotes inside), [bracketed] or
// bare; `spelled` gets it as written, the result is the name itself.
std::string TakeIdentifier(const std::string& s, std::size_t& at, std::string* spelled) {
  SkipBlanks(s, at);
  const std::size_t start = at;
  std::string name;
  if (at < s.size() && (s[at] == '"' || s[at] == '[' || s[at] == '`')) {
    const char close = s[at] == '[' ? ']' : s[at];
    for (++at; at < s.size(); ++at) {
      if (s[at] != close) {
        name += s[at];
      } else if (close != ']' && at + 1 < s.size() && s[at + 1] == close) {
        name += close;
        ++at;
      } else {
        ++at;
        break;
      }
    }
  } else {
    while (at < s.size() && (std::isalnum(static_cast<unsigned char>(s[at])) || s[at] == '_' || s[at] == '.' ||
                             static_cast<unsigned char>(s[at]) >= 0x80))
      name += s[at++];
  }
  if (spelled) *spelled = s.substr(start, at - start);
  return name;
}

std::string QuotedColumns(const InsertSelect& insert) {
  std::string out;
  for (const std::string& c : insert.columns) out += (out.empty() ? "" : ", ") + QuoteIdentifier(c);
  return out;
}

}  // namespace

bool SplitInsertSelect(const std::string& sqlite_sql, InsertSelect* out) {
  InsertSelect parts;
  std::size_t at = 0;
  if (!TakeKeyword(sqlite_sql, at, "INSERT") || !TakeKeyword(sqlite_sql, at, "INTO")) return false;
  if (TakeIdentifier(sqlite_sql, at, &parts.table).empty()) return false;
  SkipBlanks(sqlite_sql, at);
  if (at >= sqlite_sql.size() || sqlite_sql[at] != '(') return false;
  const std::size_t list_start = ++at;
  for (;;) {
    std::string name = TakeIdentifier(sqlite_sql, at, nullptr);
    if (name.empty()) return false;
    parts.columns.push_back(std::move(name));
    SkipBlanks(sqlite_sql, at);
    if (at < sqlite_sql.size() && sqlite_sql[at] == ',') {
      ++at;
      continue;
    }
    if (at < sqlite_sql.size() && sqlite_sql[at] == ')') break;
    return false;
  }
  parts.column_list = sqlite_sql.substr(list_start, at - list_start);
  ++at;
  SkipBlanks(sqlite_sql, at);
  std::size_t select_at = at;
  if (!TakeKeyword(sqlite_sql, select_at, "SELECT")) return false;
  parts.select = sqlite_sql.substr(at);
  *out = std::move(parts);
  return true;
}

bool HasEmptyKey(db::SqliteConnection& staging, const InsertSelect& insert, std::size_t key) {
  const std::string k = QuoteIdentifier(insert.columns.at(key));
  const std::string sql = "WITH q(" + QuotedColumns(insert) + ") AS (" + insert.select + ") SELECT 1 FROM q WHERE " +
                          k + " IS NULL OR " + k + " = '' LIMIT 1";
  sqlite3_stmt* stmt = nullptr;
  int rc = sqlite3_prepare_v2(staging.handle(), sql.c_str(), -1, &stmt, nullptr);
  if (rc == SQLITE_OK) rc = sqlite3_step(stmt);
  const std::string engine = sqlite3_errmsg(staging.handle());
  sqlite3_finalize(stmt);
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  throw db::Error("La base de datos rechazó la instrucción: " + db::sqlite_message_in_spanish(rc, engine), {}, sql);
}

void CopySourceRows(db::SqliteConnection& staging, const InsertSelect& insert) {
  const std::string table = std::string("temp.") + kSourceRowsTable;
  // The staging table's own columns give the copy their types, so that keys
  // compare (and values convert) as they will in the staging table.
  staging.execute_native("DROP TABLE IF EXISTS " + table + "; CREATE TABLE " + table + " AS SELECT " +
                         insert.column_list + " FROM main." + insert.table + " LIMIT 0; INSERT INTO " + table + " " +
                         insert.select);
}

void InsertCopiedRows(db::SqliteConnection& staging, const InsertSelect& insert) {
  staging.execute_native("INSERT INTO main." + insert.table + " (" + insert.column_list + ") SELECT " +
                         QuotedColumns(insert) + " FROM temp." + kSourceRowsTable + " ORDER BY rowid");
}

void DropCopiedRows(db::SqliteConnection& staging) {
  try {
    staging.execute_native(std::string("DROP TABLE IF EXISTS temp.") + kSourceRowsTable);
  } catch (const std::exception&) {
    // Only a temporary table: it goes with the connection.
  }
}

}  // namespace staging
