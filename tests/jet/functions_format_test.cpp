// tests/jet/functions_format_test.cpp — Format(): the choice between date,
// number and named patterns, and the number patterns themselves.
#include <gtest/gtest.h>

#include <tuple>

#include "db/jet/functions.h"

namespace db::jet {
namespace {

std::string fmt(const Value& v, std::string_view pattern) {
  std::string out;
  append_format(out, v, pattern);
  return out;
}

Value num(double d) { return Value{d}; }
Value txt(const char* s) { return Value{std::string(s)}; }

TEST(JetFormat, DatesFromTextsAndSerials) {
  EXPECT_EQ(fmt(txt("2024-02-29"), "MM/yyyy"), "02/2024");
  EXPECT_EQ(fmt(txt("2024-02-29 13:05:00"), "MM/dd/yyyy hh:mm"), "02/29/2024 13:05");
  EXPECT_EQ(fmt(txt("29/02/2024"), "yyyy-mm-dd"), "2024-02-29");
  EXPECT_EQ(fmt(num(45351.5), "dd/mm/yyyy hh:nn"), "29/02/2024 12:00");
  EXPECT_EQ(fmt(Value{std::int64_t{45351}}, "Short Date"), "29/02/2024");
  // Not a date: the text comes back as it is.
  EXPECT_EQ(fmt(txt("abc"), "MM/yyyy"), "abc");
  EXPECT_EQ(fmt(num(1e12), "MM/yyyy"), "1000000000000");
}

TEST(JetFormat, NoPatternWritesLikeCStr) {
  EXPECT_EQ(fmt(txt("2024-02-29"), ""), "29/02/2024");
  EXPECT_EQ(fmt(num(2.50), ""), "2.5");
  EXPECT_EQ(fmt(Value{std::int64_t{-1}}, ""), "-1");
  EXPECT_EQ(fmt(txt("abc"), ""), "abc");
}

TEST(JetFormat, NumberPatterns) {
  const std::tuple<double, const char*, const char*> numbers[] = {
      {1234.567, "0.00", "1234.57"}, {1234.567, "#,##0.00", "1,234.57"},
      {1234567, "#,##0", "1,234,567"},
      {1.005, "0.00", "1.01"},  // rounded on the decimal text, half up
      {2.5, "0", "3"}, {-2.5, "0", "-3"}, {5, "000", "005"}, {5, "#", "5"}, {0, "#", ""},
      {0.5, "#.00", ".50"}, {0.5, "0.##", "0.5"}, {1, "0.##", "1."}, {0.256, "0%", "26%"},
      {0.256, "0.0 %", "25.6 %"}, {12345, "000-000", "012-345"}, {1234567, "00-00", "12345-67"},
      {5, "0 \"kg\"", "5 kg"}, {5.25, "$ 0.00", "$ 5.25"}, {-5, "$0", "-$5"},
      {-0.001, "0.00", "0.00"}, {999.996, "#,##0.00", "1,000.00"},
      // Sections: positive; negative; zero.
      {-5, "0;(0)", "(5)"}, {0, "0;(0);\"cero\"", "cero"}, {3, "0;(0);\"cero\"", "3"},
      {1234.5, "0.00E+00", "1.23E+03"}, {0.00012, "0.0E-0", "1.2E-4"},
  };
  for (const auto& [number, pattern, expected] : numbers) {
    EXPECT_EQ(fmt(num(number), pattern), expected) << number << " " << pattern;
  }
  // Texts that read as numbers are numbers; others come back as they are.
  EXPECT_EQ(fmt(txt("12.5"), "0.00"), "12.50");
  EXPECT_EQ(fmt(txt("abc"), "0.00"), "abc");
  EXPECT_EQ(fmt(Value{std::int64_t{7}}, "00"), "07");
}

TEST(JetFormat, NamedFormats) {
  const std::tuple<double, const char*, const char*> named[] = {
      {1234.5, "Fixed", "1234.50"}, {0.5, "fixed", "0.50"}, {1234.5, "Standard", "1,234.50"},
      {0.125, "Percent", "12.50%"}, {1234.5, "Currency", "$ 1,234.50"},
      {1234.5, "General Number", "1234.5"}, {1234.5, "Scientific", "1.23E+03"},
  };
  for (const auto& [number, pattern, expected] : named) {
    EXPECT_EQ(fmt(num(number), pattern), expected) << number << " " << pattern;
  }
  EXPECT_EQ(fmt(Value{std::int64_t{-1}}, "Yes/No"), "Sí");
  EXPECT_EQ(fmt(Value{std::int64_t{0}}, "True/False"), "Falso");
  EXPECT_EQ(fmt(Value{std::int64_t{1}}, "On/Off"), "Activado");
  EXPECT_EQ(fmt(txt("peña"), ">"), "PEÑA");
  EXPECT_EQ(fmt(txt("PEÑA"), "<"), "peña");
}

}  // namespace
}  // namespace db::jet
