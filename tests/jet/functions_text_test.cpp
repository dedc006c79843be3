// tests/jet/functions_text_test.cpp — the text primitives on UTF-8: lengths
// and pieces in characters, InStr, Trim, case conversion and Like.
#include <gtest/gtest.h>

#include <tuple>

#include "db/jet/functions.h"

namespace db::jet {
namespace {

std::string upper(std::string_view s) {
  std::string out;
  append_upper(out, s);
  return out;
}

std::string lower(std::string_view s) {
  std::string out;
  append_lower(out, s);
  return out;
}

TEST(JetText, PiecesCountCharactersNotBytes) {
  const std::string s = "Peña Ñandú";  // 10 characters, 13 bytes
  EXPECT_EQ(char_count(s), 10);
  EXPECT_EQ(char_count(""), 0);
  EXPECT_EQ(left_chars(s, 3), "Peñ");
  EXPECT_EQ(left_chars(s, 0), "");
  EXPECT_EQ(left_chars(s, 99), s);
  EXPECT_EQ(right_chars(s, 2), "dú");
  EXPECT_EQ(right_chars(s, 0), "");
  EXPECT_EQ(right_chars(s, 99), s);
  EXPECT_EQ(mid_chars(s, 3, 4), "ña Ñ");
  EXPECT_EQ(mid_chars(s, 6, std::nullopt), "Ñandú");
  EXPECT_EQ(mid_chars(s, 11, 2), "");
  EXPECT_EQ(mid_chars(s, 1, 0), "");
  // Broken UTF-8 is cut at byte boundaries that stay consistent, never refused.
  const std::string broken = "a\x80\x80" "b\xC3";
  EXPECT_EQ(char_count(broken), 3);
  EXPECT_EQ(left_chars(broken, 1), "a\x80\x80");
  EXPECT_EQ(right_chars(broken, 1), "\xC3");
  const std::string leading_cont = "\x80z";
  EXPECT_EQ(char_count(leading_cont), 2);
  EXPECT_EQ(right_chars(leading_cont, 2), leading_cont);
}

TEST(JetText, InStrIsCaseInsensitiveAndCountsCharacters) {
  EXPECT_EQ(instr_chars(1, "12345-6", "-"), 6);
  EXPECT_EQ(instr_chars(1, "abc", "B"), 2);
  EXPECT_EQ(instr_chars(1, "abc", "x"), 0);
  EXPECT_EQ(instr_chars(1, "abcabc", "bc"), 2);
  EXPECT_EQ(instr_chars(3, "abcabc", "bc"), 5);
  EXPECT_EQ(instr_chars(7, "abcabc", "c"), 0);
  EXPECT_EQ(instr_chars(1, "abc", "abcd"), 0);
  EXPECT_EQ(instr_chars(1, "", "a"), 0);
  EXPECT_EQ(instr_chars(2, "abc", ""), 2);
  EXPECT_EQ(instr_chars(4, "abc", ""), 0);
  EXPECT_EQ(instr_chars(1, "José Peña_1", "_"), 10);
  EXPECT_EQ(instr_chars(1, "JOSÉ PEÑA", "peña"), 6);
  EXPECT_EQ(instr_chars(7, "ÑañÑañ", "ÑAÑ"), 0);
  EXPECT_EQ(instr_chars(2, "ÑañÑañ", "ÑAÑ"), 4);
  EXPECT_EQ(instr_chars(1, "abC", "c", true), 0);
  EXPECT_EQ(instr_chars(1, "ñabC", "C", true), 4);
}

TEST(JetText, TrimOnlyRemovesSpaces) {
  EXPECT_EQ(trim_view("  a b  ", true, true), "a b");
  EXPECT_EQ(trim_view("  a b  ", true, false), "a b  ");
  EXPECT_EQ(trim_view("  a b  ", false, true), "  a b");
  EXPECT_EQ(trim_view("\ta\t", true, true), "\ta\t");
  EXPECT_EQ(trim_view("   ", true, true), "");
}

TEST(JetText, CaseConversionCoversLatinLetters) {
  EXPECT_EQ(upper("peña, josé; ç à è ü ÿ"), "PEÑA, JOSÉ; Ç À È Ü Ÿ");
  EXPECT_EQ(lower("PEÑA, JOSÉ; Ç À È Ü Ÿ"), "peña, josé; ç à è ü ÿ");
  EXPECT_EQ(upper("ł ő ž"), "Ł Ő Ž");
  EXPECT_EQ(lower("Ł Ő Ž"), "ł ő ž");
  EXPECT_EQ(upper("× ÷ ß 1€"), "× ÷ ß 1€");
  EXPECT_EQ(upper("a\xC3z"), "A\xC3Z");  // broken bytes kept
}

TEST(JetText, LikeUsesJetAndOleDbWildcards) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"Pérez", "p*", true}, {"PÉREZ", "*érez", true}, {"abc", "a?c", true}, {"ac", "a?c", false},
      {"a1c", "a#c", true}, {"abc", "a#c", false}, {"b", "[a-c]", true}, {"B", "[a-c]", true},
      {"d", "[a-c]", false}, {"d", "[!a-c]", true}, {"*", "[*]", true}, {"x", "[*]", false},
      {"a-b", "a[-]b", true}, {"Ñ", "[ñ]", true}, {"", "*", true}, {"", "?", false},
      {"abcbcd", "a*bcd", true}, {"mississippi", "*sip*", true}, {"mississippi", "*sipx*", false},
      {"abc", "ab", false},
      // The OLE DB wildcards % and _ too; [%] and [_] are the literal characters.
      {"Pérez", "p%", true}, {"1000", "100%", true}, {"abc", "a_c", true}, {"ac", "a_c", false},
      {"100%", "100[%]", true}, {"1000", "100[%]", false}, {"a_b", "a[_]b", true}, {"axb", "a[_]b", false},
  };
  for (const auto& [text, pattern, matches] : cases) {
    EXPECT_EQ(like_match(text, pattern), matches) << text << " Like " << pattern;
  }
  EXPECT_THROW(like_match("a", "[a"), FunctionError);
  // A pattern read once matches like like_match, text after text.
  LikePattern kept("*-#");
  EXPECT_TRUE(kept.matches("1234567-8"));
  EXPECT_FALSE(kept.matches("1234567-x"));
  EXPECT_TRUE(kept.matches("a-b-9"));
  EXPECT_THROW(LikePattern("[!a"), FunctionError);
}

}  // namespace
}  // namespace db::jet
