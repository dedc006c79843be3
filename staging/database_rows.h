// staging/database_rows.h — the rows a statement reads from a source database,
// held in a temporary table so that the rows its key refuses can be found.
//
// An interchange file is read through a table whose rowid is the line of the
// data file, so a refused row is named by its line and can be set aside by
// deleting it. A source database (Access, SQLite, an ODBC image) is attached
// read-only and its rows have no line: the statement's own rows — what its
// Select gives, in the order it gives them — are copied into a temporary
// table first, numbered from 1 (the "fila" the user is told), and the
// staging table is then filled from that copy. The copy is only made when a
// key is empty or the insert is refused over its key: a good table loads
// straight from its source.
#pragma once

#include <string>
#include <vector>

namespace db {
class SqliteConnection;
}

namespace staging {

// The temporary table the rows are copied into.
inline constexpr const char* kSourceRowsTable = "kel_filas_origen";

// A translated "INSERT INTO <table> (<columns>) SELECT ..." in its parts.
struct InsertSelect {
  std::string table;                 // as the translation spells it (maybe quoted)
  std::string column_list;           // the text between the parentheses, as spelled
  std::vector<std::string> columns;  // the column names, unquoted
  std::string select;                // "SELECT ..." to the end
};

// Splits a SQLite insert of the translator's form; false for any other
// statement (an insert without a column list, with VALUES, a WITH first).
bool SplitInsertSelect(const std::string& sqlite_sql, InsertSelect* out);

// True when some row the select gives has the column at `key` empty (Null or
// ""). Throws db::Error when the select is refused.
bool HasEmptyKey(db::SqliteConnection& staging, const InsertSelect& insert, std::size_t key);

// Replaces the temporary table kSourceRowsTable by the select's rows, with
// the insert's column names, rowid = the row's place in the select's order.
// Throws db::Error.
void CopySourceRows(db::SqliteConnection& staging, const InsertSelect& insert);

// Inserts the rows left in kSourceRowsTable into the insert's table, in
// their order. Throws db::Error (with the engine's text after the Spanish).
void InsertCopiedRows(db::SqliteConnection& staging, const InsertSelect& insert);

// Drops kSourceRowsTable; never throws.
void DropCopiedRows(db::SqliteConnection& staging);

}  // namespace staging
