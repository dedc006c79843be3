// Tests of the text helpers: number reading, case folding, replacing, wildcards.
#include <gtest/gtest.h>

#include "settings/strings.h"

using namespace settings;

TEST(Strings, ValReadsTheLeadingNumberLikeBasic) {
  EXPECT_EQ(Val("20"), 20);
  EXPECT_EQ(Val("  -1 KEL"), -1);
  EXPECT_EQ(Val("1-Monto Imponible Mensual"), 1);
  EXPECT_EQ(Val("H-Haberes"), 0);
  EXPECT_EQ(Val("1 2"), 12);
  EXPECT_EQ(Val("2.5e1x"), 25);
  EXPECT_EQ(Val(""), 0);
  EXPECT_EQ(Val("."), 0);
  EXPECT_EQ(ValInt32("2.5"), 2);   // half to even
  EXPECT_EQ(ValInt32("3.5"), 4);
  EXPECT_EQ(ValInt32("-7.6"), -8);
  bool over = false;
  ValInt32("99999999999", &over);
  EXPECT_TRUE(over);
  EXPECT_EQ(NumberText(-5), "-5");
  EXPECT_EQ(NumberText(1.5), "1.5");
}

TEST(Strings, CaseInsensitiveHelpers) {
  EXPECT_TRUE(IEquals("Compañía", "COMPAÑÍA"));
  EXPECT_FALSE(IEquals("a", "ab"));
  EXPECT_TRUE(IStartsWith("pass=x", "PASS"));
  EXPECT_EQ(IFind("Select [BDORIGEN]", "[bdorigen]"), 7u);
  EXPECT_EQ(IFind("xxAÑOxx", "año"), 2u);
  EXPECT_EQ(IFind("xxaÑo", "AñO", 3), std::string::npos);
  EXPECT_EQ(IFind("abcABC", "C", 3), 5u);
  EXPECT_EQ(IFind("ab", "abc"), std::string::npos);
  EXPECT_EQ(IFind("ab", "", 1), 1u);
  EXPECT_EQ(Trim(" \t a b \r\n"), "a b");
  EXPECT_EQ(SplitChar("a||b", '|'), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_EQ(SplitChar("", '|'), (std::vector<std::string>{""}));
}

TEST(Strings, ReplaceAllIgnoresCaseAndDoesNotRescan) {
  EXPECT_EQ(IReplaceAll("[x] y [X]", "[x]", "1"), "1 y 1");
  EXPECT_EQ(IReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(IReplaceAll("abc", "", "z"), "abc");
  EXPECT_EQ(IReplaceAll("AÑO año", "año", "2024"), "2024 2024");
}

TEST(Strings, WildcardMatch) {
  EXPECT_TRUE(WildcardMatch("EMP2024.TXT", "emp*.txt"));
  EXPECT_TRUE(WildcardMatch("a.csv", "?.csv"));
  EXPECT_TRUE(WildcardMatch("ñ.csv", "?.csv"));
  EXPECT_FALSE(WildcardMatch("ab.csv", "?.csv"));
  EXPECT_TRUE(WildcardMatch("x", "*"));
  EXPECT_TRUE(WildcardMatch("", "*"));
  EXPECT_FALSE(WildcardMatch("emp.txt.bak", "*.txt"));
  EXPECT_TRUE(WildcardMatch("a.b.txt", "*.txt"));
  EXPECT_FALSE(WildcardMatch("EMP.TXT", "emp.txt", false));
}
