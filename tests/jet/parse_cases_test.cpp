// tests/jet/parse_cases_test.cpp — runs tests/jet/parse_cases.txt.
//
// The file pins the SQLite text emitted for Jet inputs. Format:
//   # comment
//   table <Name>: col1 [TYPE], col2 [TYPE], ...   (declares a table for the fake context)
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

std::string Trim(const std::string& s) {
  std::size_t b = s.find_first_not_of(" \t\r");
  return b == std::string::npos ? "" : s.substr(b, s.find_last_not_of(" \t\r") - b + 1);
}

TEST(JetParseCases, EveryCaseEmitsItsPinnedText) {
  std::ifstream in(std::string(KEL_TEST_DIR) + "/parse_cases.txt");
  ASSERT_TRUE(in) << "cannot open parse_cases.txt";
  // Tables are declared before any case runs, wherever they are in the file.
  struct Case {
    int line;
    std::string jet, expected;
  };
  std::vector<Case> cases;
  kel_test::FakeContext context;
  Case current{0, "", ""};
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    std::string text = Trim(line);
    if (text.empty() || text[0] == '#') continue;
    if (text.rfind("table ", 0) == 0) {
      std::size_t colon = text.find(':');
      ASSERT_NE(colon, std::string::npos) << "line " << number;
      std::vector<std::string> columns;
      std::stringstream list(text.substr(colon + 1));
      for (std::string column; std::getline(list, column, ',');) columns.push_back(Trim(column));
      context.AddTable(Trim(text.substr(6, colon - 6)), columns);
    } else if (text.rfind("=> ", 0) == 0 || text.rfind("!! ", 0) == 0) {
      ASSERT_FALSE(current.jet.empty()) << "expectation without input at line " << number;
      current.expected = text;
      cases.push_back(current);
      current = Case{0, "", ""};
    } else {
      if (current.jet.empty()) current.line = number;
      current.jet += (current.jet.empty() ? "" : "\n") + line;
    }
  }
  ASSERT_TRUE(current.jet.empty()) << "input without expectation at line " << current.line;
  ASSERT_GT(cases.size(), 50u);
  for (const Case& c : cases) {
    SCOPED_TRACE("parse_cases.txt line " + std::to_string(c.line) + ": " + c.jet);
    const bool expect_error = c.expected[0] == '!';
    const std::string expected = c.expected.substr(3);
    try {
      db::jet::Translation t = db::jet::translate(c.jet, context);
      ASSERT_EQ(t.statements.size(), 1u);
      if (expect_error) {
        ADD_FAILURE() << "expected an error containing: " << expected << "\n got: " << t.statements[0];
      } else {
        EXPECT_EQ(t.statements[0], expected);
      }
    } catch (const db::jet::TranslateError& e) {
      EXPECT_TRUE(expect_error) << "unexpected error: " << e.what();
      EXPECT_TRUE(!expect_error || std::string(e.what()).find(expected) != std::string::npos)
          << "message: " << e.what();
    }
  }
}

}  // namespace
