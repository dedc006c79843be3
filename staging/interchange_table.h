// staging/interchange_table.h — an interchange data file as the table its
// statements read.
//
// The statement file of an interchange entry describes its data file
// (settings/data_layout.h). Before the entry's statements run, the loader
// makes the table named by the layout (Tabla=Imp_Personas) read that file, so
// the statements are plain Jet SQL:
//   Insert into Personas Select ... From Imp_Personas
// The table is a SQLite virtual table in the TEMP schema: every scan reads
// the file from disk in blocks, decodes, splits and converts each record as
// it goes (on a thread of its own, a few batches ahead of SQLite: see
// interchange_prefetch.h), and nothing is copied in between. A file of any length loads in
// the same small memory, and each row is written once, into its staging
// table. It is dropped after the entry's statements.
//
// Columns: without a header line the layout's Columna lines name the fields
// in file order. With a header line and Columna lines, the header says where
// each declared column is (by name, any case, any order); a declared column
// the file lacks is all Null, a file column the layout does not declare is
// left out. With a header and no Columna lines, the header names every column
// and all are text. Declared types: entero INTEGER, real REAL, fecha TEXT
// (yyyy-mm-dd), texto TEXT COLLATE NOCASE.
//
// Source lines: each row's rowid, and its hidden column `_linea`, is the line
// of the file where the record starts, so that a statement refused for a row
// can be traced back to the file:
//   SELECT _linea FROM temp.Imp_Personas WHERE id_Persona = 17
// (hidden: "Select *" and the column lists the translator reads leave it out).
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "settings/data_layout.h"

namespace db {
class SqliteConnection;
}

namespace staging {

// The name of the hidden column holding each row's source line.
inline constexpr const char* kLineColumn = "_linea";

// What reading one data file did.
struct DataFileLoad {
  bool ok = false;              // the table was made and its statements could read it
  std::int64_t rows = 0;        // records read (by the first full scan)
  std::int64_t bad_values = 0;  // fields that did not convert (read as Null)
  std::vector<std::string> warnings;  // Spanish, naming the file and lines: data that did not arrive as written
  std::vector<std::string> notes;     // Spanish: columns the file lacks or the layout does not use (nothing lost)
  std::string error;            // Spanish, when !ok
};

struct DataTableSource;

// A data file open as the TEMP table layout.table of a connection, from
// OpenDataTable until Close (or destruction).
class DataTable {
 public:
  DataTable() = default;
  ~DataTable();
  DataTable(DataTable&& other) noexcept;
  DataTable& operator=(DataTable&& other) noexcept;

  // The table exists and its statements can read it.
  bool ok() const { return result_.ok; }
  // Why it could not be made (Spanish), when !ok().
  const std::string& error() const { return result_.error; }

  // While `column` (a column of the table, any case) is named, a scan that
  // meets a row whose value there is empty (Null, or '') stops with an error
  // naming the line instead of handing the row on; "" lets every row through
  // again. A statement that stages into a keyed table runs under it, so that
  // the engine never makes up the key of such a row and no scan is spent
  // looking for them beforehand.
  void StopScansOnEmpty(const std::string& column);

  // Drops the table and gives what reading the file did: the rows and the
  // values that did not convert, from the first scan that read the whole
  // file (when the statements never did, the file is read once here so that
  // its problems are still told). Never throws.
  DataFileLoad Close();

 private:
  friend DataTable OpenDataTable(db::SqliteConnection&, const std::filesystem::path&,
                                 const settings::DataFileLayout&);
  db::SqliteConnection* connection_ = nullptr;
  std::shared_ptr<DataTableSource> source_;
  std::string key_;
  DataFileLoad result_;
};

// Makes `file` readable as the TEMP table layout.table of `connection`,
// replacing a table of that name. Never throws for bad data: a missing or
// unreadable file, a file in the wrong encoding or without its header give a
// table that is not ok() with its error; what the header and the layout
// disagree on is in the warnings that Close gives.
DataTable OpenDataTable(db::SqliteConnection& connection, const std::filesystem::path& file,
                        const settings::DataFileLayout& layout);

// Drops the TEMP table `table` when it exists. Never throws.
void DropDataTable(db::SqliteConnection& connection, const std::string& table);

// `name` as a SQLite identifier in double quotes (inner quotes doubled).
std::string QuoteIdentifier(const std::string& name);

}  // namespace staging
