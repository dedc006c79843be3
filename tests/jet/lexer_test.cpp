// tests/jet/lexer_test.cpp — Jet tokens; the date literals themselves are
// read by the date functions (functions_date_test.cpp).
#include <gtest/gtest.h>

#include "db/jet/lexer.h"
#include "db/jet/translator.h"

namespace {

using db::jet::Tokenize;
using db::jet::TokenKind;

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
