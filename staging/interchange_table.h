// staging/interchange_table.h — loading an interchange data file into the
// table its statements read.
//
// The statement file of an interchange entry describes its data file
// (settings/data_layout.h). Before the entry's statements run, the loader reads
// the whole file into a TEMP table of the staging connection named by the
// layout (Tabla=Imp_Personas), so the statements are plain Jet SQL:
//   Insert into Personas Select ... From Imp_Personas
// The table is made afresh for every file and dropped after the entry's
// statements. It is filled through one prepared insert inside one transaction
// (the caller's when one is open), so millions of lines load in seconds.
//
// Columns: without a header line the layout's Columna lines name the fields
// in file order. With a header line and Columna lines, the header says where
// each declared column is (by name, any case, any order); a declared column
// the file lacks is all Null, a file column the layout does not declare is
// left out. With a header and no Columna lines, the header names every column
// and all are text.
//
// Lines: a row's rowid is the line of the file its record starts on (counted
// from 1, header and skipped lines included); the staging load names refused
// rows by it (staging/key_check.h). Any other kind of table put in this one's
// place must keep that.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "settings/data_layout.h"

namespace db {
class SqliteConnection;
}

namespace staging {

// What reading one data file did.
struct DataFileLoad {
  bool ok = false;              // the table exists and holds the file's rows
  std::int64_t rows = 0;        // rows inserted
  std::int64_t bad_values = 0;  // fields that did not convert (stored as Null)
  std::vector<std::string> warnings;  // Spanish, naming the file and lines: data that did not arrive as written
  std::vector<std::string> notes;     // Spanish: columns the file lacks or the layout does not use (nothing lost)
  std::string error;            // Spanish, when !ok
};

// Reads `file` into the TEMP table layout.table of `connection`, replacing a
// table of that name. Never throws for bad data: a missing or unreadable
// file, a file in the wrong encoding or a database that refuses the rows give
// ok false and `error`; values that do not convert give warnings.
DataFileLoad LoadDataFile(db::SqliteConnection& connection, const std::filesystem::path& file,
                          const settings::DataFileLayout& layout);

// Drops the TEMP table `table` when it exists. Never throws.
void DropDataTable(db::SqliteConnection& connection, const std::string& table);

// `name` as a SQLite identifier in double quotes (inner quotes doubled).
std::string QuoteIdentifier(const std::string& name);

}  // namespace staging
