// tests/transfer/transfer_fixture.h — a hand-made staging and KEL database
// (the schemas, and for StepTest KEL's base data too) with both connections
// open, scripted answers, a context for the steps, and whole-table reads to
// compare with an answer worked out beforehand (values joined by "|", Null
// written as "-"). The concepts and liquidations tests in
// tests/concepts_liquidations use it too; they live apart because they also
// load data files, which takes the whole program.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "db/sqlite_connection.h"
#include "db/sql_text.h"
#include "support/query_rows.h"
#include "support/sqlite_file.h"
#include "support/temp_dir.h"
#include "transfer/importer.h"
#include "transfer/step_context.h"

namespace transfer_test {

using Rows = std::vector<std::string>;

// Answers the questions from a script (Yes when it runs out) and keeps them.
struct ScriptedQuestions final : transfer::Questions {
  std::deque<bool> answers;
  Rows asked;
  bool ask_yes_no(const std::string& text) override {
    asked.push_back(text);
    if (answers.empty()) return true;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

class TransferTest : public ::testing::Test {
 protected:
  // Whether the KEL company starts with its base data (concepts to 100, the
  // liquidation types and their contributions) rather than empty tables.
  virtual bool kel_base_data() const { return false; }

  void SetUp() override {
    // A quote and a blank in the folder: the path goes into the texts quoted.
    staging_path_ = (dir_ / "D'Angelo SA" / "Pasaje.mdb").string();
    kel_path_ = (dir_ / "KEL" / "Empresa.mdb").string();
    make(staging_path_, {"pasaje.sql"});
    make(kel_path_, kel_base_data() ? std::vector<const char*>{"kel.sql", "kel_base.sql"}
                                    : std::vector<const char*>{"kel.sql"});
    ASSERT_TRUE(staging_.open(staging_path_)) << staging_.last_error();
    ASSERT_TRUE(kel_.open(kel_path_, db::JournalMode::kKeep)) << kel_.last_error();
  }

  // Creates `path` (and its folder) from the named scripts of schema/.
  static void make(const std::string& path, const std::vector<const char*>& scripts) {
    std::string sql;
    for (const char* script : scripts) sql += TempDir::read(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / script);
    test_support::run_sqlite(path, sql);
  }

  transfer::StepContext context() {
    return transfer::StepContext{kel_, staging_, db::jet_path_literal(staging_path_), questions_,
                                 [this](float) { ++repaints_; }};
  }

  static Rows rows(db::SqliteConnection& connection, const std::string& sql) {
    return test_support::QueryRows(connection, sql);
  }
  Rows kel(const std::string& sql) { return rows(kel_, sql); }

  TempDir dir_;
  std::string staging_path_;
  std::string kel_path_;
  db::SqliteConnection staging_;
  db::SqliteConnection kel_;
  ScriptedQuestions questions_;
  int repaints_ = 0;
};

// The concepts and liquidations steps work on a KEL company with its base data.
class StepTest : public TransferTest {
 protected:
  bool kel_base_data() const override { return true; }
};

}  // namespace transfer_test
