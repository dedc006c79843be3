// tests/base/number_test.cpp — the program's one Val: the readings where the
// format files' Val and the translator's Val used to disagree, ValInt32's
// rounding and clamping, and the days of a month.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "base/month.h"
#include "base/number.h"
#include "base/value.h"

namespace base {
namespace {

TEST(Val, ReadsTheLeadingNumberAsBasicDoes) {
  // `whole` is set when Val gives an exact integer, otherwise `real`.
  struct Row { const char* text; std::optional<std::int64_t> whole; double real; };
  const Row rows[] = {
      // hexadecimal and octal (the format files' Val read these as 0)
      {"&H1F", 31, 0}, {"&h1f", 31, 0}, {"&O17", 15, 0}, {"&HFFFF", -1, 0}, {"&HFFFFFFFF", -1, 0},
      {"&H1 F", 31, 0}, {"&O8", 0, 0}, {"&", 0, 0},
      // leading blanks, and blanks inside the number
      {"   20", 20, 0}, {"\t\r\n7", 7, 0}, {"  -  12", -12, 0}, {"1 2", 12, 0},
      // trailing garbage stops the reading
      {"  -1 KEL", -1, 0}, {"1-Monto Imponible Mensual", 1, 0}, {"H-Haberes", 0, 0}, {"12.3.4", {}, 12.3},
      {"3,5", 3, 0}, {"", 0, 0}, {".", 0, 0}, {"-", 0, 0},
      // exponents, with e or d; an exponent without digits is left out
      {"2.5e1x", 25, 0}, {"1.5D2", 150, 0}, {"1e-2", {}, 0.01}, {"1e", 1, 0}, {"1e+", 1, 0}, {"4 e 1", 40, 0},
      // long whole numbers stay exact (through a double they would not)
      {"9007199254740993", 9007199254740993, 0}, {"-123456789012345678", -123456789012345678, 0},
      {"123456789012345678901234567890", {}, 1.2345678901234568e29},
  };
  for (const Row& r : rows) {
    const Number n = val_text(r.text);
    EXPECT_EQ(n.is_int, r.whole.has_value()) << "'" << r.text << "'";
    if (r.whole) {
      EXPECT_EQ(n.i, *r.whole) << "'" << r.text << "'";
    } else {
      EXPECT_DOUBLE_EQ(n.d, r.real) << "'" << r.text << "'";
    }
  }
  EXPECT_EQ(Val("&H1F"), 31.0);
  EXPECT_EQ(as_int(Value{std::string("9007199254740993")}), 9007199254740993);
}

TEST(Val, Int32RoundsHalfToEvenAndClampsWithOverflow) {
  struct Row { const char* text; std::int32_t value; bool overflow; };
  const Row rows[] = {
      {"2.5", 2, false}, {"3.5", 4, false}, {"-2.5", -2, false}, {"&H1F", 31, false},
      {"2147483647", 2147483647, false}, {"2147483648", 2147483647, true},
      {"-2147483649", -2147483647 - 1, true}, {"1e300", 2147483647, true}, {"abc", 0, false},
  };
  for (const Row& r : rows) {
    bool overflow = !r.overflow;
    EXPECT_EQ(ValInt32(r.text, &overflow), r.value) << r.text;
    EXPECT_EQ(overflow, r.overflow) << r.text;
  }
}

TEST(Month, DaysOfEachMonthWithLeapYears) {
  struct Row { std::int64_t year; int month; int days; };
  const Row rows[] = {{2024, 2, 29}, {2023, 2, 28}, {1900, 2, 28}, {2000, 2, 29}, {2024, 1, 31},
                      {2024, 4, 30}, {2024, 12, 31}, {2024, 0, 0}, {2024, 13, 0}};
  for (const Row& r : rows) EXPECT_EQ(days_in_month(r.year, r.month), r.days) << r.year << "-" << r.month;
}

}  // namespace
}  // namespace base
