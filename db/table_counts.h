// db/table_counts.h — how many rows each table of a SQLite file holds, read
// on a connection of its own (for reports: the staging database's tables
// after a load, the KEL tables in tests).
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace db {

// (table, rows) for every table of the SQLite file at `path`, in the order the
// tables were created; the engine's own tables (sqlite_*) are left out. Empty
// when the file cannot be read.
std::vector<std::pair<std::string, std::int64_t>> table_row_counts(const std::string& path);

}  // namespace db
