// db/jet/date.h — Jet's dates: calendar arithmetic, date serials, reading
// the date texts users and statements write, and writing dates back out.
//
// Dates are stored as ISO 8601 texts ("2024-02-29" at midnight, otherwise
// "2024-02-29 13:05:00"). Jet itself keeps a date as a serial: a double whose
// whole part counts days from 1899-12-30 and whose fraction is the time of
// day. Both forms meet here: CDate of a number, Format of a serial and the
// date arithmetic of DateAdd/DateDiff go through serials and day numbers.
//
// Texts are read the way a Spanish-speaking user writes them: day first
// ("29/02/2024"), except inside #...# literals of SQL text, which Jet always
// reads month first ("#02/29/2024#").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/month.h"

namespace db::jet {

// A calendar date and time of day, valid for years 100 to 9999.
struct DateTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  bool has_time() const { return hour != 0 || minute != 0 || second != 0; }
  friend bool operator==(const DateTime&, const DateTime&) = default;
};

// Day number of a civil date: days since 1970-01-01 (negative before it).
// Valid for any proleptic Gregorian date; month 1-12, day 1-31.
std::int64_t days_from_civil(std::int64_t year, int month, int day);

// Inverse of days_from_civil: fills year, month and day (time left alone).
void civil_from_days(std::int64_t days, DateTime& out);

// Day number of 1899-12-30, the day whose serial is 0.
inline constexpr std::int64_t kSerialEpochDays = -25569;

// Days in `month` of `year` (Gregorian leap years; 0 outside 1..12).
using base::days_in_month;

// True when every field is in range (year 100-9999, a real day of its month,
// hh 0-23, nn 0-59, ss 0-59).
bool is_valid(const DateTime& d);

// Day number (days since 1970-01-01) of d's date.
inline std::int64_t day_number(const DateTime& d) { return days_from_civil(d.year, d.month, d.day); }

// Seconds since 1970-01-01 00:00:00 of d (no time zone: a wall-clock value).
std::int64_t epoch_seconds(const DateTime& d);

// Date of a seconds count as epoch_seconds gives it. Nullopt outside the
// years 100-9999.
std::optional<DateTime> from_epoch_seconds(std::int64_t seconds);

// Jet's date serial of d: days since 1899-12-30 plus the time as a fraction
// of a day. Before that day Jet keeps the time as a positive fraction beside a
// negative day count (-1.25 is 1899-12-29 06:00), and so do we.
double to_serial(const DateTime& d);

// Date of a serial, time rounded to the second. Nullopt for NaN and outside
// Jet's range (years 100-9999).
std::optional<DateTime> from_serial(double serial);

// Reads a stored ISO text exactly: "yyyy-MM-dd" or "yyyy-MM-dd hh:nn:ss"
// (also with 'T' before the time). Cheap: this is how every stored date is
// recognised. Nullopt for anything else or an impossible date.
std::optional<DateTime> parse_iso(std::string_view text);

// Reads a date text the way CDate does: ISO and year-first texts
// ("2024-02-29", "2024/2/29", "2024-02-29 13:05"), day-first texts
// ("29/02/2024", "29-2-24", "29.02.2024 13:05:00"; a day-first text that is
// impossible but valid month first, such as "02/29/2024", is read month first
// as Jet does), month and year ("02/2024", "2 / 2024") or year and month
// ("2024-02") meaning the first of that month, a time alone ("13:05",
// "1:05 PM") on 1899-12-30, and month names in Spanish or English
// ("29-feb-2024", "29 de febrero de 2024"). Two-digit years are 1930-2029.
// Spaces around the parts are allowed. Nullopt when unreadable.
std::optional<DateTime> parse_date_text(std::string_view text);

// The text between the hashes of a Jet date literal, read month first
// ("02/29/2024", "2/29/2024 13:05:00", "2024-02-29" also accepted), as ISO
// text. Nullopt when it is not a date.
std::optional<std::string> jet_date_literal_to_iso(std::string_view inside_hashes);

// Appends d as ISO text: "yyyy-MM-dd" at midnight, else "yyyy-MM-dd hh:nn:ss".
void append_iso(std::string& out, const DateTime& d);
std::string format_iso(const DateTime& d);

// Appends d the way CStr shows a date: "dd/MM/yyyy", with " hh:nn:ss" when
// it has a time (a time alone on 1899-12-30 shows only "hh:nn:ss").
void append_display(std::string& out, const DateTime& d);

// d moved by `months` calendar months, the day clamped to the last day of
// the target month (2024-01-31 + 1 month = 2024-02-29), time kept. Nullopt
// when the result leaves the years 100-9999.
std::optional<DateTime> add_months(const DateTime& d, std::int64_t months);

// True when `pattern` is a date pattern of Format (it uses d, m, y, h, n, s,
// w, q or AM/PM outside quotes, and no digit placeholders 0 and #).
bool is_date_pattern(std::string_view pattern);

// Appends d formatted with a Format date pattern: d dd ddd dddd, m mm mmm
// mmmm (minutes when right after an hour), n nn, y (day of year), yy yyyy,
// h hh, s ss, w (weekday, Sunday 1), ww (week of year), q, AM/PM am/pm A/P,
// and the named formats "General Date", "Short Date", "Medium Date",
// "Long Date", "Short Time", "Medium Time", "Long Time". Letters are not case
// sensitive. Any other character is copied; "quoted text" and \x are
// literals. Month and day names are Spanish.
void append_date_pattern(std::string& out, const DateTime& d, std::string_view pattern);

// Weekday of a day number, Sunday = 1 ... Saturday = 7.
int weekday(std::int64_t day_number);

// Day of the year (1 for January 1st) and week of the year (week 1 holds
// January 1st; weeks start on Sunday), as Format's y and ww show them.
int day_of_year(const DateTime& d);
int week_of_year(const DateTime& d);

// Spanish name of a month 1-12 ("febrero", or "feb" abbreviated); empty
// for any other number.
std::string_view month_name(int month, bool abbreviated);

}  // namespace db::jet
