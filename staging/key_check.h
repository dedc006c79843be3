// staging/key_check.h — rows of an interchange table that cannot go into a
// staging table because of its key, found by their source line.
//
// A staged table's key is its one INTEGER PRIMARY KEY column. SQLite would
// make up a value for a row whose key is empty (the next free number), which
// Jet never did: an empty key is an error for that row. A key that repeats,
// or that the table already holds, makes the engine refuse the whole insert.
// In both cases the user is told the table, the source file, the key value
// and the lines of the offending rows, and may have those rows set aside in
// <staging folder>/rechazados/<table>.csv while the rest of the table loads.
//
// The interchange table's rowid is the line of the data file its record
// starts on (staging/interchange_table.h), so every lookup here is plain SQL
// over the interchange table's name, whatever kind of table stands behind it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct sqlite3;

namespace staging {

// What a BadRow's `line` counts: lines of a data file, or rows of a source
// database in the order a statement reads them (staging/database_rows.h).
enum class RowUnit { kLine, kSourceRow };

// One row that cannot be staged.
struct BadRow {
  std::int64_t line = 0;  // line of the data file (or row of the source, see RowUnit)
  std::string key;        // the key value as text ("" when empty)
  std::string reason;     // Spanish, e.g. "id_Persona vacío"
};

// The table a statement inserts into ("Insert into <table> ..."), without
// brackets; "" when the statement is not an insert.
std::string InsertTarget(const std::string& statement);

// The single INTEGER PRIMARY KEY column of `table` in the main database; ""
// when the table has none, a composite key or does not exist.
std::string KeyColumn(sqlite3* db, const std::string& table);

// The column of the interchange table `interchange` named `column` (without
// regard to case), as the table spells it; "" when there is none.
std::string InterchangeColumn(sqlite3* db, const std::string& interchange, const std::string& column);

// Rows of `interchange` whose column `icol` is empty (Null).
std::vector<BadRow> EmptyKeyRows(sqlite3* db, const std::string& interchange, const std::string& icol);

// Rows of `interchange` whose key `icol` repeats an earlier line of the same
// table, or is already in `table`.`key`. The first line of a repeated key is
// not among them (it is the one that may load).
std::vector<BadRow> KeyConflictRows(sqlite3* db, const std::string& interchange, const std::string& icol,
                                    const std::string& table, const std::string& key);

// Every line that holds one of the keys of `rows` (first occurrences
// included), grouped by key, for the message: "12 en las líneas 3 y 8"
// ("en las filas" for a source database's rows).
std::string DescribeKeyLines(sqlite3* db, const std::string& interchange, const std::string& icol,
                             const std::vector<BadRow>& rows, RowUnit unit = RowUnit::kLine);

// The Spanish message of a table refused because of `rows`:
// "<file>: la tabla <table> no se cargó: <detail>".
std::string RefusedTableMessage(const std::string& file, const std::string& table, const std::string& detail);

// Appends `rows` with their line (or row: "Fila" heads the column), reason and the interchange table's values
// to <folder>/<table>.csv (";"-separated, UTF-8, header on a new file), then
// deletes them from the interchange table (which must accept a delete by
// rowid). False with `error` (Spanish) when the file cannot be written (then
// nothing is removed) or a row cannot be removed.
bool SetRowsAside(sqlite3* db, const std::string& interchange, const std::vector<BadRow>& rows,
                  const std::filesystem::path& folder, const std::string& table, std::filesystem::path* file,
                  std::string* error, RowUnit unit = RowUnit::kLine);

}  // namespace staging
