// tests/transfer/transfer_fixture.h — a hand-made staging and KEL database
// (the schemas only, no base rows) with both connections open, a context for
// the steps, and whole-table reads to compare with an answer worked out
// beforehand.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "db/sqlite_connection.h"
#include "db/sql_text.h"
#include "support/query_rows.h"
#include "support/temp_dir.h"
#include "transfer/importer.h"

namespace transfer_test {

// A step's questions answered from a list (No when it runs out).
struct ScriptedQuestions final : transfer::Questions {
  std::vector<bool> answers;
  std::vector<std::string> asked;
  bool ask_yes_no(const std::string& text) override {
    asked.push_back(text);
    const bool yes = asked.size() <= answers.size() && answers[asked.size() - 1];
    return yes;
  }
};

class TransferTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // A quote and a blank in the folder: the path goes into the texts quoted.
    staging_path_ = (dir_ / "D'Angelo SA" / "Pasaje.mdb").string();
    kel_path_ = (dir_ / "KEL" / "Empresa.mdb").string();
    make(staging_path_, "pasaje.sql");
    make(kel_path_, "kel.sql");
    ASSERT_TRUE(staging_.open(staging_path_)) << staging_.last_error();
    ASSERT_TRUE(kel_.open(kel_path_, db::JournalMode::kKeep)) << kel_.last_error();
  }

  static void make(const std::string& path, const char* script) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    const std::string sql = TempDir::read(std::filesystem::path(KEL_SOURCE_DIR) / "schema" / script);
    char* err = nullptr;
    const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &err);
    const std::string message = err ? err : "";
    sqlite3_free(err);
    sqlite3_close(db);
    ASSERT_EQ(rc, SQLITE_OK) << message;
  }

  transfer::StepContext context() {
    return transfer::StepContext{kel_, staging_, db::jet_path_literal(staging_path_), questions_,
                                 [](float) {}};
  }

  // Every row of a native query, its values joined by "|", Null as "-".
  static std::vector<std::string> rows(db::SqliteConnection& connection, const std::string& sql) {
    return test_support::QueryRows(connection, sql);
  }
  std::vector<std::string> kel(const std::string& sql) { return rows(kel_, sql); }

  TempDir dir_;
  std::string staging_path_;
  std::string kel_path_;
  db::SqliteConnection staging_;
  db::SqliteConnection kel_;
  ScriptedQuestions questions_;
};

using Rows = std::vector<std::string>;

}  // namespace transfer_test
