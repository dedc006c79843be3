// tests/db/golden_test.cpp — runs every golden file (tests/db/golden/*.test)
// as its own test case, on fresh SQLite files in a fresh temporary folder,
// through the program's own connection and Jet translator.
//
// A golden file is a list of records separated by blank lines ("#" lines
// between them are comments): "sqlite" (native set-up SQL), "statement ok",
// "statement error <text the message contains>", "query" (SQL, a "----" line,
// then the header line and the rows, tab-separated) and "connect <name>"
// (switch to <name>.db). The SQLite text of translations is pinned in
// tests/jet/parse_cases.txt instead.
// "{dir}" in SQL and results stands for the temporary folder. A malformed
// record fails the file instead of passing silently.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "base/value.h"
#include "db_fixture.h"

namespace fs = std::filesystem;

namespace {

std::string replace_all(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t pos = 0; (pos = text.find(from, pos)) != std::string::npos; pos += to.size()) {
    text.replace(pos, from.size(), to);
  }
  return text;
}

std::string lower(std::string text) {
  for (auto& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string describe(const db::Error& e) {
  std::string out = e.message();
  if (!e.translated_text().empty()) out += "\n  SQLite: " + e.translated_text();
  return out;
}

class GoldenRun {
 public:
  GoldenRun(std::string file, const fs::path& folder) : file_(std::move(file)), folder_(folder) {}

  // Runs the records of `text`, each block of non-blank lines being one.
  void run(const std::string& text) {
    switch_to("main");
    std::istringstream in(text);
    std::vector<std::string> block;
    int line_number = 0, block_line = 0;
    for (std::string line; std::getline(in, line);) {
      ++line_number;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      bool blank = line.find_first_not_of(" \t") == std::string::npos;
      if (blank || (block.empty() && line[0] == '#')) {
        if (!block.empty()) run_block(block_line, block);
        block.clear();
        continue;
      }
      if (block.empty()) block_line = line_number;
      block.push_back(replace_all(line, "{dir}", folder_.string()));
    }
    if (!block.empty()) run_block(block_line, block);
  }

 private:
  void switch_to(const std::string& name) {
    auto& conn = connections_[name];
    if (!conn) {
      fs::path path = folder_ / (name + ".db");
      if (!fs::exists(path)) std::ofstream(path).flush();  // an empty file is an empty database
      conn = std::make_unique<db::SqliteConnection>();
      if (!conn->open(path.string())) ADD_FAILURE() << file_ << ": no se pudo abrir " << path << ": " << conn->last_error();
    }
    current_ = conn.get();
  }

  void run_block(int line, const std::vector<std::string>& block) {
    const std::string& head = block[0];
    std::string word = head.substr(0, head.find(' '));
    std::string argument = head.size() > word.size() ? head.substr(word.size() + 1) : "";
    if (word == "statement") {
      word = head.substr(0, std::min(head.size(), head.find(' ', 10)));
      argument = head.size() > word.size() ? head.substr(word.size() + 1) : "";
    }
    argument.erase(0, argument.find_first_not_of(' '));
    if (word == "connect") {
      if (argument.empty() || block.size() > 1) {
        ADD_FAILURE_AT(file_.c_str(), line) << "connect espera un nombre de base y nada más";
      } else {
        switch_to(argument);
      }
      return;
    }
    bool has_result = word == "query";
    auto separator = std::find(block.begin(), block.end(), "----");
    std::string sql;
    for (auto it = block.begin() + 1; it != (has_result ? separator : block.end()); ++it) {
      sql += (sql.empty() ? "" : "\n") + *it;
    }
    std::vector<std::string> expected(separator == block.end() ? block.end() : separator + 1, block.end());
    if (sql.empty() || (has_result && (separator == block.end() || expected.empty()))) {
      ADD_FAILURE_AT(file_.c_str(), line) << "registro mal formado: " << head;
      return;
    }
    try {
      if (word == "sqlite") {
        current_->execute_native(sql);
      } else if (word == "statement ok") {
        current_->execute(sql);
      } else if (word == "statement error") {
        current_->execute(sql);
        ADD_FAILURE_AT(file_.c_str(), line) << "se esperaba un error que dijera '" << argument
                                            << "' y la instrucción se ejecutó\n  " << sql;
      } else if (word == "query") {
        check(line, sql, expected, query_lines(sql));
      } else {
        ADD_FAILURE_AT(file_.c_str(), line) << "directiva desconocida: " << head;
      }
    } catch (const db::Error& e) {
      if (word != "statement error") {
        ADD_FAILURE_AT(file_.c_str(), line) << word << " rechazado\n  " << sql << "\n  " << describe(e);
      } else if (lower(e.message()).find(lower(argument)) == std::string::npos) {
        ADD_FAILURE_AT(file_.c_str(), line)
            << "el error no dice '" << argument << "'\n  " << sql << "\n  " << describe(e);
      }
    }
  }

  // The header line and one tab-separated line per row, as the console shows them.
  std::vector<std::string> query_lines(const std::string& sql) {
    db::Recordset rs = current_->open_recordset(sql);
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < rs.field_count(); ++i) lines[0] += (i ? "\t" : "") + rs.field_name(i);
    for (const auto& row : rs.rows()) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) line += (i ? "\t" : "") + db::console_text(row[i]);
      lines.push_back(line);
    }
    return lines;
  }

  void check(int line, const std::string& sql, const std::vector<std::string>& expected,
             const std::vector<std::string>& actual) {
    if (actual == expected) return;
    std::string text = "resultado distinto\n  " + sql + "\n  esperado:\n";
    for (const auto& l : expected) text += "    " + l + "\n";
    text += "  obtenido:\n";
    for (const auto& l : actual) text += "    " + l + "\n";
    ADD_FAILURE_AT(file_.c_str(), line) << text;
  }

  std::string file_;
  fs::path folder_;
  std::map<std::string, std::unique_ptr<db::SqliteConnection>> connections_;
  db::SqliteConnection* current_ = nullptr;
};

std::vector<std::string> golden_files() {
  std::vector<std::string> files;
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(fs::path(KEL_TEST_DIR) / "golden", ec)) {
    if (entry.path().extension() == ".test") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, Runs) {
  const std::string& path = GetParam();
  std::string text = testing_db::TempFolder::read(path);
  ASSERT_FALSE(text.empty()) << "archivo vacío o ilegible: " << path;
  testing_db::TempFolder folder;
  GoldenRun(path, folder.path()).run(text);
}

// A malformed record fails the file instead of passing silently.
TEST(GoldenRunner, MalformedRecordsFail) {
  for (const char* text : {"query\nSelect 1\n", "statement ok\nSelect * From NoHay\n", "consulta\nSelect 1\n",
                           "statement ok\n", "connect\n", "query\nSelect 2\n----\n",
                           "query\nSelect 2 As X\n----\nX\n3\n", "statement error nada\nSelect 1\n"}) {
    SCOPED_TRACE(text);
    testing_db::TempFolder folder;
    testing::TestPartResultArray failures;
    {
      testing::ScopedFakeTestPartResultReporter reporter(
          testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
      GoldenRun("mal.test", folder.path()).run(text);
    }
    EXPECT_EQ(failures.size(), 1);
  }
}

std::string case_name(const testing::TestParamInfo<std::string>& info) {
  std::string name = fs::path(info.param).stem().string();
  for (auto& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(golden_files()), case_name);

}  // namespace
