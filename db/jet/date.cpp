// db/jet/date.cpp — calendar arithmetic, serials, date texts in and out.
#include "db/jet/date.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace db::jet {

namespace {

constexpr std::int64_t kMinYear = 100;
constexpr std::int64_t kMaxYear = 9999;
constexpr std::int64_t kSecondsPerDay = 86400;

constexpr std::array<const char*, 12> kMonthNames = {
    "enero", "febrero", "marzo", "abril", "mayo", "junio",
    "julio", "agosto", "septiembre", "octubre", "noviembre", "diciembre"};
constexpr std::array<const char*, 12> kMonthAbbrev = {
    "ene", "feb", "mar", "abr", "may", "jun", "jul", "ago", "sep", "oct", "nov", "dic"};
constexpr std::array<const char*, 7> kDayNames = {
    "domingo", "lunes", "martes", "miércoles", "jueves", "viernes", "sábado"};
constexpr std::array<const char*, 7> kDayAbbrev = {"dom", "lun", "mar", "mié", "jue", "vie", "sáb"};

char lower_ascii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool iequals(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower_ascii(a[i]) != lower_ascii(b[i])) return false;
  return true;
}

void append_2(std::string& out, int v) {
  out.push_back(static_cast<char>('0' + (v / 10) % 10));
  out.push_back(static_cast<char>('0' + v % 10));
}

void append_4(std::string& out, int v) {
  append_2(out, v / 100);
  append_2(out, v % 100);
}

void append_int(std::string& out, std::int64_t v) { out += std::to_string(v); }

// Two-digit years as Jet reads them: 00-29 this century, 30-99 the last.
std::int64_t window_year(std::int64_t value, int digits) {
  if (digits > 2) return value;
  return value < 30 ? 2000 + value : 1900 + value;
}

// ---- Reading date texts -------------------------------------------------

enum class TokKind { kNumber, kMonth, kSep, kColon, kAm, kPm };

struct Token {
  TokKind kind;
  std::int64_t value = 0;  // number value, or month 1-12
  int digits = 0;          // digits of a number
  char sep = 0;
};

// Month of a word: Spanish and English names and their three-letter forms
// ("set"/"setiembre" as written in the River Plate). 0 when not a month.
int month_of_word(std::string_view w) {
  static constexpr std::array<std::array<const char*, 4>, 12> kNames = {{
      {"enero", "ene", "january", "jan"},
      {"febrero", "feb", "february", nullptr},
      {"marzo", "mar", "march", nullptr},
      {"abril", "abr", "april", "apr"},
      {"mayo", "may", nullptr, nullptr},
      {"junio", "jun", "june", nullptr},
      {"julio", "jul", "july", nullptr},
      {"agosto", "ago", "august", "aug"},
      {"septiembre", "sep", "setiembre", "set"},
      {"octubre", "oct", "october", nullptr},
      {"noviembre", "nov", "november", nullptr},
      {"diciembre", "dic", "december", "dec"},
  }};
  for (int m = 0; m < 12; ++m)
    for (const char* name : kNames[m])
      if (name != nullptr && iequals(w, name)) return m + 1;
  if (iequals(w, "sept")) return 9;
  return 0;
}

// Splits a date text into numbers, month names, separators, colons and
// AM/PM marks. Spaces, "de" and a 'T' between date and time are dropped.
// False when the text holds anything else.
template <std::size_t N>
bool tokenize(std::string_view s, std::array<Token, N>& toks, std::size_t& count) {
  count = 0;
  auto push = [&](const Token& t) {
    if (count == N) return false;
    toks[count++] = t;
    return true;
  };
  std::size_t i = 0;
  while (i < s.size()) {
    char c = s[i];
    if (c == ' ' || c == '\t') {
      ++i;
    } else if (is_digit(c)) {
      Token t{TokKind::kNumber};
      while (i < s.size() && is_digit(s[i])) {
        if (t.digits >= 9) return false;
        t.value = t.value * 10 + (s[i] - '0');
        ++t.digits;
        ++i;
      }
      if (!push(t)) return false;
    } else if (c == '/' || c == '-' || c == '.' || c == ',') {
      if (!push(Token{TokKind::kSep, 0, 0, c})) return false;
      ++i;
    } else if (c == ':') {
      if (!push(Token{TokKind::kColon})) return false;
      ++i;
    } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
      std::size_t start = i;
      while (i < s.size() && ((s[i] >= 'a' && s[i] <= 'z') || (s[i] >= 'A' && s[i] <= 'Z'))) ++i;
      std::string_view w = s.substr(start, i - start);
      if (iequals(w, "de") || iequals(w, "t")) continue;
      if (iequals(w, "am") || iequals(w, "pm")) {
        if (!push(Token{lower_ascii(w[0]) == 'a' ? TokKind::kAm : TokKind::kPm})) return false;
        continue;
      }
      // "a.m." / "p.m."
      if ((iequals(w, "a") || iequals(w, "p")) && i + 1 < s.size() && s[i] == '.' &&
          lower_ascii(s[i + 1]) == 'm') {
        i += 2;
        if (i < s.size() && s[i] == '.') ++i;
        if (!push(Token{lower_ascii(w[0]) == 'a' ? TokKind::kAm : TokKind::kPm})) return false;
        continue;
      }
      int m = month_of_word(w);
      if (m == 0) return false;
      if (!push(Token{TokKind::kMonth, m})) return false;
      if (i < s.size() && s[i] == '.') ++i;  // "feb." abbreviation dot
    } else {
      return false;
    }
  }
  return true;
}

bool set_date(DateTime& d, std::int64_t y, std::int64_t m, std::int64_t day) {
  if (y < kMinYear || y > kMaxYear || m < 1 || m > 12 || day < 1 || day > days_in_month(y, static_cast<int>(m)))
    return false;
  d.year = static_cast<int>(y);
  d.month = static_cast<int>(m);
  d.day = static_cast<int>(day);
  return true;
}

// Fills the date of `out` from the date parts (numbers and month names, in
// order). month_first reads a three-number date as m/d/y (SQL literals), else
// d/m/y. A first-read that is impossible but valid with day and month swapped
// is taken swapped, as Jet does.
bool read_date_parts(const Token* parts, std::size_t n, bool month_first, DateTime& out) {
  auto year_of = [](const Token& t) { return window_year(t.value, t.digits); };
  auto is_yearish = [](const Token& t) { return t.kind == TokKind::kNumber && (t.digits >= 3 || t.value > 31); };
  if (n == 3) {
    const Token& a = parts[0];
    const Token& b = parts[1];
    const Token& c = parts[2];
    if (a.kind == TokKind::kNumber && a.digits >= 3) {  // year first
      if (c.kind != TokKind::kNumber || c.digits > 2) return false;
      if (b.kind == TokKind::kNumber && b.digits > 2) return false;
      return set_date(out, a.value, b.value, c.value);
    }
    if (c.kind != TokKind::kNumber || c.digits > 4) return false;
    std::int64_t y = year_of(c);
    if (a.kind == TokKind::kMonth) return b.kind == TokKind::kNumber && b.digits <= 2 && set_date(out, y, a.value, b.value);
    if (b.kind == TokKind::kMonth) return a.kind == TokKind::kNumber && a.digits <= 2 && set_date(out, y, b.value, a.value);
    if (a.digits > 2 || b.digits > 2) return false;
    std::int64_t day = month_first ? b.value : a.value;
    std::int64_t month = month_first ? a.value : b.value;
    return set_date(out, y, month, day) || set_date(out, y, day, month);
  }
  if (n == 2) {
    const Token& a = parts[0];
    const Token& b = parts[1];
    if (a.kind == TokKind::kNumber && a.digits >= 3 && b.digits <= 2)  // yyyy-MM
      return set_date(out, a.value, b.value, 1);
    if (a.kind == TokKind::kMonth && b.kind == TokKind::kNumber) return set_date(out, year_of(b), a.value, 1);
    if (a.kind == TokKind::kNumber && a.digits <= 2 && is_yearish(b))  // MM/yyyy
      return set_date(out, year_of(b), a.value, 1);
    return false;
  }
  return false;
}

// Reads "h:nn[:ss[.fff]] [AM|PM]" from toks[i..n). Fractions of a second are
// dropped.
bool read_time_parts(const Token* t, std::size_t n, DateTime& out) {
  std::size_t i = 0;
  std::int64_t v[3] = {0, 0, 0};
  int fields = 0;
  while (i < n && t[i].kind == TokKind::kNumber && fields < 3) {
    if (t[i].digits > 2) return false;
    v[fields++] = t[i].value;
    ++i;
    if (i < n && t[i].kind == TokKind::kColon) {
      ++i;
      if (i >= n || t[i].kind != TokKind::kNumber) return false;
    } else {
      break;
    }
  }
  if (fields < 2) return false;
  if (fields == 3 && i + 1 < n && t[i].kind == TokKind::kSep && t[i].sep == '.' &&
      t[i + 1].kind == TokKind::kNumber)
    i += 2;  // fraction of a second
  std::int64_t hour = v[0];
  if (i < n && (t[i].kind == TokKind::kAm || t[i].kind == TokKind::kPm)) {
    if (hour < 1 || hour > 12) return false;
    if (t[i].kind == TokKind::kAm) hour = hour == 12 ? 0 : hour;
    else hour = hour == 12 ? 12 : hour + 12;
    ++i;
  }
  if (i != n) return false;
  if (hour > 23 || v[1] > 59 || v[2] > 59) return false;
  out.hour = static_cast<int>(hour);
  out.minute = static_cast<int>(v[1]);
  out.second = static_cast<int>(v[2]);
  return true;
}

std::optional<DateTime> parse_general(std::string_view text, bool month_first) {
  std::array<Token, 24> toks;
  std::size_t n = 0;
  if (!tokenize(text, toks, n) || n == 0) return std::nullopt;
  // The time starts at the number right before the first colon.
  std::size_t time_start = n;
  for (std::size_t i = 0; i < n; ++i) {
    if (toks[i].kind == TokKind::kColon) {
      if (i == 0 || toks[i - 1].kind != TokKind::kNumber) return std::nullopt;
      time_start = i - 1;
      break;
    }
  }
  DateTime out;
  if (time_start < n && !read_time_parts(&toks[time_start], n - time_start, out)) return std::nullopt;
  // Date parts: numbers and month names; separators between them are free.
  std::array<Token, 24> parts;
  std::size_t parts_n = 0;
  for (std::size_t i = 0; i < time_start; ++i) {
    if (toks[i].kind == TokKind::kNumber || toks[i].kind == TokKind::kMonth) parts[parts_n++] = toks[i];
    else if (toks[i].kind != TokKind::kSep) return std::nullopt;
  }
  if (parts_n == 0) {
    if (time_start == n) return std::nullopt;
    return out;  // a time alone: on day 0
  }
  if (!read_date_parts(parts.data(), parts_n, month_first, out)) return std::nullopt;
  return out;
}

// The common shapes "dd/MM/yyyy" and "MM/yyyy" (any of / - . between, one
// or two digit days and months) without the general tokenizer: the transfer
// reads a "MM/yyyy" text back as a date for every leave row. Nullopt when
// the text has another shape; the general reader then decides.
std::optional<DateTime> parse_simple_numeric(std::string_view s) {
  if (s.size() < 6 || s.size() > 10) return std::nullopt;
  int v[3] = {0, 0, 0};
  int digits[3] = {0, 0, 0};
  int fields = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    char c = s[i];
    if (is_digit(c)) {
      v[fields] = v[fields] * 10 + (c - '0');
      if (++digits[fields] > 4) return std::nullopt;
    } else if ((c == '/' || c == '-' || c == '.') && digits[fields] > 0 && fields < 2) {
      ++fields;
    } else {
      return std::nullopt;
    }
  }
  ++fields;
  DateTime d;
  if (fields == 3 && digits[0] <= 2 && digits[1] <= 2 && digits[2] == 4) {
    if (set_date(d, v[2], v[1], v[0]) || set_date(d, v[2], v[0], v[1])) return d;
    return std::nullopt;
  }
  if (fields == 2 && digits[0] <= 2 && digits[1] == 4) {
    if (set_date(d, v[1], v[0], 1)) return d;
    return std::nullopt;
  }
  return std::nullopt;
}

std::string_view trim_spaces(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

// ---- Format patterns ----------------------------------------------------

void append_short_date(std::string& out, const DateTime& d) {
  append_2(out, d.day);
  out.push_back('/');
  append_2(out, d.month);
  out.push_back('/');
  append_4(out, d.year);
}

void append_long_time(std::string& out, const DateTime& d) {
  append_2(out, d.hour);
  out.push_back(':');
  append_2(out, d.minute);
  out.push_back(':');
  append_2(out, d.second);
}

void append_long_date(std::string& out, const DateTime& d) {
  out += kDayNames[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
  out += ", ";
  append_int(out, d.day);
  out += " de ";
  out += kMonthNames[static_cast<std::size_t>(d.month - 1)];
  out += " de ";
  append_4(out, d.year);
}

// True when the pattern shows AM/PM, which switches hours to a 12-hour clock.
bool uses_12_hour(std::string_view p) {
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) break;
      i = close;
    } else if (p[i] == '\\') {
      ++i;
    } else if (lower_ascii(p[i]) == 'a' || p[i] == 'A') {
      std::string_view rest = p.substr(i);
      if (rest.size() >= 5 && (iequals(rest.substr(0, 5), "am/pm"))) return true;
      if (rest.size() >= 3 && iequals(rest.substr(0, 3), "a/p")) return true;
      if (rest.size() >= 4 && iequals(rest.substr(0, 4), "ampm")) return true;
    }
  }
  return false;
}

}  // namespace

// ---- Calendar -----------------------------------------------------------

std::int64_t days_from_civil(std::int64_t y, int m, int d) {
  // Howard Hinnant's algorithm over 400-year eras.
  y -= m <= 2 ? 1 : 0;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t yoe = y - era * 400;
  const std::int64_t mp = m > 2 ? m - 3 : m + 9;
  const std::int64_t doy = (153 * mp + 2) / 5 + d - 1;
  const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

void civil_from_days(std::int64_t z, DateTime& out) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const std::int64_t doe = z - era * 146097;
  const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const std::int64_t mp = (5 * doy + 2) / 153;
  const std::int64_t d = doy - (153 * mp + 2) / 5 + 1;
  const std::int64_t m = mp < 10 ? mp + 3 : mp - 9;
  out.year = static_cast<int>(yoe + era * 400 + (m <= 2 ? 1 : 0));
  out.month = static_cast<int>(m);
  out.day = static_cast<int>(d);
}

int days_in_month(std::int64_t year, int month) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  if (month == 2) {
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return leap ? 29 : 28;
  }
  return kDays[month - 1];
}

bool is_valid(const DateTime& d) {
  return d.year >= kMinYear && d.year <= kMaxYear && d.month >= 1 && d.month <= 12 && d.day >= 1 &&
         d.day <= days_in_month(d.year, d.month) && d.hour >= 0 && d.hour <= 23 && d.minute >= 0 &&
         d.minute <= 59 && d.second >= 0 && d.second <= 59;
}

int day_of_year(const DateTime& d) {
  return static_cast<int>(day_number(d) - days_from_civil(d.year, 1, 1)) + 1;
}

int week_of_year(const DateTime& d) {
  int first_weekday = weekday(days_from_civil(d.year, 1, 1));
  return (day_of_year(d) + first_weekday - 2) / 7 + 1;
}

std::string_view month_name(int month, bool abbreviated) {
  if (month < 1 || month > 12) return {};
  return abbreviated ? kMonthAbbrev[static_cast<std::size_t>(month - 1)] : kMonthNames[static_cast<std::size_t>(month - 1)];
}

int weekday(std::int64_t dn) {
  // 1970-01-01 was a Thursday (5 when Sunday is 1).
  std::int64_t w = (dn + 4) % 7;
  if (w < 0) w += 7;
  return static_cast<int>(w) + 1;
}

std::int64_t epoch_seconds(const DateTime& d) {
  return day_number(d) * kSecondsPerDay + d.hour * 3600 + d.minute * 60 + d.second;
}

std::optional<DateTime> from_epoch_seconds(std::int64_t seconds) {
  std::int64_t days = seconds / kSecondsPerDay;
  std::int64_t rest = seconds % kSecondsPerDay;
  if (rest < 0) {
    rest += kSecondsPerDay;
    --days;
  }
  DateTime out;
  civil_from_days(days, out);
  if (out.year < kMinYear || out.year > kMaxYear) return std::nullopt;
  out.hour = static_cast<int>(rest / 3600);
  out.minute = static_cast<int>(rest / 60 % 60);
  out.second = static_cast<int>(rest % 60);
  return out;
}

double to_serial(const DateTime& d) {
  double days = static_cast<double>(day_number(d) - kSerialEpochDays);
  double time = (d.hour * 3600 + d.minute * 60 + d.second) / static_cast<double>(kSecondsPerDay);
  return days >= 0 ? days + time : days - time;
}

std::optional<DateTime> from_serial(double serial) {
  // Jet's range: 100-01-01 to 9999-12-31 23:59:59.
  if (!std::isfinite(serial) || serial < -657435.0 || serial >= 2958466.0) return std::nullopt;
  double whole = std::trunc(serial);
  std::int64_t days = static_cast<std::int64_t>(whole);
  std::int64_t secs = std::llround(std::fabs(serial - whole) * kSecondsPerDay);
  if (secs >= kSecondsPerDay) {
    secs -= kSecondsPerDay;
    ++days;
  }
  return from_epoch_seconds((days + kSerialEpochDays) * kSecondsPerDay + secs);
}

// ---- Reading ------------------------------------------------------------

std::optional<DateTime> parse_iso(std::string_view s) {
  if (s.size() != 10 && s.size() != 19) return std::nullopt;
  auto num = [&](std::size_t pos, std::size_t len, int& v) {
    v = 0;
    for (std::size_t i = pos; i < pos + len; ++i) {
      if (!is_digit(s[i])) return false;
      v = v * 10 + (s[i] - '0');
    }
    return true;
  };
  DateTime d;
  if (s[4] != '-' || s[7] != '-' || !num(0, 4, d.year) || !num(5, 2, d.month) || !num(8, 2, d.day))
    return std::nullopt;
  if (s.size() == 19) {
    if ((s[10] != ' ' && s[10] != 'T') || s[13] != ':' || s[16] != ':' || !num(11, 2, d.hour) ||
        !num(14, 2, d.minute) || !num(17, 2, d.second))
      return std::nullopt;
  }
  if (!is_valid(d)) return std::nullopt;
  return d;
}

std::optional<DateTime> parse_date_text(std::string_view text) {
  text = trim_spaces(text);
  if (auto iso = parse_iso(text)) return iso;
  if (auto simple = parse_simple_numeric(text)) return simple;
  return parse_general(text, false);
}

std::optional<std::string> jet_date_literal_to_iso(std::string_view inside_hashes) {
  std::string_view text = trim_spaces(inside_hashes);
  std::optional<DateTime> d = parse_iso(text);
  if (!d) d = parse_general(text, true);
  if (!d) return std::nullopt;
  return format_iso(*d);
}

// ---- Writing ------------------------------------------------------------

void append_iso(std::string& out, const DateTime& d) {
  append_4(out, d.year);
  out.push_back('-');
  append_2(out, d.month);
  out.push_back('-');
  append_2(out, d.day);
  if (d.has_time()) {
    out.push_back(' ');
    append_long_time(out, d);
  }
}

std::string format_iso(const DateTime& d) {
  std::string out;
  out.reserve(19);
  append_iso(out, d);
  return out;
}

void append_display(std::string& out, const DateTime& d) {
  bool day_zero = d.year == 1899 && d.month == 12 && d.day == 30;
  if (day_zero && d.has_time()) {
    append_long_time(out, d);
    return;
  }
  append_short_date(out, d);
  if (d.has_time()) {
    out.push_back(' ');
    append_long_time(out, d);
  }
}

std::optional<DateTime> add_months(const DateTime& d, std::int64_t months) {
  // Keep the arithmetic far from overflow: anything beyond 10000 years fails.
  if (months > 120000 || months < -120000) return std::nullopt;
  std::int64_t total = static_cast<std::int64_t>(d.year) * 12 + (d.month - 1) + months;
  std::int64_t year = total >= 0 ? total / 12 : (total - 11) / 12;
  int month = static_cast<int>(total - year * 12) + 1;
  if (year < kMinYear || year > kMaxYear) return std::nullopt;
  DateTime out = d;
  out.year = static_cast<int>(year);
  out.month = month;
  int last = days_in_month(year, month);
  if (out.day > last) out.day = last;
  return out;
}

bool is_date_pattern(std::string_view p) {
  static constexpr const char* kDateNames[] = {"general date", "short date", "medium date", "long date",
                                               "short time",   "medium time", "long time"};
  for (const char* name : kDateNames)
    if (iequals(p, name)) return true;
  bool date_letter = false;
  for (std::size_t i = 0; i < p.size(); ++i) {
    char c = lower_ascii(p[i]);
    if (c == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) break;
      i = close;
    } else if (c == '\\') {
      ++i;
    } else if (c == '0' || c == '#') {
      return false;
    } else if (c == 'd' || c == 'm' || c == 'y' || c == 'h' || c == 'n' || c == 's' || c == 'w' || c == 'q' ||
               c == 'c') {
      date_letter = true;
    }
  }
  return date_letter;
}

void append_date_pattern(std::string& out, const DateTime& d, std::string_view p) {
  if (iequals(p, "general date") || p == "c" || p == "C") return append_display(out, d);
  if (iequals(p, "short date")) return append_short_date(out, d);
  if (iequals(p, "long date")) return append_long_date(out, d);
  if (iequals(p, "long time")) return append_long_time(out, d);
  if (iequals(p, "medium date")) return append_date_pattern(out, d, "dd-mmm-yy");
  if (iequals(p, "short time")) return append_date_pattern(out, d, "hh:nn");
  if (iequals(p, "medium time")) return append_date_pattern(out, d, "hh:nn AM/PM");

  const bool twelve = uses_12_hour(p);
  bool after_hour = false;  // the last field shown was an hour: m means minutes
  std::size_t i = 0;
  while (i < p.size()) {
    char c = lower_ascii(p[i]);
    std::size_t run = 1;
    while (i + run < p.size() && lower_ascii(p[i + run]) == c) ++run;
    switch (c) {
      case '"': {
        std::size_t close = p.find('"', i + 1);
        if (close == std::string_view::npos) close = p.size();
        out.append(p.substr(i + 1, close - i - 1));
        i = close + 1;
        continue;
      }
      case '\\':
        if (i + 1 < p.size()) out.push_back(p[i + 1]);
        i += 2;
        continue;
      case 'd':
        if (run == 1) append_int(out, d.day);
        else if (run == 2) append_2(out, d.day);
        else if (run == 3) out += kDayAbbrev[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
        else if (run == 4) out += kDayNames[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
        else if (run == 5) append_short_date(out, d);
        else append_long_date(out, d);
        after_hour = false;
        break;
      case 'm':
        if (run <= 2 && after_hour) {
          if (run == 1) append_int(out, d.minute);
          else append_2(out, d.minute);
        } else if (run == 1) {
          append_int(out, d.month);
        } else if (run == 2) {
          append_2(out, d.month);
        } else if (run == 3) {
          out += kMonthAbbrev[static_cast<std::size_t>(d.month - 1)];
        } else {
          out += kMonthNames[static_cast<std::size_t>(d.month - 1)];
        }
        after_hour = false;
        break;
      case 'n':
        if (run == 1) append_int(out, d.minute);
        else append_2(out, d.minute);
        after_hour = false;
        break;
      case 'y':
        if (run == 1) append_int(out, day_of_year(d));
        else if (run == 2) append_2(out, d.year % 100);
        else append_4(out, d.year);
        after_hour = false;
        break;
      case 'h': {
        int h = d.hour;
        if (twelve) h = h % 12 == 0 ? 12 : h % 12;
        if (run == 1) append_int(out, h);
        else append_2(out, h);
        after_hour = true;
        break;
      }
      case 's':
        if (run == 1) append_int(out, d.second);
        else append_2(out, d.second);
        after_hour = false;
        break;
      case 'w':
        if (run == 1) append_int(out, weekday(day_number(d)));
        else append_int(out, week_of_year(d));
        after_hour = false;
        break;
      case 'q':
        append_int(out, (d.month - 1) / 3 + 1);
        after_hour = false;
        break;
      case 'a': {
        std::string_view rest = p.substr(i);
        bool pm = d.hour >= 12;
        if (rest.size() >= 5 && iequals(rest.substr(0, 5), "am/pm")) {
          bool upper = rest[0] == 'A';
          out += pm ? (upper ? "PM" : "pm") : (upper ? "AM" : "am");
          i += 5;
          continue;
        }
        if (rest.size() >= 3 && iequals(rest.substr(0, 3), "a/p")) {
          bool upper = rest[0] == 'A';
          out.push_back(pm ? (upper ? 'P' : 'p') : (upper ? 'A' : 'a'));
          i += 3;
          continue;
        }
        if (rest.size() >= 4 && iequals(rest.substr(0, 4), "ampm")) {
          out += pm ? "p.m." : "a.m.";
          i += 4;
          continue;
        }
        out.append(p.substr(i, run));
        break;
      }
      default:
        out.append(p.substr(i, run));
        break;
    }
    i += run;
  }
}

}  // namespace db::jet
