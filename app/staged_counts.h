// app/staged_counts.h — how many rows each table of the staging database holds,
// for the summary a batch run prints after the staging load.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "db/connection.h"

namespace app {

// (table, rows) for every table of the staging database, in the database's
// own order; empty when the connection is closed or not a SQLite file.
std::vector<std::pair<std::string, std::int64_t>> StagedRowCounts(db::Connection* staging);

}  // namespace app
