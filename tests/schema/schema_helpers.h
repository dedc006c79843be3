// tests/schema/schema_helpers.h — native SQLite helpers for the schema tests.
//
// The schema tests read the databases made from schema/*.sql with the plain
// SQLite C API (no Jet translation): the files must stay readable with
// standard SQLite tools.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "schema/database_scripts.h"
#include "support/plain_sqlite.h"
#include "support/temp_dir.h"

namespace schema_test {

using Rows = std::vector<std::string>;
using Db = test_support::PlainDb;

// Creates <dir>/<name> from the named scripts of the source tree's schema folder.
inline std::filesystem::path make_database(const std::filesystem::path& dir, const std::string& name,
                                           const std::vector<std::string>& scripts) {
  std::vector<std::filesystem::path> paths;
  for (const auto& s : scripts) paths.push_back(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / s);
  std::string error;
  EXPECT_TRUE(schema::create_database_from_scripts(dir / name, paths, error)) << error;
  return dir / name;
}
inline std::filesystem::path make_kel(const std::filesystem::path& dir) {
  return make_database(dir, "kel.db", {"kel.sql", "kel_base.sql"});
}
inline std::filesystem::path make_staging(const std::filesystem::path& dir) {
  return make_database(dir, "Pasaje.mdb", {"pasaje.sql"});
}

}  // namespace schema_test
