// tests/jet/parse_cases_test.cpp — runs tests/jet/parse_cases.txt.
//
// The file pins the SQLite text emitted for Jet inputs. Format:
//   # comment
//   table <Name>: col1, col2, ...      (declares a table for the fake context)
//   <Jet text, one or more lines>
//   => <expected SQLite text>          or   !! <text the error message contains>
// Each case is reported with its line number so a failure points at it.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "fake_context.h"

namespace {

struct Case {
  int line = 0;
  std::string jet;
  bool expect_error = false;
  std::string expected;
};

std::string Trim(const std::string& s) {
  std::size_t b = s.find_first_not_of(" \t\r");
  if (b == std::string::npos) return "";
  std::size_t e = s.find_last_not_of(" \t\r");
  return s.substr(b, e - b + 1);
}

void Load(const std::string& path, kel_test::FakeContext& context, std::vector<Case>& cases) {
  std::ifstream in(path);
  ASSERT_TRUE(in) << "cannot open " << path;
  std::string line;
  int number = 0;
  Case current;
  while (std::getline(in, line)) {
    ++number;
    std::string text = Trim(line);
    if (text.empty() || text[0] == '#') continue;
    if (text.rfind("table ", 0) == 0) {
      std::size_t colon = text.find(':');
      ASSERT_NE(colon, std::string::npos) << "line " << number;
      std::vector<std::string> columns;
      std::stringstream list(text.substr(colon + 1));
      std::string column;
      while (std::getline(list, column, ',')) columns.push_back(Trim(column));
      context.AddTable(Trim(text.substr(6, colon - 6)), columns);
      continue;
    }
    if (text.rfind("=> ", 0) == 0 || text.rfind("!! ", 0) == 0) {
      ASSERT_FALSE(current.jet.empty()) << "expectation without input at line " << number;
      current.expect_error = text[0] == '!';
      current.expected = text.substr(3);
      cases.push_back(current);
      current = Case{};
      continue;
    }
    if (current.jet.empty()) current.line = number;
    current.jet += (current.jet.empty() ? "" : "\n") + line;
  }
  ASSERT_TRUE(current.jet.empty()) << "input without expectation at line " << current.line;
}

TEST(JetParseCases, EveryCaseEmitsItsPinnedText) {
  kel_test::FakeContext context;
  std::vector<Case> cases;
  Load(std::string(KEL_TEST_DIR) + "/parse_cases.txt", context, cases);
  ASSERT_GT(cases.size(), 50u);
  for (const Case& c : cases) {
    SCOPED_TRACE("parse_cases.txt line " + std::to_string(c.line) + ": " + c.jet);
    try {
      db::jet::Translation t = db::jet::translate(c.jet, context);
      ASSERT_EQ(t.statements.size(), 1u);
      EXPECT_FALSE(c.expect_error) << "expected an error containing: " << c.expected
                                   << "\n got: " << t.statements[0];
      if (!c.expect_error) {
        EXPECT_EQ(t.statements[0], c.expected);
      }
    } catch (const db::jet::TranslateError& e) {
      EXPECT_TRUE(c.expect_error) << "unexpected error: " << e.what();
      if (c.expect_error) {
        EXPECT_NE(std::string(e.what()).find(c.expected), std::string::npos)
            << "message: " << e.what();
      }
    }
  }
}

}  // namespace
