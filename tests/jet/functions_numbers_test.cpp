// tests/jet/functions_numbers_test.cpp — Val, the strict number reading of
// the conversions, rounding and the CStr text of numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "db/jet/functions.h"

namespace db::jet {
namespace {

// Val as "int:<n>" or "real:<text>" so that the kind is checked too.
std::string val(std::string_view s) {
  Number n = val_text(s);
  return n.is_int ? "int:" + std::to_string(n.i) : "real:" + cstr_number(n.d);
}

TEST(JetNumbers, ValReadsTheLeadingNumber) {
  const std::pair<const char*, const char*> vals[] = {
      {" 12abc", "int:12"}, {"1 2 3", "int:123"}, {"  -  12", "int:-12"}, {"+7", "int:7"},
      {"0012-3", "int:12"}, {"1.5e2", "int:150"}, {"1.5D1", "int:15"}, {"2.5", "real:2.5"},
      {".5", "real:0.5"}, {"-1.25xyz", "real:-1.25"}, {"1,234", "int:1"}, {"1e", "int:1"},
      {"1e+", "int:1"}, {"12.3.4", "real:12.3"}, {"&H1F", "int:31"}, {"&O17", "int:15"},
      {"&HFFFF", "int:-1"}, {"&H10000", "int:65536"}, {"&Hxyz", "int:0"}, {"", "int:0"},
      {"abc", "int:0"}, {"-", "int:0"}, {"\t\n42\r", "int:42"}, {"2024-02-29", "int:2024"},
  };
  for (const auto& [input, expected] : vals) EXPECT_EQ(val(input), expected) << input;
  // Beyond 64 bits the value is a real; long digit runs keep their magnitude.
  EXPECT_EQ(val("123456789012345678901234567890"), "real:1.23456789012346E+29");
  EXPECT_EQ(val("9223372036854775807"), "real:9.22337203685478E+18");
  EXPECT_EQ(val("123456789012345678"), "int:123456789012345678");
}

TEST(JetNumbers, StrictNumberTexts) {
  EXPECT_EQ(text_to_number(" 12 "), 12.0);
  EXPECT_EQ(text_to_number("-1.5"), -1.5);
  EXPECT_EQ(text_to_number("1,5"), 1.5);
  EXPECT_EQ(text_to_number("1e3"), 1000.0);
  EXPECT_EQ(text_to_number("True"), -1.0);
  EXPECT_EQ(text_to_number("falso"), 0.0);
  EXPECT_EQ(text_to_number("2024-02-29"), 45351.0);
  EXPECT_EQ(text_to_number("&H10"), 16.0);
  for (const char* bad : {"", " ", "12abc", "1.2.3", "1,234.5", "abc", "-", "1e", "."})
    EXPECT_FALSE(text_to_number(bad).has_value()) << bad;
}

TEST(JetNumbers, RoundingIsHalfToEvenOnTheDecimalText) {
  std::int64_t i = 0;
  ASSERT_TRUE(round_to_int64(2.5, i));
  EXPECT_EQ(i, 2);
  ASSERT_TRUE(round_to_int64(3.5, i));
  EXPECT_EQ(i, 4);
  ASSERT_TRUE(round_to_int64(-2.5, i));
  EXPECT_EQ(i, -2);
  EXPECT_FALSE(round_to_int64(1e19, i));
  EXPECT_FALSE(round_to_int64(std::nan(""), i));
  const std::tuple<double, int, double> rounded[] = {
      {2.675, 2, 2.68}, {0.125, 2, 0.12}, {0.135, 2, 0.14}, {-1.005, 2, -1.0}, {1.2345, 3, 1.234},
      {9.9996, 3, 10.0}, {0.0004, 3, 0.0}, {0.0006, 3, 0.001}, {123.456, 5, 123.456},
      {2.5, 0, 2.0}, {1234.5678, 2, 1234.57},
  };
  for (const auto& [number, digits, expected] : rounded) {
    EXPECT_EQ(round_half_even(number, digits), expected) << number << " to " << digits;
  }
}

TEST(JetNumbers, CStrOfNumbers) {
  const std::pair<double, const char*> numbers[] = {
      {0.0, "0"}, {-0.0, "0"}, {100.0, "100"}, {-3.0, "-3"}, {1.5, "1.5"}, {0.1, "0.1"},
      {-0.25, "-0.25"}, {123.45, "123.45"}, {0.0001, "0.0001"}, {0.00001, "1E-05"},
      {1.5e-10, "1.5E-10"}, {999999999999999.0, "999999999999999"}, {1e15, "1E+15"},
      {1.5e20, "1.5E+20"}, {123456.789, "123456.789"}, {0.1 + 0.2, "0.3"},
      // 15 significant digits, as VBA shows a Double.
      {1.0 / 3, "0.333333333333333"}, {2.0 / 3, "0.666666666666667"},
      {123456789.123456789, "123456789.123457"}, {9.9999999999999999e20, "1E+21"},
  };
  for (const auto& [input, expected] : numbers) EXPECT_EQ(cstr_number(input), expected) << input;
  char buf[kNumberTextMax];
  EXPECT_LE(cstr_number_to(-1.2345678901234567e-300, buf), kNumberTextMax);
  EXPECT_LE(cstr_number_to(-0.00012345678901234567, buf), kNumberTextMax);
}

TEST(JetNumbers, TextsOfValues) {
  EXPECT_EQ(value_text(Value{}), "");
  EXPECT_EQ(value_text(Value{std::int64_t{-1}}), "-1");
  EXPECT_EQ(value_text(Value{2.0}), "2");
  EXPECT_EQ(value_text(Value{std::string("2024-02-29")}), "2024-02-29");
  EXPECT_EQ(cstr_of(Value{std::string("2024-02-29")}), "29/02/2024");
  EXPECT_EQ(cstr_of(Value{std::string("2024-02-29 08:00:00")}), "29/02/2024 08:00:00");
  EXPECT_EQ(cstr_of(Value{std::string("2024-02-30")}), "2024-02-30");
  EXPECT_EQ(cstr_of(Value{std::string("abc")}), "abc");
  EXPECT_EQ(cstr_of(Value{std::int64_t{0}}), "0");
  EXPECT_FALSE(cstr_of(Value{}).has_value());
}

}  // namespace
}  // namespace db::jet
