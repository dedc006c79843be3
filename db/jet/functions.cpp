// db/jet/functions.cpp — the Jet functions over db::Value: argument
// conversions, Null rules and errors, over the primitives of
// functions_numbers.cpp, functions_text.cpp, functions_format.cpp and date.cpp.
#include "db/jet/functions.h"

#include <charconv>
#include <cmath>
#include <ctime>

namespace db::jet {

namespace {

char lower_ascii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// The value as the user wrote it, for error messages.
std::string shown(const Value& v) {
  if (const auto* s = std::get_if<std::string>(&v)) return "'" + *s + "'";
  return value_text(v);
}

[[noreturn]] void mismatch(const char* function, const Value& v) {
  throw FunctionError(std::string("Tipo de dato no coincide en ") + function + ": " + shown(v));
}

[[noreturn]] void overflow(const char* function, const Value& v) {
  throw FunctionError(std::string("Desbordamiento en ") + function + ": " + shown(v));
}

[[noreturn]] void bad_argument(const char* function, const Value& v) {
  throw FunctionError(std::string("Argumento no válido en ") + function + ": " + shown(v));
}

// Number of a non-Null value; texts must read as numbers.
double number_arg(const Value& v, const char* function) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) {
    if (auto x = text_to_number(*s)) return *x;
  }
  mismatch(function, v);
}

// Whole number of a non-Null value, rounded half to even.
std::int64_t int_arg(const Value& v, const char* function) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
  std::int64_t out = 0;
  if (!round_to_int64(number_arg(v, function), out)) overflow(function, v);
  return out;
}

std::int32_t int32_arg(const Value& v, const char* function) {
  std::int64_t i = int_arg(v, function);
  if (i < INT32_MIN || i > INT32_MAX) overflow(function, v);
  return static_cast<std::int32_t>(i);
}

// Text of a non-Null argument: texts as they are, numbers as CStr writes
// them (into `scratch`).
std::string_view text_arg(const Value& v, std::string& scratch) {
  if (const auto* s = std::get_if<std::string>(&v)) return *s;
  scratch.clear();
  append_value_text(scratch, v);
  return scratch;
}

// A count of characters: whole, not negative.
std::int64_t count_arg(const Value& v, const char* function) {
  std::int64_t n = int_arg(v, function);
  if (n < 0) bad_argument(function, v);
  return n;
}

Value text_value(std::string_view s) { return Value{std::string(s)}; }

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

Value number_value(double d) {
  std::int64_t i = 0;
  if (std::trunc(d) == d && std::fabs(d) < 9.2e18 && round_to_int64(d, i)) return Value{i};
  return Value{d};
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

// Both operands of a logical operator as 32-bit integers (Null kept apart).
struct Logical {
  bool null;
  std::int32_t v;
};

Logical logical_arg(const Value& v, const char* op) {
  if (is_null(v)) return {true, 0};
  return {false, int32_arg(v, op)};
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

Value Nz(const Value& x) { return is_null(x) ? Value{std::string()} : x; }
Value Nz(const Value& x, const Value& if_null) { return is_null(x) ? if_null : x; }

Value Val(const Value& x) {
  if (is_null(x)) return Value{};
  if (!std::holds_alternative<std::string>(x)) return x;
  Number n = val_text(std::get<std::string>(x));
  return n.is_int ? Value{n.i} : Value{n.d};
}

Value CDate(const Value& x) {
  std::optional<DateTime> d = date_of(x, "CDate");
  return d ? Value{format_iso(*d)} : Value{};
}

Value CStr(const Value& x) {
  std::optional<std::string> s = cstr_of(x);
  return s ? Value{std::move(*s)} : Value{};
}

Value CBool(const Value& x) {
  if (is_null(x)) return Value{};
  return Value{std::int64_t{number_arg(x, "CBool") != 0 ? -1 : 0}};
}

Value CInt(const Value& x) {
  if (is_null(x)) return Value{};
  std::int64_t i = int_arg(x, "CInt");
  if (i < -32768 || i > 32767) overflow("CInt", x);
  return Value{i};
}

Value CLng(const Value& x) {
  if (is_null(x)) return Value{};
  return Value{std::int64_t{int32_arg(x, "CLng")}};
}

Value CDbl(const Value& x) {
  if (is_null(x)) return Value{};
  return Value{number_arg(x, "CDbl")};
}

Value Format(const Value& x) { return Format(x, Value{std::string()}); }

Value Format(const Value& x, const Value& pattern) {
  if (is_null(x)) return Value{};
  std::string scratch;
  std::string_view p = is_null(pattern) ? std::string_view() : text_arg(pattern, scratch);
  std::string out;
  append_format(out, x, p);
  return Value{std::move(out)};
}

Value InStr(const Value& s, const Value& find) { return InStr(Value{std::int64_t{1}}, s, find); }

Value InStr(const Value& start, const Value& s, const Value& find) {
  return InStr(start, s, find, Value{std::int64_t{1}});
}

Value InStr(const Value& start, const Value& s, const Value& find, const Value& compare) {
  if (is_null(start) || is_null(s) || is_null(find)) return Value{};
  std::int64_t from = int_arg(start, "InStr");
  if (from < 1) bad_argument("InStr", start);
  bool binary = !is_null(compare) && int_arg(compare, "InStr") == 0;
  std::string a, b;
  return Value{instr_chars(from, text_arg(s, a), text_arg(find, b), binary)};
}

Value Left(const Value& s, const Value& n) {
  if (is_null(s) || is_null(n)) return Value{};
  std::string scratch;
  return text_value(left_chars(text_arg(s, scratch), count_arg(n, "Left")));
}

Value Right(const Value& s, const Value& n) {
  if (is_null(s) || is_null(n)) return Value{};
  std::string scratch;
  return text_value(right_chars(text_arg(s, scratch), count_arg(n, "Right")));
}

Value Mid(const Value& s, const Value& start) {
  if (is_null(s) || is_null(start)) return Value{};
  std::int64_t from = int_arg(start, "Mid");
  if (from < 1) bad_argument("Mid", start);
  std::string scratch;
  return text_value(mid_chars(text_arg(s, scratch), from, std::nullopt));
}

Value Mid(const Value& s, const Value& start, const Value& length) {
  if (is_null(length)) return Mid(s, start);
  if (is_null(s) || is_null(start)) return Value{};
  std::int64_t from = int_arg(start, "Mid");
  if (from < 1) bad_argument("Mid", start);
  std::string scratch;
  return text_value(mid_chars(text_arg(s, scratch), from, count_arg(length, "Mid")));
}

Value Len(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch;
  return Value{char_count(text_arg(s, scratch))};
}

Value Trim(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch;
  return text_value(trim_view(text_arg(s, scratch), true, true));
}

Value LTrim(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch;
  return text_value(trim_view(text_arg(s, scratch), true, false));
}

Value RTrim(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch;
  return text_value(trim_view(text_arg(s, scratch), false, true));
}

Value UCase(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch, out;
  append_upper(out, text_arg(s, scratch));
  return Value{std::move(out)};
}

Value LCase(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch, out;
  append_lower(out, text_arg(s, scratch));
  return Value{std::move(out)};
}

Value Space(const Value& n) {
  if (is_null(n)) return Value{};
  std::int64_t count = count_arg(n, "Space");
  if (count > 100000000) overflow("Space", n);
  return Value{std::string(static_cast<std::size_t>(count), ' ')};
}

Value Round(const Value& x) { return Round(x, Value{std::int64_t{0}}); }

Value Round(const Value& x, const Value& digits) {
  if (is_null(x)) return Value{};
  std::int64_t places = is_null(digits) ? 0 : int_arg(digits, "Round");
  if (places < 0) bad_argument("Round", digits);
  if (std::holds_alternative<std::int64_t>(x)) return x;
  double d = number_arg(x, "Round");
  return Value{round_half_even(d, static_cast<int>(places > 15 ? 15 : places))};
}

Value Abs(const Value& x) {
  if (is_null(x)) return Value{};
  if (const auto* i = std::get_if<std::int64_t>(&x)) {
    if (*i == INT64_MIN) return Value{-static_cast<double>(*i)};
    return Value{*i < 0 ? -*i : *i};
  }
  return Value{std::fabs(number_arg(x, "Abs"))};
}

Value Int(const Value& x) {
  if (is_null(x) || std::holds_alternative<std::int64_t>(x)) return x;
  return number_value(std::floor(number_arg(x, "Int")));
}

Value Fix(const Value& x) {
  if (is_null(x) || std::holds_alternative<std::int64_t>(x)) return x;
  return number_value(std::trunc(number_arg(x, "Fix")));
}

Value Sgn(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "Sgn");
  return Value{std::int64_t{d > 0 ? 1 : d < 0 ? -1 : 0}};
}

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

Value Replace(const Value& s, const Value& find, const Value& with) {
  if (is_null(s) || is_null(find) || is_null(with)) return Value{};
  std::string a, b, c;
  std::string_view text = text_arg(s, a);
  std::string_view f = text_arg(find, b);
  std::string_view w = text_arg(with, c);
  if (f.empty()) return text_value(text);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at; (at = find_text(text, f, from)) != std::string_view::npos; from = at + f.size()) {
    out.append(text.substr(from, at - from));
    out.append(w);
  }
  out.append(text.substr(from));
  return Value{std::move(out)};
}

Value Str(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "Str");
  std::string out = d >= 0 ? " " : "";
  if (const auto* i = std::get_if<std::int64_t>(&x)) append_value_text(out, Value{*i});
  else append_cstr_number(out, d);
  return Value{std::move(out)};
}

Value IsNumeric(const Value& x) {
  bool yes = false;
  if (std::holds_alternative<std::int64_t>(x) || std::holds_alternative<double>(x)) {
    yes = true;
  } else if (const auto* s = std::get_if<std::string>(&x)) {
    std::string_view t = trim_view(*s, true, true);
    bool word = !t.empty() && ((t[0] | 0x20) == 't' || (t[0] | 0x20) == 'f' || (t[0] | 0x20) == 'v');
    yes = !word && !parse_iso(t) && text_to_number(t).has_value();
  }
  return Value{std::int64_t{yes ? -1 : 0}};
}

Value IsDate(const Value& x) {
  const auto* s = std::get_if<std::string>(&x);
  return Value{std::int64_t{s != nullptr && parse_date_text(*s) ? -1 : 0}};
}

Value CCur(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "CCur");
  if (std::fabs(d) > 922337203685477.5807) overflow("CCur", x);
  return Value{round_half_even(d, 4)};
}

Value CSng(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "CSng");
  if (std::fabs(d) > 3.402823466e38) overflow("CSng", x);
  // The shortest text of the float, read back: CSng(0.1) is 0.1, not 0.100000001.
  char buf[32];
  auto r = std::to_chars(buf, buf + sizeof buf, static_cast<float>(d));
  double out = 0;
  std::from_chars(buf, r.ptr, out);
  return Value{out};
}

Value CByte(const Value& x) {
  if (is_null(x)) return Value{};
  std::int64_t i = int_arg(x, "CByte");
  if (i < 0 || i > 255) overflow("CByte", x);
  return Value{i};
}

Value Chr(const Value& code) {
  if (is_null(code)) return Value{};
  std::int64_t c = int_arg(code, "Chr");
  if (c < 0 || c > 0xFFFF) bad_argument("Chr", code);
  std::string out;
  append_code_point(out, static_cast<char32_t>(c));
  return Value{std::move(out)};
}

Value Asc(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch;
  std::string_view t = text_arg(s, scratch);
  if (t.empty()) bad_argument("Asc", s);
  return Value{std::int64_t{first_code_point(t)}};
}

Value String(const Value& n, const Value& c) {
  if (is_null(n) || is_null(c)) return Value{};
  std::int64_t count = count_arg(n, "String");
  if (count > 100000000) overflow("String", n);
  std::string one;
  if (const auto* s = std::get_if<std::string>(&c)) {
    if (s->empty()) bad_argument("String", c);
    one = std::string(left_chars(*s, 1));
  } else {
    std::int64_t code = int_arg(c, "String");
    if (code < 0 || code > 0xFFFF) bad_argument("String", c);
    append_code_point(one, static_cast<char32_t>(code));
  }
  std::string out;
  out.reserve(one.size() * static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) out += one;
  return Value{std::move(out)};
}

Value InStrRev(const Value& s, const Value& find) { return InStrRev(s, find, Value{std::int64_t{-1}}); }

Value InStrRev(const Value& s, const Value& find, const Value& start) {
  if (is_null(s) || is_null(find) || is_null(start)) return Value{};
  std::int64_t last = int_arg(start, "InStrRev");
  if (last == 0 || last < -1) bad_argument("InStrRev", start);
  std::string a, b;
  std::string_view text = text_arg(s, a);
  std::string_view f = text_arg(find, b);
  std::int64_t len = char_count(text);
  if (last == -1) last = len;
  if (f.empty()) return Value{last <= len ? last : std::int64_t{0}};
  // The last match that ends at or before character `last`.
  std::int64_t found = 0;
  std::int64_t flen = char_count(f);
  for (std::int64_t pos = 1; (pos = instr_chars(pos, text, f)) != 0; ++pos) {
    if (pos + flen - 1 > last) break;
    found = pos;
  }
  return Value{found};
}

Value StrReverse(const Value& s) {
  if (is_null(s)) return Value{};
  std::string scratch, out;
  append_reversed(out, text_arg(s, scratch));
  return Value{std::move(out)};
}

Value Sqr(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "Sqr");
  if (d < 0) bad_argument("Sqr", x);
  return Value{std::sqrt(d)};
}

Value Exp(const Value& x) {
  if (is_null(x)) return Value{};
  double r = std::exp(number_arg(x, "Exp"));
  if (std::isinf(r)) overflow("Exp", x);
  return Value{r};
}

Value Log(const Value& x) {
  if (is_null(x)) return Value{};
  double d = number_arg(x, "Log");
  if (d <= 0) bad_argument("Log", x);
  return Value{std::log(d)};
}

Value MonthName(const Value& m) { return MonthName(m, Value{std::int64_t{0}}); }

Value MonthName(const Value& m, const Value& abbreviated) {
  if (is_null(m)) return Value{};
  std::int64_t month = int_arg(m, "MonthName");
  if (month < 1 || month > 12) bad_argument("MonthName", m);
  bool abbrev = !is_null(abbreviated) && number_arg(abbreviated, "MonthName") != 0;
  return text_value(month_name(static_cast<int>(month), abbrev));
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

Value Concat(const Value& a, const Value& b) {
  if (is_null(a) && is_null(b)) return Value{};
  std::string out;
  append_value_text(out, a);
  append_value_text(out, b);
  return Value{std::move(out)};
}

Value Like(const Value& s, const Value& pattern) {
  if (is_null(s) || is_null(pattern)) return Value{};
  std::string a, b;
  return Value{std::int64_t{like_match(text_arg(s, a), text_arg(pattern, b)) ? -1 : 0}};
}

Value IntDiv(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  std::int64_t x = int_arg(a, "\\");
  std::int64_t y = int_arg(b, "\\");
  if (y == 0) throw FunctionError("División por cero");
  if (x == INT64_MIN && y == -1) overflow("\\", a);
  return Value{x / y};
}

Value Mod(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  std::int64_t x = int_arg(a, "Mod");
  std::int64_t y = int_arg(b, "Mod");
  if (y == 0) throw FunctionError("División por cero");
  if (y == -1) return Value{std::int64_t{0}};
  return Value{x % y};
}

Value Pow(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  double x = number_arg(a, "^");
  double y = number_arg(b, "^");
  if (x == 0 && y < 0) throw FunctionError("División por cero");
  double r = std::pow(x, y);
  if (std::isnan(r)) bad_argument("^", a);
  if (std::isinf(r)) overflow("^", a);
  return Value{r};
}

Value Not(const Value& a) {
  Logical x = logical_arg(a, "Not");
  if (x.null) return Value{};
  return Value{std::int64_t{~x.v}};
}

Value And(const Value& a, const Value& b) {
  Logical x = logical_arg(a, "And");
  Logical y = logical_arg(b, "And");
  if (x.null && y.null) return Value{};
  if (x.null || y.null) {  // Null And False is False
    std::int32_t other = x.null ? y.v : x.v;
    return other == 0 ? Value{std::int64_t{0}} : Value{};
  }
  return Value{std::int64_t{x.v & y.v}};
}

Value Or(const Value& a, const Value& b) {
  Logical x = logical_arg(a, "Or");
  Logical y = logical_arg(b, "Or");
  if (x.null && y.null) return Value{};
  if (x.null || y.null) {  // Null Or True is True
    std::int32_t other = x.null ? y.v : x.v;
    return other == -1 ? Value{std::int64_t{-1}} : Value{};
  }
  return Value{std::int64_t{x.v | y.v}};
}

Value Xor(const Value& a, const Value& b) {
  Logical x = logical_arg(a, "Xor");
  Logical y = logical_arg(b, "Xor");
  if (x.null || y.null) return Value{};
  return Value{std::int64_t{x.v ^ y.v}};
}

Value Eqv(const Value& a, const Value& b) {
  Logical x = logical_arg(a, "Eqv");
  Logical y = logical_arg(b, "Eqv");
  if (x.null || y.null) return Value{};
  return Value{std::int64_t{~(x.v ^ y.v)}};
}

Value Imp(const Value& a, const Value& b) {
  Logical x = logical_arg(a, "Imp");
  Logical y = logical_arg(b, "Imp");
  if (x.null && y.null) return Value{};
  if (x.null) return y.v == -1 ? Value{std::int64_t{-1}} : Value{};  // Null Imp True is True
  if (y.null) return x.v == 0 ? Value{std::int64_t{-1}} : Value{};   // False Imp Null is True
  return Value{std::int64_t{~x.v | y.v}};
}

}  // namespace fn
}  // namespace db::jet
