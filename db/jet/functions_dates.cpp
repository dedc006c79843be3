// db/jet/functions_dates.cpp — the Jet date functions over values: Date,
// Now, Year..Weekday, DateSerial, DateAdd, DateDiff, DatePart, DateValue,
// TimeValue, and the reading of any value as a date.
#include <cmath>
#include <ctime>

#include "db/jet/ascii.h"
#include "db/jet/function_args.h"
#include "db/jet/functions.h"

namespace db::jet {

using namespace args;

namespace {

Value date_value(const std::optional<DateTime>& d, const char* function, const Value& shown_value) {
  if (!d) overflow(function, shown_value);
  return Value{format_iso(*d)};
}

template <typename F>
Value with_date(const Value& v, const char* function, F f) {
  std::optional<DateTime> d = date_of(v, function);
  if (!d) return Value{};
  return Value{static_cast<std::int64_t>(f(*d))};
}

enum class Interval { kYear, kQuarter, kMonth, kDay, kWeekday, kWeek, kHour, kMinute, kSecond };

Interval interval_arg(const Value& v, const char* function) {
  const auto* s = std::get_if<std::string>(&v);
  if (s != nullptr) {
    std::string i;
    for (char c : *s)
      if (c != ' ') i.push_back(lower_ascii(c));
    if (i == "yyyy") return Interval::kYear;
    if (i == "q") return Interval::kQuarter;
    if (i == "m") return Interval::kMonth;
    if (i == "d" || i == "y") return Interval::kDay;
    if (i == "w") return Interval::kWeekday;
    if (i == "ww") return Interval::kWeek;
    if (i == "h") return Interval::kHour;
    if (i == "n") return Interval::kMinute;
    if (i == "s") return Interval::kSecond;
  }
  throw FunctionError(std::string("Intervalo no válido en ") + function + ": " + shown(v));
}

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
  std::int64_t q = a / b;
  return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

DateTime now_local() {
  std::time_t t = std::time(nullptr);
  std::tm tm{};
  localtime_r(&t, &tm);
  DateTime d;
  d.year = tm.tm_year + 1900;
  d.month = tm.tm_mon + 1;
  d.day = tm.tm_mday;
  d.hour = tm.tm_hour;
  d.minute = tm.tm_min;
  d.second = tm.tm_sec > 59 ? 59 : tm.tm_sec;
  return d;
}

}  // namespace

std::optional<DateTime> date_of(const Value& v, const char* function) {
  if (is_null(v)) return std::nullopt;
  if (const auto* s = std::get_if<std::string>(&v)) {
    if (auto d = parse_date_text(*s)) return d;
    mismatch(function, v);
  }
  double serial = std::holds_alternative<std::int64_t>(v) ? static_cast<double>(std::get<std::int64_t>(v))
                                                          : std::get<double>(v);
  if (auto d = from_serial(serial)) return d;
  overflow(function, v);
}

namespace fn {

Value Date() {
  DateTime d = now_local();
  d.hour = d.minute = d.second = 0;
  return Value{format_iso(d)};
}

Value Now() { return Value{format_iso(now_local())}; }

Value Year(const Value& d) { return with_date(d, "Year", [](const DateTime& t) { return t.year; }); }
Value Month(const Value& d) { return with_date(d, "Month", [](const DateTime& t) { return t.month; }); }
Value Day(const Value& d) { return with_date(d, "Day", [](const DateTime& t) { return t.day; }); }
Value Hour(const Value& d) { return with_date(d, "Hour", [](const DateTime& t) { return t.hour; }); }
Value Minute(const Value& d) { return with_date(d, "Minute", [](const DateTime& t) { return t.minute; }); }
Value Second(const Value& d) { return with_date(d, "Second", [](const DateTime& t) { return t.second; }); }
Value Weekday(const Value& d) {
  return with_date(d, "Weekday", [](const DateTime& t) { return weekday(day_number(t)); });
}

Value DateSerial(const Value& y, const Value& m, const Value& d) {
  if (is_null(y) || is_null(m) || is_null(d)) return Value{};
  std::int64_t year = int_arg(y, "DateSerial");
  std::int64_t month = int_arg(m, "DateSerial");
  std::int64_t day = int_arg(d, "DateSerial");
  if (year >= 0 && year <= 99) year += year < 30 ? 2000 : 1900;
  // Months and days out of range roll over into the next or previous ones.
  if (std::llabs(year) > 100000 || std::llabs(month) > 1200000 || std::llabs(day) > 40000000) overflow("DateSerial", y);
  std::int64_t months = year * 12 + (month - 1);
  std::int64_t yy = floor_div(months, 12);
  int mm = static_cast<int>(months - yy * 12) + 1;
  std::int64_t days = days_from_civil(yy, mm, 1) + (day - 1);
  DateTime out;
  civil_from_days(days, out);
  if (!is_valid(out)) overflow("DateSerial", y);
  return Value{format_iso(out)};
}

Value DateAdd(const Value& interval, const Value& n, const Value& d) {
  if (is_null(interval) || is_null(n) || is_null(d)) return Value{};
  Interval what = interval_arg(interval, "DateAdd");
  std::int64_t count = int_arg(n, "DateAdd");
  std::optional<DateTime> date = date_of(d, "DateAdd");
  if (std::llabs(count) > 4000000000LL) overflow("DateAdd", n);
  switch (what) {
    case Interval::kYear: return date_value(add_months(*date, count * 12), "DateAdd", n);
    case Interval::kQuarter: return date_value(add_months(*date, count * 3), "DateAdd", n);
    case Interval::kMonth: return date_value(add_months(*date, count), "DateAdd", n);
    default: break;
  }
  std::int64_t seconds = what == Interval::kWeek     ? count * 7 * 86400
                         : what == Interval::kHour   ? count * 3600
                         : what == Interval::kMinute ? count * 60
                         : what == Interval::kSecond ? count
                                                     : count * 86400;
  return date_value(from_epoch_seconds(epoch_seconds(*date) + seconds), "DateAdd", n);
}

Value DateDiff(const Value& interval, const Value& d1, const Value& d2) {
  if (is_null(interval) || is_null(d1) || is_null(d2)) return Value{};
  Interval what = interval_arg(interval, "DateDiff");
  DateTime a = *date_of(d1, "DateDiff");
  DateTime b = *date_of(d2, "DateDiff");
  std::int64_t r = 0;
  switch (what) {
    case Interval::kYear: r = b.year - a.year; break;
    case Interval::kQuarter: r = (b.year * 4 + (b.month - 1) / 3) - (a.year * 4 + (a.month - 1) / 3); break;
    case Interval::kMonth: r = (b.year * 12 + b.month) - (a.year * 12 + a.month); break;
    case Interval::kDay: r = day_number(b) - day_number(a); break;
    case Interval::kWeekday: r = (day_number(b) - day_number(a)) / 7; break;
    case Interval::kWeek:
      // Sundays crossed: weeks counted from a Sunday (1970-01-04).
      r = floor_div(day_number(b) - 3, 7) - floor_div(day_number(a) - 3, 7);
      break;
    case Interval::kHour: r = floor_div(epoch_seconds(b), 3600) - floor_div(epoch_seconds(a), 3600); break;
    case Interval::kMinute: r = floor_div(epoch_seconds(b), 60) - floor_div(epoch_seconds(a), 60); break;
    case Interval::kSecond: r = epoch_seconds(b) - epoch_seconds(a); break;
  }
  return Value{r};
}
Value DatePart(const Value& interval, const Value& d) {
  if (is_null(interval) || is_null(d)) return Value{};
  std::string i;
  for (char c : std::get_if<std::string>(&interval) ? std::get<std::string>(interval) : std::string())
    if (c != ' ') i.push_back(lower_ascii(c));
  std::optional<DateTime> t = date_of(d, "DatePart");
  std::int64_t r;
  if (i == "yyyy") r = t->year;
  else if (i == "q") r = (t->month - 1) / 3 + 1;
  else if (i == "m") r = t->month;
  else if (i == "y") r = day_of_year(*t);
  else if (i == "d") r = t->day;
  else if (i == "w") r = weekday(day_number(*t));
  else if (i == "ww") r = week_of_year(*t);
  else if (i == "h") r = t->hour;
  else if (i == "n") r = t->minute;
  else if (i == "s") r = t->second;
  else throw FunctionError("Intervalo no válido en DatePart: " + shown(interval));
  return Value{r};
}

Value DateValue(const Value& d) {
  std::optional<DateTime> t = date_of(d, "DateValue");
  if (!t) return Value{};
  t->hour = t->minute = t->second = 0;
  return Value{format_iso(*t)};
}

Value TimeValue(const Value& d) {
  std::optional<DateTime> t = date_of(d, "TimeValue");
  if (!t) return Value{};
  t->year = 1899;
  t->month = 12;
  t->day = 30;
  return Value{format_iso(*t)};
}
}  // namespace fn
}  // namespace db::jet
