// tests/jet/collation_test.cpp — Jet's Spanish case-insensitive text order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "db/jet/collation.h"

namespace {

int Sign(int x) { return (x > 0) - (x < 0); }

TEST(JetCollation, ComparesAsJetDoes) {
  struct Case {
    const char* a;
    const char* b;
    int expected;
  };
  const std::vector<Case> cases = {
      {"ana", "ANA", 0}, {"ÑANDÚ", "ñandú", 0}, {"ÁRBOL", "árbol", 0}, {"Ünico", "ünico", 0},
      {"Çedilla", "çedilla", 0},
      {"a", "á", -1},  // accents tell texts apart; the plain letter first
      {"á", "b", -1}, {"Á", "b", -1}, {"n", "ñ", -1}, {"nz", "ña", -1}, {"ñ", "o", -1}, {"Ñ", "O", -1},
      {"Núñez", "Nuñez", 1}, {"Oña", "Ñu", 1},
      {"", "a", -1}, {"ab", "abc", -1}, {"abc", "ABD", -1},
      {"10", "9", -1},  // texts, not numbers
      {"2024-02-01", "2024-02-01 00:00:00", -1}, {"2024-01-31", "2024-02-01", -1},
      {"_", "a", -1}, {"z", "{", -1}, {"z", "é", 1}, {"zz", "€", -1},
      // Not UTF-8: each byte counts on its own, consistently.
      {"\xD1" "a", "\xD1" "a", 0}, {"\xC3", "\xC3", 0}, {"a\xC3", "a\xC3\xB1", -1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Sign(db::jet::compare_text(c.a, c.b)), c.expected) << c.a << " vs " << c.b;
    EXPECT_EQ(Sign(db::jet::compare_text(c.b, c.a)), -c.expected) << c.b << " vs " << c.a;
  }
}

}  // namespace
