// tests/jet/functions_date_test.cpp — Jet dates: serials, the date texts
// CDate and #...# literals read, month arithmetic and Format date patterns.
#include <gtest/gtest.h>

#include <cmath>

#include "db/jet/date.h"

namespace db::jet {
namespace {

DateTime dt(int y, int m, int d, int h = 0, int n = 0, int s = 0) { return DateTime{y, m, d, h, n, s}; }

std::string read(std::string_view text) {
  auto d = parse_date_text(text);
  return d ? format_iso(*d) : "<none>";
}

std::string pattern(const DateTime& d, std::string_view p) {
  std::string out;
  append_date_pattern(out, d, p);
  return out;
}

TEST(JetDate, CivilDaysRoundTripAcrossCenturies) {
  EXPECT_EQ(days_from_civil(1970, 1, 1), 0);
  EXPECT_EQ(days_from_civil(1899, 12, 30), kSerialEpochDays);
  for (std::int64_t day = days_from_civil(100, 1, 1); day <= days_from_civil(9999, 12, 31); day += 997) {
    DateTime d;
    civil_from_days(day, d);
    ASSERT_TRUE(is_valid(d)) << day;
    ASSERT_EQ(day_number(d), day);
  }
  EXPECT_EQ(days_in_month(2024, 2), 29);
  EXPECT_EQ(days_in_month(1900, 2), 28);
  EXPECT_EQ(days_in_month(2000, 2), 29);
  EXPECT_EQ(weekday(day_number(dt(2024, 2, 29))), 5);  // a Thursday; Sunday is 1
}

TEST(JetDate, SerialsFollowJet) {
  EXPECT_DOUBLE_EQ(to_serial(dt(1899, 12, 30)), 0.0);
  EXPECT_DOUBLE_EQ(to_serial(dt(2024, 2, 29)), 45351.0);
  EXPECT_DOUBLE_EQ(to_serial(dt(2024, 2, 29, 18)), 45351.75);
  // Before day 0 the time is still a positive fraction beside the day.
  EXPECT_DOUBLE_EQ(to_serial(dt(1899, 12, 29, 6)), -1.25);
  EXPECT_EQ(from_serial(-1.25), dt(1899, 12, 29, 6));
  EXPECT_EQ(from_serial(45351.75), dt(2024, 2, 29, 18));
  EXPECT_EQ(from_serial(2), dt(1900, 1, 1));
  // A time a hair below midnight rounds to the next day, not to 24:00:00.
  EXPECT_EQ(from_serial(45351.9999999), dt(2024, 3, 1));
  EXPECT_FALSE(from_serial(3e6).has_value());
  EXPECT_FALSE(from_serial(-700000).has_value());
  EXPECT_FALSE(from_serial(std::nan("")).has_value());
}

TEST(JetDate, IsoTextsAreReadExactly) {
  EXPECT_EQ(parse_iso("2024-02-29"), dt(2024, 2, 29));
  EXPECT_EQ(parse_iso("2024-02-29 13:05:09"), dt(2024, 2, 29, 13, 5, 9));
  EXPECT_EQ(parse_iso("2024-02-29T13:05:09"), dt(2024, 2, 29, 13, 5, 9));
  EXPECT_FALSE(parse_iso("2023-02-29"));
  EXPECT_FALSE(parse_iso("2024-2-29"));
  EXPECT_FALSE(parse_iso("2024-02-29 24:00:00"));
  EXPECT_FALSE(parse_iso("29/02/2024"));
  EXPECT_FALSE(parse_iso(""));
}

TEST(JetDate, CDateTextsAreReadDayFirst) {
  const std::pair<const char*, const char*> texts[] = {
      {"2024-02-29", "2024-02-29"}, {" 2024-02-29 13:05 ", "2024-02-29 13:05:00"},
      {"2024/2/9", "2024-02-09"}, {"29/02/2024", "2024-02-29"}, {"01/02/2024", "2024-02-01"},
      {"1-2-24", "2024-02-01"}, {"1.2.1999", "1999-02-01"}, {"31/12/45", "1945-12-31"},
      {"29/02/2024 13:05:09", "2024-02-29 13:05:09"},
      {"29/02/2024 1:05 PM", "2024-02-29 13:05:00"},
      {"29/02/2024 12:30 a.m.", "2024-02-29 00:30:00"},
      // Impossible day first, valid month first: Jet swaps them.
      {"02/29/2024", "2024-02-29"},
      // Month and year, either order, mean the first of the month.
      {"02/2024", "2024-02-01"}, {"02 / 2024", "2024-02-01"}, {"2024-02", "2024-02-01"},
      {"13:05", "1899-12-30 13:05:00"}, {"29-feb-2024", "2024-02-29"},
      {"29 de Febrero de 2024", "2024-02-29"}, {"1 set 2023", "2023-09-01"},
      {"Feb 29, 2024", "2024-02-29"},
  };
  for (const auto& [input, expected] : texts) EXPECT_EQ(read(input), expected) << input;
  for (const char* bad : {"", "abc", "31/02/2024", "2024", "45000", "29/02", "32/13/2024", "2024-13-01",
                          "29/02/2024 25:00", "1/1/10000", "12:61", "1/1/2024 x"}) {
    EXPECT_EQ(read(bad), "<none>") << bad;
  }
}

TEST(JetDate, SqlLiteralsAreReadMonthFirst) {
  EXPECT_EQ(jet_date_literal_to_iso("02/01/2024"), "2024-02-01");
  EXPECT_EQ(jet_date_literal_to_iso("2/29/2024 13:05:00"), "2024-02-29 13:05:00");
  EXPECT_EQ(jet_date_literal_to_iso("03/25/2080"), "2080-03-25");
  EXPECT_EQ(jet_date_literal_to_iso("01/01/1900"), "1900-01-01");
  EXPECT_EQ(jet_date_literal_to_iso("2024-02-29"), "2024-02-29");
  EXPECT_EQ(jet_date_literal_to_iso("12/31/2023 12:30:15 AM"), "2023-12-31 00:30:15");
  EXPECT_EQ(jet_date_literal_to_iso("12/31/2023 12:30 pm"), "2023-12-31 12:30:00");
  // Impossible month first, so read day first; two-digit years are 1930-2029.
  EXPECT_EQ(jet_date_literal_to_iso(" 13/01/2024 "), "2024-01-13");
  EXPECT_EQ(jet_date_literal_to_iso("01/02/23"), "2023-01-02");
  for (const char* bad : {"02/30/2024", "02/29/2023", "01/32/2023", "01/02/2023 24:00",
                          "01/02/2023 13:00 PM", "hoy", ""}) {
    EXPECT_FALSE(jet_date_literal_to_iso(bad)) << bad;
  }
}

TEST(JetDate, IsoAndDisplayTexts) {
  EXPECT_EQ(format_iso(dt(2024, 2, 9)), "2024-02-09");
  EXPECT_EQ(format_iso(dt(824, 2, 9, 0, 0, 1)), "0824-02-09 00:00:01");
  std::string out;
  append_display(out, dt(2024, 2, 9));
  EXPECT_EQ(out, "09/02/2024");
  out.clear();
  append_display(out, dt(2024, 2, 9, 7, 5, 0));
  EXPECT_EQ(out, "09/02/2024 07:05:00");
  out.clear();
  append_display(out, dt(1899, 12, 30, 7, 5, 0));
  EXPECT_EQ(out, "07:05:00");
}

TEST(JetDate, AddMonthsClampsTheDay) {
  EXPECT_EQ(add_months(dt(2024, 1, 31), 1), dt(2024, 2, 29));
  EXPECT_EQ(add_months(dt(2023, 1, 31), 1), dt(2023, 2, 28));
  EXPECT_EQ(add_months(dt(2024, 3, 31, 10), -1), dt(2024, 2, 29, 10));
  EXPECT_EQ(add_months(dt(2024, 1, 15), -13), dt(2022, 12, 15));
  EXPECT_EQ(add_months(dt(2024, 12, 1), 1), dt(2025, 1, 1));
  EXPECT_EQ(add_months(dt(2024, 2, 29), 12), dt(2025, 2, 28));
  EXPECT_FALSE(add_months(dt(9999, 12, 1), 1));
  EXPECT_FALSE(add_months(dt(100, 1, 1), -1));
}

TEST(JetDate, FormatPatterns) {
  DateTime d = dt(2024, 2, 9, 13, 5, 7);
  const std::pair<const char*, const char*> patterns[] = {
      {"MM/yyyy", "02/2024"}, {"MM/dd/yyyy", "02/09/2024"}, {"d/M/yy", "9/2/24"},
      {"yyyy-mm-dd", "2024-02-09"},
      // m after an hour is minutes; n always is.
      {"hh:mm:ss", "13:05:07"}, {"h:nn", "13:05"}, {"h:n", "13:5"}, {"hh:nn AM/PM", "01:05 PM"},
      {"dddd d \"de\" mmmm", "viernes 9 de febrero"}, {"ddd mmm", "vie feb"},
      {"q\\q y", "1q 40"}, {"w ww", "6 6"}, {"Short Date", "09/02/2024"},
      {"long date", "viernes, 9 de febrero de 2024"}, {"Medium Date", "09-feb-24"},
      {"Short Time", "13:05"}, {"General Date", "09/02/2024 13:05:07"},
  };
  for (const auto& [input, expected] : patterns) EXPECT_EQ(pattern(d, input), expected) << input;
  EXPECT_TRUE(is_date_pattern("MM/yyyy"));
  EXPECT_TRUE(is_date_pattern("Long Date"));
  EXPECT_FALSE(is_date_pattern("0.00"));
  EXPECT_FALSE(is_date_pattern("#,##0"));
  EXPECT_FALSE(is_date_pattern("\"dd\""));
}

}  // namespace
}  // namespace db::jet
