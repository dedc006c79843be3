// staging/interchange_convert.cpp — conversion of typed fields.
#include "staging/interchange_convert.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "db/jet/date.h"

namespace staging {

namespace {

std::string_view Trimmed(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && (s[b] == ' ' || s[b] == '\t')) ++b;
  while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
  return s.substr(b, e - b);
}

// A plain decimal ("-1234.56", already checked) of at most 15 digits: its
// digits are a whole number a double holds exactly, and dividing it by an
// exact power of ten rounds once, correctly — the same double a full parse
// gives, found several times faster (amounts are most of a payroll file).
bool FastDecimal(std::string_view s, double* out) {
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  bool negative = false;
  if (!s.empty() && s.front() == '-') {
    negative = true;
    s.remove_prefix(1);
  }
  std::uint64_t whole = 0;
  int digits = 0, decimals = 0;
  bool after_point = false;
  for (char c : s) {
    if (c == '.') {
      after_point = true;
      continue;
    }
    if (++digits > 15) return false;
    whole = whole * 10 + static_cast<std::uint64_t>(c - '0');
    if (after_point) ++decimals;
  }
  double value = static_cast<double>(whole) / kPowers[decimals];
  *out = negative ? -value : value;
  return true;
}

// A decimal number ("-12", "3.25", "+4", "1.5E+05") with "." as separator.
bool ParseReal(std::string_view s, double* out) {
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  if (s.empty()) return false;
  // Digits, a sign, one point and an exponent only: from_chars alone would
  // also take "inf" and "nan", which no payroll export means.
  bool digit = false, exponent_digit = false, in_exponent = false;
  int points = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    char c = s[i];
    if (c >= '0' && c <= '9') {
      (in_exponent ? exponent_digit : digit) = true;
    } else if (c == '.' && !in_exponent) {
      ++points;
    } else if ((c == 'e' || c == 'E') && digit && !in_exponent) {
      in_exponent = true;
    } else if (c == '-' && i == 0) {
    } else if ((c == '+' || c == '-') && in_exponent && (s[i - 1] == 'e' || s[i - 1] == 'E')) {
    } else {
      return false;
    }
  }
  if (!digit || points > 1 || (in_exponent && !exponent_digit)) return false;
  if (!in_exponent && FastDecimal(s, out)) return true;
  auto result = std::from_chars(s.data(), s.data() + s.size(), *out);
  return result.ec == std::errc() && result.ptr == s.data() + s.size();
}

// A time of day "h:mm", "hh:mm:ss" (a fraction of a second such as ".000"
// allowed and dropped), or nullopt.
std::optional<db::jet::DateTime> ParseTimeOfDay(std::string_view s) {
  auto digits = [&](std::size_t& at, std::size_t min, std::size_t max, int& value) {
    std::size_t n = 0;
    value = 0;
    while (n < max && at + n < s.size() && s[at + n] >= '0' && s[at + n] <= '9') {
      value = value * 10 + (s[at + n] - '0');
      ++n;
    }
    at += n;
    return n >= min;
  };
  db::jet::DateTime t;
  std::size_t at = 0;
  if (!digits(at, 1, 2, t.hour) || at >= s.size() || s[at++] != ':' || !digits(at, 2, 2, t.minute)) {
    return std::nullopt;
  }
  if (at < s.size() && s[at] == ':') {
    ++at;
    if (!digits(at, 2, 2, t.second)) return std::nullopt;
    if (at < s.size() && s[at] == '.') {
      int ignored = 0;
      ++at;
      if (!digits(at, 1, 9, ignored)) return std::nullopt;
    }
  }
  if (at != s.size() || t.hour > 23 || t.minute > 59 || t.second > 59) return std::nullopt;
  return t;
}

// A date field read with the column's pattern. Source programs often write a
// date column as a whole timestamp ("2024-02-29 00:00:00"), so a time of day
// after the date is accepted. The stored text is the one form every date the
// program writes takes (db::jet::format_iso): the date alone at midnight,
// otherwise "yyyy-MM-dd hh:nn:ss", so that the same day compares equal
// whichever way the source wrote it.
std::optional<std::string> ConvertDate(std::string_view s, std::string_view pattern) {
  if (auto iso = settings::ParseDateWithPattern(s, pattern)) return iso;
  for (std::size_t cut = s.size(); cut-- > 0;) {
    if (s[cut] != ' ' && s[cut] != 'T') continue;
    auto time = ParseTimeOfDay(s.substr(cut + 1));
    if (!time) continue;
    auto iso = settings::ParseDateWithPattern(s.substr(0, cut), pattern);
    if (!iso) return std::nullopt;
    auto date = db::jet::parse_iso(*iso);
    if (!date) return std::nullopt;
    date->hour = time->hour;
    date->minute = time->minute;
    date->second = time->second;
    return db::jet::format_iso(*date);
  }
  return std::nullopt;
}

}  // namespace

bool ConvertField(std::string_view field, const settings::DataColumn& column, char decimal_separator,
                  FieldValue& out, bool quoted) {
  out.kind = FieldValue::Kind::Null;
  if (column.type == settings::ColumnType::Text) {
    if (field.empty() && !quoted) return true;
    out.kind = FieldValue::Kind::Text;
    out.text = field;
    return true;
  }
  std::string_view s = Trimmed(field);
  if (s.empty()) return true;
  switch (column.type) {
    case settings::ColumnType::Integer: {
      std::string_view digits = s;
      if (digits.front() == '+') digits.remove_prefix(1);
      std::int64_t v = 0;
      auto r = std::from_chars(digits.data(), digits.data() + digits.size(), v);
      if (r.ec == std::errc() && r.ptr == digits.data() + digits.size()) {
        out.kind = FieldValue::Kind::Integer;
        out.integer = v;
        return true;
      }
      double d = 0;
      if (ParseReal(s, &d) && std::floor(d) == d && std::fabs(d) < 9.0e15) {
        out.kind = FieldValue::Kind::Integer;
        out.integer = static_cast<std::int64_t>(d);
        return true;
      }
      return false;
    }
    case settings::ColumnType::Real: {
      double d = 0;
      bool ok;
      if (decimal_separator == '.') {
        ok = ParseReal(s, &d);
      } else {
        // A "." in a field of a comma-decimal file is not a decimal point.
        if (s.find('.') != std::string_view::npos) return false;
        std::string copy(s);
        for (char& c : copy)
          if (c == decimal_separator) c = '.';
        ok = ParseReal(copy, &d);
      }
      if (!ok) return false;
      out.kind = FieldValue::Kind::Real;
      out.real = d;
      return true;
    }
    case settings::ColumnType::Date: {
      auto iso = ConvertDate(s, column.date_pattern);
      if (!iso) return false;
      out.iso = std::move(*iso);
      out.kind = FieldValue::Kind::Text;
      out.text = out.iso;
      return true;
    }
    case settings::ColumnType::Text:
      break;
  }
  return true;
}

std::string ExpectedText(const settings::DataColumn& column) {
  switch (column.type) {
    case settings::ColumnType::Integer:
      return "un número entero";
    case settings::ColumnType::Real:
      return "un número";
    case settings::ColumnType::Date:
      return "una fecha " + column.date_pattern;
    case settings::ColumnType::Text:
      break;
  }
  return "un texto";
}

}  // namespace staging
