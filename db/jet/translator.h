// db/jet/translator.h — Jet SQL in, SQLite SQL out.
//
// The statements of the system and of the format authors' statement files are
// written in the Jet (Access) dialect and run verbatim. translate() lexes and
// parses one Jet statement into a small syntax tree and emits the equivalent
// SQLite statement. What the emitter cannot know from the text alone (where a
// database named by `in '<path>'` is attached, which columns a table has, which
// names a select produces) it asks of a TranslationContext, which the SQLite
// connection implements.
//
// Jet functions that are not emitted as plain SQLite expressions are called as
// SQLite functions named "jet_" + the Jet name in lower case (Val -> jet_val,
// CDate -> jet_cdate); db/jet/functions.h lists them and db/ registers them.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace db::jet {

// What the emitter needs to know about the databases a statement touches.
class TranslationContext {
 public:
  virtual ~TranslationContext() = default;

  // Makes the database named by `path` (the text between the quotes of an
  // `in` clause) readable and returns the schema name to qualify its tables
  // with. Throws db::Error when the path cannot be attached.
  virtual std::string attach(const std::string& path) = 0;

  // Column names of `table` in `schema` ("main" or a name attach() gave), in
  // declaration order. Empty when there is no such table or view.
  virtual std::vector<std::string> table_columns(const std::string& schema,
                                                 const std::string& table) = 0;

  // Columns of `table` in `schema` with their declared types and collations
  // ("INTEGER", "TEXT COLLATE NOCASE", "TEXT" for binary text, "" when
  // declared without a type), in
  // declaration order; for "main" the table may also be a TEMP one. Empty
  // when there is no such table or the context cannot tell: its columns then
  // count as possibly text (compared in Jet's collation, never wrongly).
  virtual std::vector<std::pair<std::string, std::string>> table_column_types(
      const std::string& schema, const std::string& table) {
    (void)schema;
    (void)table;
    return {};
  }

  // Output column names of a SQLite SELECT statement, found by preparing it
  // (not running it). Throws db::Error when SQLite refuses it.
  virtual std::vector<std::string> select_columns(const std::string& sqlite_select) = 0;
};

enum class StatementKind { kQuery, kCommand };

struct Translation {
  // The SQLite statement(s), to be run in order. Normally one.
  std::vector<std::string> statements;
  // kQuery when the statement returns rows (a plain Select).
  StatementKind kind = StatementKind::kCommand;
  // True when it creates or drops a table (Select Into, Drop Table): cached
  // translations that depend on column lists must then be forgotten.
  bool changes_schema = false;
};

// Thrown when a statement cannot be translated: a syntax error, or a construct
// the translator does not support. `position` is the 0-based offset in the
// Jet text where the problem was found.
class TranslateError : public std::runtime_error {
 public:
  TranslateError(const std::string& message, std::size_t position)
      : std::runtime_error(message), position_(position) {}
  std::size_t position() const { return position_; }

 private:
  std::size_t position_;
};

// Translates one Jet statement (a trailing ";" is allowed).
Translation translate(std::string_view jet_sql, TranslationContext& context);

// The paths of the databases a Jet statement reads with `in` clauses
// ("T in 'path'", "T in 'path' 'MS Access;...'", "T in '' [MS Access;DATABASE=path]"),
// in reading order, each once. Parses only: nothing is attached. Throws
// TranslateError when the statement does not parse.
std::vector<std::string> database_paths(std::string_view jet_sql);

}  // namespace db::jet
