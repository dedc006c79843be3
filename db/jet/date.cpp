// db/jet/date.cpp — calendar arithmetic, serials, month arithmetic and the
// reading of date texts (writing them is date_format.cpp).
#include "db/jet/ascii.h"
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

bool is_digit(char c) { return c >= '0' && c <= '9'; }

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

}  // namespace db::jet
