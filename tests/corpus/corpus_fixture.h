// tests/corpus/corpus_fixture.h — a staging and a KEL database with demo-like
// rows, both connections open, and a runner that records refused statements.
//
// The corpus tests run every fixed statement of the system, taken from the
// statement units (never copied), on the connection that runs it in the
// program. A refused statement does not stop the test: the runner records it
// with the engine's message and the SQLite text, and the test fails at its end
// listing every refusal. The transfer steps' statements are run by the
// steps themselves in tests/transfer, whose steps stop at any refusal they do
// not count as ignored.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "db/recordset.h"
#include "db/error.h"
#include "db/sqlite_connection.h"
#include "support/temp_dir.h"

namespace corpus_test {

class CorpusTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Runs a command; a refusal is recorded.
  void run(db::SqliteConnection& connection, const std::string& sql);
  void run_all(db::SqliteConnection& connection, const std::vector<std::string>& statements);
  // Runs a query; a refusal is recorded and gives no rows.
  db::Recordset query(db::SqliteConnection& connection, const std::string& sql);
  // A native count on the connection's database, for sanity checks.
  std::int64_t count(db::SqliteConnection& connection, const std::string& native_sql);

  // Records a refused statement with the engine's messages.
  void refuse(const std::string& sql, const db::Error& e);

  TempDir dir_;
  std::string staging_path_;
  std::string kel_path_;
  db::SqliteConnection staging_;
  db::SqliteConnection kel_;
  std::vector<std::string> refused_;
  int statements_run_ = 0;
};

}  // namespace corpus_test
