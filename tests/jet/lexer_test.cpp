// tests/jet/lexer_test.cpp — Jet tokens and date literals.
#include <gtest/gtest.h>

#include "db/jet/lexer.h"
#include "db/jet/translator.h"

namespace {

using db::jet::JetDateToIso;
using db::jet::Tokenize;
using db::jet::TokenKind;

TEST(JetLexer, DateLiteralsAreMonthFirstAndBecomeIsoText) {
  EXPECT_EQ(JetDateToIso("03/25/2080"), "2080-03-25");
  EXPECT_EQ(JetDateToIso("3/5/2024"), "2024-03-05");
  EXPECT_EQ(JetDateToIso("2024-02-29"), "2024-02-29");
  EXPECT_EQ(JetDateToIso("02/29/2024 13:05"), "2024-02-29 13:05:00");
  EXPECT_EQ(JetDateToIso("12/31/2023 12:30:15 AM"), "2023-12-31 00:30:15");
  EXPECT_EQ(JetDateToIso("12/31/2023 12:30 pm"), "2023-12-31 12:30:00");
  EXPECT_EQ(JetDateToIso(" 01/02/2023 "), "2023-01-02");
  // Impossible month first, so Jet reads it day first; two-digit years are 1930-2029.
  EXPECT_EQ(JetDateToIso("13/01/2023"), "2023-01-13");
  EXPECT_EQ(JetDateToIso("01/02/23"), "2023-01-02");
  // Not dates.
  EXPECT_EQ(JetDateToIso("02/29/2023"), "");  // not a leap year
  EXPECT_EQ(JetDateToIso("01/32/2023"), "");
  EXPECT_EQ(JetDateToIso("01/02/2023 24:00"), "");
  EXPECT_EQ(JetDateToIso("01/02/2023 13:00 PM"), "");
  EXPECT_EQ(JetDateToIso("hoy"), "");
  EXPECT_EQ(JetDateToIso(""), "");
}

TEST(JetLexer, TokensKeepTheirKindTextAndPosition) {
  auto tokens = Tokenize("Select [Fecha alta], 'it''s', \"a\"\"b\", 1.5e3, .5, #1/2/2024# <> x;");
  ASSERT_EQ(tokens.size(), 16u);
  EXPECT_EQ(tokens[0].kind, TokenKind::kName);
  EXPECT_FALSE(tokens[0].bracketed);
  EXPECT_EQ(tokens[1].text, "Fecha alta");
  EXPECT_TRUE(tokens[1].bracketed);
  EXPECT_EQ(tokens[1].pos, 7u);
  EXPECT_EQ(tokens[3].kind, TokenKind::kString);
  EXPECT_EQ(tokens[3].text, "it's");
  EXPECT_EQ(tokens[5].text, "a\"b");
  EXPECT_EQ(tokens[7].kind, TokenKind::kNumber);
  EXPECT_EQ(tokens[7].text, "1.5e3");
  EXPECT_EQ(tokens[9].text, "0.5");
  EXPECT_EQ(tokens[11].kind, TokenKind::kDate);
  EXPECT_EQ(tokens[11].text, "2024-01-02");
  EXPECT_EQ(tokens[12].text, "<>");
  EXPECT_EQ(tokens[14].text, ";");
  EXPECT_EQ(tokens[15].kind, TokenKind::kEnd);

  // Accented letters belong to names.
  auto accented = Tokenize("Año+1");
  EXPECT_EQ(accented[0].text, "Año");
  EXPECT_EQ(accented[1].text, "+");
}

TEST(JetLexer, MalformedTokensAreRefusedWithTheirPosition) {
  struct Case {
    const char* text;
    std::size_t pos;
  } cases[] = {{"Select 'abc", 7}, {"Select [abc", 7}, {"Select #1/2/2024", 7},
               {"Select #31/31/2024#", 7}, {"Select a ? b", 9}, {"Select 12abc", 9},
               {"Select []", 7}};
  for (const Case& c : cases) {
    try {
      Tokenize(c.text);
      ADD_FAILURE() << "no error for " << c.text;
    } catch (const db::jet::TranslateError& e) {
      EXPECT_EQ(e.position(), c.pos) << c.text << ": " << e.what();
    }
  }
}

}  // namespace
