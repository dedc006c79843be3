// tests/db/golden_test.cpp — runs every golden file (tests/db/golden/*.test)
// as its own test case, on fresh SQLite files in a fresh temporary folder,
// through the program's own connection and Jet translator.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "db/value_format.h"
#include "golden_file.h"
#include "temp_folder.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> golden_files() {
  std::vector<std::string> files;
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(fs::path(KEL_TEST_DIR) / "golden", ec)) {
    if (entry.path().extension() == ".test") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

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

std::string join(const std::vector<std::string>& lines) {
  std::string out;
  for (const auto& line : lines) out += "    " + line + "\n";
  return out;
}

std::string describe(const db::Error& e) {
  std::string out = e.message();
  if (!e.translated_text().empty()) out += "\n  SQLite: " + e.translated_text();
  return out;
}

class GoldenRun {
 public:
  GoldenRun(std::string file, const fs::path& folder) : file_(std::move(file)), folder_(folder) {}

  void run(const golden::File& parsed) {
    for (const auto& problem : parsed.problems) {
      ADD_FAILURE() << file_ << ": archivo mal formado, " << problem;
    }
    switch_to("main");
    for (const auto& record : parsed.records) run(record);
  }

 private:
  void switch_to(const std::string& name) {
    auto& conn = connections_[name];
    if (!conn) {
      fs::path path = folder_ / (name + ".db");
      if (!fs::exists(path)) std::ofstream(path).flush();  // an empty file is an empty database
      conn = std::make_unique<db::SqliteConnection>();
      if (!conn->open(path.string())) {
        ADD_FAILURE() << file_ << ": no se pudo abrir " << path << ": " << conn->last_error();
      }
    }
    current_ = conn.get();
  }

  void run(const golden::Record& record) {
    const std::string dir = folder_.string();
    const std::string sql = replace_all(record.sql, "{dir}", dir);
    std::vector<std::string> expected;
    for (const auto& line : record.expected) expected.push_back(replace_all(line, "{dir}", dir));
    switch (record.kind) {
      case golden::Kind::kConnect:
        switch_to(record.argument);
        return;
      case golden::Kind::kSqlite:
        try {
          current_->execute_native(sql);
        } catch (const db::Error& e) {
          ADD_FAILURE_AT(file_.c_str(), record.line)
              << "la preparación sqlite falló\n  " << sql << "\n  " << describe(e);
        }
        return;
      case golden::Kind::kStatementOk:
        try {
          current_->execute(sql);
        } catch (const db::Error& e) {
          ADD_FAILURE_AT(file_.c_str(), record.line)
              << "la instrucción fue rechazada\n  " << sql << "\n  " << describe(e);
        }
        return;
      case golden::Kind::kStatementError:
        try {
          current_->execute(sql);
          ADD_FAILURE_AT(file_.c_str(), record.line)
              << "se esperaba un error que dijera '" << record.argument
              << "' y la instrucción se ejecutó\n  " << sql;
        } catch (const db::Error& e) {
          if (lower(e.message()).find(lower(record.argument)) == std::string::npos) {
            ADD_FAILURE_AT(file_.c_str(), record.line)
                << "el error no dice '" << record.argument << "'\n  " << sql << "\n  "
                << describe(e);
          }
        }
        return;
      case golden::Kind::kQuery:
        check_query(record, sql, expected);
        return;
      case golden::Kind::kExplain:
        check_explain(record, sql, expected);
        return;
    }
  }

  void check_query(const golden::Record& record, const std::string& sql,
                   const std::vector<std::string>& expected) {
    std::vector<std::string> actual;
    try {
      db::Recordset rs = current_->open_recordset(sql);
      std::string header;
      for (std::size_t i = 0; i < rs.field_count(); ++i) {
        header += (i ? "\t" : "") + rs.field_name(i);
      }
      actual.push_back(header);
      for (const auto& row : rs.rows()) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
          line += (i ? "\t" : "") + db::console_text(row[i]);
        }
        actual.push_back(line);
      }
    } catch (const db::Error& e) {
      ADD_FAILURE_AT(file_.c_str(), record.line)
          << "la consulta fue rechazada\n  " << sql << "\n  " << describe(e);
      return;
    }
    if (actual != expected) {
      ADD_FAILURE_AT(file_.c_str(), record.line)
          << "resultado distinto\n  " << sql << "\n  esperado:\n"
          << join(expected) << "  obtenido:\n"
          << join(actual);
    }
  }

  void check_explain(const golden::Record& record, const std::string& sql,
                     const std::vector<std::string>& expected) {
    std::string actual;
    try {
      auto translation = current_->translate(sql);
      if (!translation.statements.empty()) actual = translation.statements.front();
    } catch (const db::Error& e) {
      ADD_FAILURE_AT(file_.c_str(), record.line)
          << "la traducción falló\n  " << sql << "\n  " << describe(e);
      return;
    }
    if (actual != expected.front()) {
      ADD_FAILURE_AT(file_.c_str(), record.line)
          << "traducción distinta\n  " << sql << "\n  esperado:\n    " << expected.front()
          << "\n  obtenido:\n    " << actual;
    }
  }

  std::string file_;
  fs::path folder_;
  std::map<std::string, std::unique_ptr<db::SqliteConnection>> connections_;
  db::SqliteConnection* current_ = nullptr;
};

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, Runs) {
  const std::string& path = GetParam();
  std::string text = read_file(path);
  ASSERT_FALSE(text.empty()) << "archivo vacío o ilegible: " << path;
  testing_db::TempFolder folder("golden_" + fs::path(path).stem().string());
  GoldenRun(path, folder.path()).run(golden::parse(text));
}

std::string case_name(const testing::TestParamInfo<std::string>& info) {
  std::string name = fs::path(info.param).stem().string();
  for (auto& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(golden_files()), case_name);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Golden);

}  // namespace
