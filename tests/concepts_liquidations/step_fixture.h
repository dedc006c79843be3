// tests/concepts_liquidations/step_fixture.h — a fresh KEL company and staging
// database for the concepts and liquidations steps, with scripted answers.
//
// Both databases are made from the shipped schema scripts (the KEL one with
// its base data); each test adds the few rows its case needs with native SQL
// and reads whole tables back as "a|b|c" texts, Null written as "-".
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "db/sqlite_connection.h"
#include "db/sql_text.h"
#include "schema/database_scripts.h"
#include "support/query_rows.h"
#include "support/temp_dir.h"
#include "transfer/importer.h"
#include "transfer/step_context.h"

namespace steps_test {

// Answers the questions from a script (Yes when it runs out) and keeps them.
class ScriptedQuestions final : public transfer::Questions {
 public:
  bool ask_yes_no(const std::string& text) override {
    asked.push_back(text);
    if (answers.empty()) return true;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }
  std::deque<bool> answers;
  std::vector<std::string> asked;
};

class StepTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // A quote in the folder name, as in a company called O'Brien.
    staging_path_ = (dir_.path() / "O'Brien" / "Pasaje.mdb").string();
    kel_path_ = (dir_.path() / "Datos" / "Empresa.mdb").string();
    const std::filesystem::path schema = std::filesystem::path(KEL_SOURCE_DIR) / "schema";
    std::string error;
    ASSERT_TRUE(schema::create_database_from_scripts(staging_path_, {schema / "pasaje.sql"}, error)) << error;
    ASSERT_TRUE(schema::create_database_from_scripts(kel_path_, {schema / "kel.sql", schema / "kel_base.sql"}, error))
        << error;
    ASSERT_TRUE(staging_.open(staging_path_)) << staging_.last_error();
    ASSERT_TRUE(kel_.open(kel_path_)) << kel_.last_error();
  }

  transfer::StepContext context() {
    return transfer::StepContext{kel_, staging_, db::jet_path_literal(staging_path_), questions_,
                                 [this](float) { ++repaints_; }};
  }

  // Every row of a native query, its values joined by "|", Null as "-".
  static std::vector<std::string> rows(db::SqliteConnection& connection, const std::string& sql) {
    return test_support::QueryRows(connection, sql);
  }

  TempDir dir_;
  std::string staging_path_;
  std::string kel_path_;
  db::SqliteConnection staging_;
  db::SqliteConnection kel_;
  ScriptedQuestions questions_;
  int repaints_ = 0;
};

using Rows = std::vector<std::string>;

}  // namespace steps_test
