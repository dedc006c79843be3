// app/staged_counts.cpp — row counts of the staging tables (see staged_counts.h).
#include "app/staged_counts.h"

#include "db/table_counts.h"

namespace app {

std::vector<std::pair<std::string, std::int64_t>> StagedRowCounts(db::Connection* staging) {
  if (staging == nullptr || !staging->is_open()) return {};
  // Read on a connection of its own: the load has committed its rows.
  return db::table_row_counts(staging->data_source_name());
}

}  // namespace app
