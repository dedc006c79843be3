// Tests of the text helpers: case folding, replacing, wildcards.
#include <gtest/gtest.h>

#include "settings/strings.h"

using namespace settings;

TEST(Strings, CaseInsensitiveHelpers) {
  EXPECT_TRUE(IEquals("Compañía", "COMPAÑÍA"));
  EXPECT_FALSE(IEquals("a", "ab"));
  EXPECT_TRUE(IStartsWith("pass=x", "PASS"));
  struct Find { std::string text, what; std::size_t from, at; };
  for (const Find& f : std::vector<Find>{{"Select [BDORIGEN]", "[bdorigen]", 0, 7},
                                         {"xxAÑOxx", "año", 0, 2},
                                         {"xxaÑo", "AñO", 3, std::string::npos},
                                         {"abcABC", "C", 3, 5},
                                         {"ab", "abc", 0, std::string::npos},
                                         {"ab", "", 1, 1}})
    EXPECT_EQ(IFind(f.text, f.what, f.from), f.at) << f.text << " / " << f.what;
  EXPECT_EQ(Trim(" \t a b \r\n"), "a b");
  EXPECT_EQ(SplitChar("a||b", '|'), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_EQ(SplitChar("", '|'), (std::vector<std::string>{""}));
  // Replacing ignores case and does not rescan what it put in.
  EXPECT_EQ(IReplaceAll("[x] y [X]", "[x]", "1"), "1 y 1");
  EXPECT_EQ(IReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(IReplaceAll("abc", "", "z"), "abc");
  EXPECT_EQ(IReplaceAll("AÑO año", "año", "2024"), "2024 2024");
}

TEST(Strings, WildcardMatch) {
  struct Row { std::string name, pattern; bool match; };
  for (const Row& r : std::vector<Row>{{"EMP2024.TXT", "emp*.txt", true}, {"a.csv", "?.csv", true},
                                       {"ñ.csv", "?.csv", true},          {"ab.csv", "?.csv", false},
                                       {"x", "*", true},                  {"", "*", true},
                                       {"emp.txt.bak", "*.txt", false},   {"a.b.txt", "*.txt", true}})
    EXPECT_EQ(WildcardMatch(r.name, r.pattern), r.match) << r.name << " ~ " << r.pattern;
  EXPECT_FALSE(WildcardMatch("EMP.TXT", "emp.txt", false));
}
