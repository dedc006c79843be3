// db/jet/emitter_text.cpp — quoting of names and texts for SQLite.
#include "db/jet/emitter_text.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "db/jet/ast.h"

namespace db::jet {
namespace {

// SQLite's keywords (sqlite3_keyword_name): a column or table with one of
// these names must be quoted even where Jet lets it stand bare.
constexpr std::array<std::string_view, 147> kSqliteKeywords = {
    "ABORT", "ACTION", "ADD", "AFTER", "ALL", "ALTER", "ALWAYS", "ANALYZE", "AND", "AS",
    "ASC", "ATTACH", "AUTOINCREMENT", "BEFORE", "BEGIN", "BETWEEN", "BY", "CASCADE",
    "CASE", "CAST", "CHECK", "COLLATE", "COLUMN", "COMMIT", "CONFLICT", "CONSTRAINT",
    "CREATE", "CROSS", "CURRENT", "CURRENT_DATE", "CURRENT_TIME", "CURRENT_TIMESTAMP",
    "DATABASE", "DEFAULT", "DEFERRABLE", "DEFERRED", "DELETE", "DESC", "DETACH",
    "DISTINCT", "DO", "DROP", "EACH", "ELSE", "END", "ESCAPE", "EXCEPT", "EXCLUDE",
    "EXCLUSIVE", "EXISTS", "EXPLAIN", "FAIL", "FILTER", "FIRST", "FOLLOWING", "FOR",
    "FOREIGN", "FROM", "FULL", "GENERATED", "GLOB", "GROUP", "GROUPS", "HAVING", "IF",
    "IGNORE", "IMMEDIATE", "IN", "INDEX", "INDEXED", "INITIALLY", "INNER", "INSERT",
    "INSTEAD", "INTERSECT", "INTO", "IS", "ISNULL", "JOIN", "KEY", "LAST", "LEFT", "LIKE",
    "LIMIT", "MATCH", "MATERIALIZED", "NATURAL", "NO", "NOT", "NOTHING", "NOTNULL",
    "NULL", "NULLS", "OF", "OFFSET", "ON", "OR", "ORDER", "OTHERS", "OUTER", "OVER",
    "PARTITION", "PLAN", "PRAGMA", "PRECEDING", "PRIMARY", "QUERY", "RAISE", "RANGE",
    "RECURSIVE", "REFERENCES", "REGEXP", "REINDEX", "RELEASE", "RENAME", "REPLACE",
    "RESTRICT", "RETURNING", "RIGHT", "ROLLBACK", "ROW", "ROWS", "SAVEPOINT", "SELECT",
    "SET", "TABLE", "TEMP", "TEMPORARY", "THEN", "TIES", "TO", "TRANSACTION", "TRIGGER",
    "UNBOUNDED", "UNION", "UNIQUE", "UPDATE", "USING", "VACUUM", "VALUES", "VIEW",
    "VIRTUAL", "WHEN", "WHERE", "WINDOW", "WITH", "WITHOUT"};

bool IsPlainName(std::string_view name) {
  if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0]))) return false;
  return std::all_of(name.begin(), name.end(), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
  });
}

}  // namespace

std::string SqliteIdentifier(std::string_view name) {
  bool keyword = std::any_of(kSqliteKeywords.begin(), kSqliteKeywords.end(),
                             [&](std::string_view k) { return SameName(k, name); });
  if (IsPlainName(name) && !keyword) return std::string(name);
  // Brackets, not double quotes: SQLite reads "x" as a text when no column x
  // exists, which would turn a misspelt name into a silent constant; [x] is
  // always a name. A name holding "]" (impossible in Jet text) uses backquotes.
  if (name.find(']') == std::string_view::npos) return "[" + std::string(name) + "]";
  std::string quoted = "`";
  for (char c : name) {
    if (c == '`') quoted += '`';
    quoted += c;
  }
  return quoted + "`";
}

std::string SqliteString(std::string_view value) {
  std::string quoted = "'";
  for (char c : value) {
    if (c == '\'') quoted += '\'';
    quoted += c;
  }
  return quoted + "'";
}

std::string StripOuterParens(const std::string& text) {
  if (text.size() < 2 || text.front() != '(' || text.back() != ')') return text;
  // A scalar subquery's parentheses are part of its syntax.
  if (text.compare(0, 8, "(SELECT ") == 0) return text;
  int depth = 0;
  char quote = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (quote) {
      if (c == quote) quote = 0;  // a doubled quote reopens at once
      continue;
    }
    if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')') {
      --depth;
      if (depth == 0 && i + 1 < text.size()) return text;
    }
  }
  return text.substr(1, text.size() - 2);
}

}  // namespace db::jet
