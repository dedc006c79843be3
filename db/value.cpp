// db/value.cpp — conversions of field values to text and numbers.
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "db/value.h"
#include "db/value_format.h"

namespace db {

namespace {

// Whole doubles up to this magnitude are written as plain digits; beyond it
// CStr switches to exponent notation.
constexpr double kPlainLimit = 1e15;

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Text with every blank removed: Val reads "1 2 3" as 123.
std::string without_blanks(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (!is_blank(c)) out.push_back(c);
  }
  return out;
}

// Reads the digits of `s` from `pos` in `base`; stops at the first other char.
double read_radix(const std::string& s, std::size_t pos, int base) {
  double value = 0;
  for (; pos < s.size(); ++pos) {
    char c = s[pos];
    int digit;
    if (c >= '0' && c <= '9') {
      digit = c - '0';
    } else if (base == 16 && c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    } else if (base == 16 && c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else {
      break;
    }
    if (digit >= base) break;
    value = value * base + digit;
  }
  return value;
}

}  // namespace

std::string format_double(double d) {
  if (std::isnan(d)) return "NaN";
  if (std::isinf(d)) return d < 0 ? "-Infinity" : "Infinity";
  if (d == 0) return "0";
  char buf[64];
  double magnitude = std::fabs(d);
  if (magnitude < kPlainLimit && magnitude >= 1e-4) {
    if (d == std::trunc(d)) {
      return std::to_string(static_cast<long long>(d));
    }
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, d, std::chars_format::fixed);
    return std::string(buf, end);
  }
  // Exponent form, "1.5E+20" like CStr: upper-case E and at least two digits.
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, d, std::chars_format::scientific);
  std::string text(buf, end);
  std::size_t e = text.find('e');
  if (e == std::string::npos) return text;
  std::string mantissa = text.substr(0, e);
  std::string exponent = text.substr(e + 1);
  char sign = '+';
  if (!exponent.empty() && (exponent[0] == '+' || exponent[0] == '-')) {
    sign = exponent[0];
    exponent.erase(0, 1);
  }
  while (exponent.size() > 2 && exponent[0] == '0') exponent.erase(0, 1);
  std::string padding(exponent.size() < 2 ? 2 - exponent.size() : 0, '0');
  return mantissa + "E" + sign + padding + exponent;
}

std::string as_text(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
  if (const auto* d = std::get_if<double>(&v)) return format_double(*d);
  if (const auto* s = std::get_if<std::string>(&v)) return *s;
  return {};
}

std::string console_text(const Value& v) { return is_null(v) ? "NULL" : as_text(v); }

double leading_number(std::string_view text) {
  std::string s = without_blanks(text);
  if (s.size() >= 2 && s[0] == '&') {
    char kind = s[1];
    if (kind == 'h' || kind == 'H') return read_radix(s, 2, 16);
    if (kind == 'o' || kind == 'O') return read_radix(s, 2, 8);
    return 0;
  }
  // The longest prefix shaped like [sign] digits [. digits] [E|D [sign] digits].
  std::size_t pos = 0;
  std::string number;
  if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) number.push_back(s[pos++]);
  bool digits = false;
  while (pos < s.size() && std::isdigit(static_cast<unsigned char>(s[pos]))) {
    number.push_back(s[pos++]);
    digits = true;
  }
  if (pos < s.size() && s[pos] == '.') {
    number.push_back(s[pos++]);
    while (pos < s.size() && std::isdigit(static_cast<unsigned char>(s[pos]))) {
      number.push_back(s[pos++]);
      digits = true;
    }
  }
  if (!digits) return 0;
  if (pos < s.size() && (s[pos] == 'e' || s[pos] == 'E' || s[pos] == 'd' || s[pos] == 'D')) {
    std::size_t save = pos++;
    std::string exponent = "e";
    if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) exponent.push_back(s[pos++]);
    bool exp_digits = false;
    while (pos < s.size() && std::isdigit(static_cast<unsigned char>(s[pos]))) {
      exponent.push_back(s[pos++]);
      exp_digits = true;
    }
    if (exp_digits) {
      number += exponent;
    } else {
      pos = save;
    }
  }
  return std::strtod(number.c_str(), nullptr);
}

double as_double(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) return leading_number(*s);
  return 0;
}

std::int64_t as_int(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
  double d = std::nearbyint(as_double(v));  // default rounding: half to even
  if (std::isnan(d)) return 0;
  if (d >= 9.2233720368547758e18) return std::numeric_limits<std::int64_t>::max();
  if (d <= -9.2233720368547758e18) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(d);
}

}  // namespace db
