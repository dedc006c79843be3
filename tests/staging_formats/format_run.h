// tests/staging_formats/format_run.h — staging a source through one of the
// shipped formats, as the session does it: read the format file's catalogue,
// match the source folder, make a staging database from the staging schema
// and run CargarDatos.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "db/sqlite_connection.h"
#include "settings/key_file.h"
#include "settings/text_file.h"
#include "staging/catalogue.h"
#include "staging/staging_load.h"
#include "support/sqlite_file.h"

struct FormatRun {
  std::unique_ptr<db::SqliteConnection> staging;
  staging::StagingLoad load;
  staging::ColArchsBD catalogue;
  int found = 0;  // entries whose source was found
};

// A fresh staging database at `path` from schema/pasaje.sql.
inline void MakeStagingDatabase(const std::filesystem::path& path) {
  std::filesystem::remove(path);
  std::string schema = settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / "pasaje.sql");
  ASSERT_FALSE(schema.empty());
  test_support::run_sqlite(path, schema);
}

// Stages `source_folder` through the format file `format` (a name in the
// shipped formats folder) into a new staging database `staging_path`.
// `prepare` (optional) may change the load (months, relations) and the new
// staging database before the load runs.
inline void RunFormat(FormatRun& run, const std::string& format, const std::filesystem::path& source_folder,
                      const std::filesystem::path& staging_path,
                      const std::function<void(FormatRun&)>& prepare = {}) {
  const std::filesystem::path program = std::filesystem::path(KEL_SOURCE_DIR) / "formats";
  const std::string text = settings::ReadText(program / format);
  ASSERT_FALSE(text.empty()) << format;
  std::vector<std::string> warnings;
  staging::AddEntriesFromKey(run.catalogue, settings::KeyValue(text, "Archivos"), true, "Archivos", &warnings);
  staging::AddEntriesFromKey(run.catalogue, settings::KeyValue(text, "BD"), false, "BD", &warnings);
  ASSERT_TRUE(warnings.empty()) << warnings.front();
  std::array<bool, 5> boxes = {true, true, true, true, true};
  auto match = staging::MatchFolder(run.catalogue, source_folder, boxes);
  for (const auto& e : run.catalogue) run.found += e.Existe ? 1 : 0;

  MakeStagingDatabase(staging_path);
  run.staging = std::make_unique<db::SqliteConnection>();
  ASSERT_TRUE(run.staging->open(staging_path.string())) << run.staging->last_error();
  run.load.staging = run.staging.get();
  run.load.program_folder = program;
  run.load.TablaNoBorrar = settings::KeyValue(text, "TablaNoBorrar");
  run.load.catalogue = &run.catalogue;
  run.load.ChkOP = boxes;
  run.load.total_lines = match.total_lines;
  run.load.values.relation_ids = {17, 13, 45, 12, 71, 53, 4};
  if (prepare) prepare(run);
  staging::CargarDatos(run.load);
}
