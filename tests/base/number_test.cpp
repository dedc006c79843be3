// tests/base/number_test.cpp — the program's one Val: the readings where the
// format files' Val and the translator's Val used to disagree, ValInt32's
// rounding and clamping, and the days of a month.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "base/month.h"
#include "base/number.h"
#include "base/value.h"

namespace base {
namespace {

// Val as "int:<n>" or "real:<text>" so that the kind is checked too.
std::string val(std::string_view s) {
  Number n = val_text(s);
  return n.is_int ? "int:" + std::to_string(n.i) : "real:" + cstr_number(n.d);
}

TEST(Val, ReadsTheLeadingNumberAsBasicDoes) {
  const std::pair<const char*, const char*> cases[] = {
      // hexadecimal and octal (the format files' Val read these as 0)
      {"&H1F", "int:31"}, {"&h1f", "int:31"}, {"&O17", "int:15"}, {"&HFFFF", "int:-1"},
      {"&HFFFFFFFF", "int:-1"}, {"&H1 F", "int:31"}, {"&O8", "int:0"}, {"&", "int:0"},
      // leading blanks, and blanks inside the number
      {"   20", "int:20"}, {"\t\r\n7", "int:7"}, {"  -  12", "int:-12"}, {"1 2", "int:12"},
      // trailing garbage stops the reading
      {"  -1 KEL", "int:-1"}, {"1-Monto Imponible Mensual", "int:1"}, {"H-Haberes", "int:0"},
      {"12.3.4", "real:12.3"}, {"3,5", "int:3"}, {"", "int:0"}, {".", "int:0"}, {"-", "int:0"},
      // exponents, with e or d, and an exponent without digits ignored
      {"2.5e1x", "int:25"}, {"1.5D2", "int:150"}, {"1e-2", "real:0.01"}, {"1e", "int:1"},
      {"1e+", "int:1"}, {"4 e 1", "int:40"},
      // long whole numbers stay exact (through a double they would not)
      {"9007199254740993", "int:9007199254740993"}, {"-123456789012345678", "int:-123456789012345678"},
      {"123456789012345678901234567890", "real:1.23456789012346E+29"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(val(text), expected) << "'" << text << "'";
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
