// tests/settings/statement_splitter_test.cpp — where statements end, for the
// statement files and the SQL console alike; the rows marked "was" are where
// the two used to differ.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/statement_splitter.h"

namespace settings {
namespace {

TEST(StatementSplitter, OneRuleForFilesAndConsole) {
  using List = std::vector<std::string>;
  struct Row { const char* text; List statements; };
  const Row rows[] = {
      {"Select 1;\nSelect 2;", {"Select 1", "Select 2"}},
      {"Delete\n  From T\nWhere x = 1 ;\n", {"Delete\n  From T\nWhere x = 1"}},
      {"Select 1\n", {"Select 1"}},  // no ";" at the end of the text
      {"\n\n  \nSelect 1;\n\n", {"Select 1"}},
      {"Select 'a;b' From T;", {"Select 'a;b' From T"}},  // ";" inside a line does not end it
      {";\n;\n", {}},
      // was: the console ran comment lines as part of the statement
      {"-- vacía la tabla\nDelete From T;\n  -- fin", {"Delete From T"}},
      {"Select 1 -- no es comentario;", {"Select 1 -- no es comentario"}},
      // was: the files kept one of two ";" and the blanks before it
      {"Select 1;;", {"Select 1"}},
      {"Select 1 ; ", {"Select 1"}},
      // was: the console kept the CR of CR LF line ends inside statements
      {"Select 1,\r\n2;\r\nSelect 3;\r\n", {"Select 1,\n2", "Select 3"}},
  };
  for (const Row& r : rows) EXPECT_EQ(SplitStatements(r.text), r.statements) << r.text;
}

TEST(StatementSplitter, LineByLineGivesEachStatementWhenItEnds) {
  StatementSplitter splitter;
  EXPECT_FALSE(splitter.add_line("Select *"));
  EXPECT_EQ(splitter.add_line("From T;\r"), "Select *\nFrom T");
  EXPECT_FALSE(splitter.add_line("Select 2"));
  EXPECT_EQ(splitter.finish(), "Select 2");
  EXPECT_FALSE(splitter.finish());
}

}  // namespace
}  // namespace settings
