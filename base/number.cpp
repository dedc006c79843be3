// base/number.cpp — Basic's Val and CStr's number text (see number.h).
#include "base/number.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "base/decimal_digits.h"

namespace base {

namespace {

char lower_ascii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

Number from_double(double d) {
  std::int64_t i = 0;
  if (std::nearbyint(d) == d && round_to_int64(d, i)) return Number{true, i, 0.0};
  return Number{false, 0, d};
}

double parse_double(const char* first, const char* last) {
  double d = 0.0;
  std::from_chars(first, last, d);
  return d;
}

}  // namespace

Number val_radix(std::string_view s, std::size_t i) {
  unsigned radix = 0;
  while (i < s.size() && is_blank(s[i])) ++i;
  if (i < s.size() && lower_ascii(s[i]) == 'h') radix = 16;
  else if (i < s.size() && lower_ascii(s[i]) == 'o') radix = 8;
  else return Number{};
  ++i;
  std::uint64_t v = 0;
  int digits = 0;
  for (; i < s.size(); ++i) {
    char c = lower_ascii(s[i]);
    if (is_blank(c)) continue;
    unsigned d;
    if (is_digit(c)) d = static_cast<unsigned>(c - '0');
    else if (radix == 16 && c >= 'a' && c <= 'f') d = static_cast<unsigned>(c - 'a' + 10);
    else break;
    if (d >= radix) break;
    if (v > (UINT64_MAX >> (radix == 16 ? 4 : 3))) break;  // stop before overflowing
    v = v * radix + d;
    ++digits;
  }
  if (digits == 0) return Number{};
  if (v <= 0xFFFFu) return Number{true, static_cast<std::int16_t>(v), 0.0};
  if (v <= 0xFFFFFFFFu) return Number{true, static_cast<std::int32_t>(v), 0.0};
  return Number{true, static_cast<std::int64_t>(v), 0.0};
}

namespace {

// DecimalDigits of the scientific text of |x|: the shortest that reads back
// (`precision` < 0) or rounded to precision + 1 significant digits.
DecimalDigits digits_of(double x, int precision) {
  char buf[40];
  auto res = precision < 0
                 ? std::to_chars(buf, buf + sizeof buf, std::fabs(x), std::chars_format::scientific)
                 : std::to_chars(buf, buf + sizeof buf, std::fabs(x), std::chars_format::scientific, precision);
  DecimalDigits out;
  const char* p = buf;
  for (; p < res.ptr && *p != 'e'; ++p)
    if (is_digit(*p)) out.d[out.n++] = *p;
  int e = 0;
  if (p < res.ptr) std::from_chars(p + (p[1] == '+' ? 2 : 1), res.ptr, e);
  out.exp10 = e;
  while (out.n > 1 && out.d[out.n - 1] == '0') --out.n;
  return out;
}

// Digits of |x| rounded to 15 significant ones.
DecimalDigits fifteen_digits(double x) { return digits_of(x, 14); }

}  // namespace

DecimalDigits shortest_digits(double x) { return digits_of(x, -1); }

Number val_text(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size() && is_blank(s[i])) ++i;
  if (i < s.size() && s[i] == '&') return val_radix(s, i + 1);

  // The number without its blanks, in a bounded buffer: digits past the
  // 40th are only counted (they change the exponent, not the value).
  char buf[72];
  std::size_t n = 0;
  bool negative = false;
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) {
    negative = s[i] == '-';
    ++i;
  }
  std::int64_t whole = 0;
  int int_digits = 0;
  int dropped_int_digits = 0;
  bool fraction = false;
  bool simple = true;  // only integer digits, few enough for an int64
  for (; i < s.size(); ++i) {
    char c = s[i];
    if (is_blank(c)) continue;
    if (is_digit(c)) {
      if (!fraction) {
        if (int_digits < 18) whole = whole * 10 + (c - '0');
        else simple = false;
        ++int_digits;
        if (n < 40) buf[n++] = c;
        else ++dropped_int_digits;
      } else if (n < 40) {
        buf[n++] = c;
      }
    } else if (c == '.' && !fraction) {
      fraction = true;
      simple = false;
      if (n < 40) buf[n++] = '.';
    } else {
      break;
    }
  }
  if (n == 0 || (n == 1 && buf[0] == '.')) return Number{};
  // Exponent: e/E/d/D, optional sign, at least one digit.
  int exponent = 0;
  bool has_exponent = false;
  if (i < s.size() && (lower_ascii(s[i]) == 'e' || lower_ascii(s[i]) == 'd')) {
    std::size_t j = i + 1;
    while (j < s.size() && is_blank(s[j])) ++j;
    bool exp_negative = false;
    if (j < s.size() && (s[j] == '-' || s[j] == '+')) {
      exp_negative = s[j] == '-';
      ++j;
    }
    int e = 0;
    bool any = false;
    for (; j < s.size(); ++j) {
      if (is_blank(s[j])) continue;
      if (!is_digit(s[j])) break;
      any = true;
      if (e < 10000) e = e * 10 + (s[j] - '0');
    }
    if (any) {
      has_exponent = true;
      exponent = exp_negative ? -e : e;
    }
  }
  if (simple && !has_exponent) return Number{true, negative ? -whole : whole, 0.0};
  exponent += dropped_int_digits;
  int len = static_cast<int>(n);
  if (exponent != 0) {
    buf[len++] = 'e';
    auto r = std::to_chars(buf + len, buf + sizeof buf, exponent);
    len = static_cast<int>(r.ptr - buf);
  }
  double d = parse_double(buf, buf + len);
  return from_double(negative ? -d : d);
}

double Val(std::string_view text) { return val_text(text).as_double(); }

std::int32_t ValInt32(std::string_view text, bool* overflow) {
  Number n = val_text(text);
  double v = n.is_int ? static_cast<double>(n.i) : std::nearbyint(n.d);  // half to even
  bool over = v > std::numeric_limits<std::int32_t>::max() || v < std::numeric_limits<std::int32_t>::min();
  if (overflow) *overflow = over;
  if (over) return v > 0 ? std::numeric_limits<std::int32_t>::max() : std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(v);
}

bool round_to_int64(double x, std::int64_t& out) {
  double r = std::nearbyint(x);  // the default rounding mode rounds half to even
  if (!(r >= -9223372036854775808.0 && r < 9223372036854775808.0)) return false;
  out = static_cast<std::int64_t>(r);
  return true;
}

std::size_t cstr_number_to(double x, char* buf) {
  char* p = buf;
  if (std::isnan(x)) {
    std::memcpy(buf, "NaN", 3);
    return 3;
  }
  if (std::isinf(x)) {
    const char* t = x < 0 ? "-Inf" : "Inf";
    std::size_t n = std::strlen(t);
    std::memcpy(buf, t, n);
    return n;
  }
  if (x == 0.0) {
    buf[0] = '0';
    return 1;
  }
  if (std::fabs(x) < 1e15 && std::trunc(x) == x) {
    return static_cast<std::size_t>(
        std::to_chars(buf, buf + kNumberTextMax, static_cast<std::int64_t>(x)).ptr - buf);
  }
  // VBA shows 15 significant digits: 0.1 + 0.2 is "0.3", not 0.30000000000000004.
  DecimalDigits d = shortest_digits(x);
  if (d.n > 15) d = fifteen_digits(x);
  if (x < 0) *p++ = '-';
  if (d.exp10 >= -4 && d.exp10 < 15) {
    if (d.exp10 < 0) {
      *p++ = '0';
      *p++ = '.';
      for (int i = 0; i < -d.exp10 - 1; ++i) *p++ = '0';
      for (int i = 0; i < d.n; ++i) *p++ = d.d[i];
    } else {
      for (int i = 0; i <= d.exp10; ++i) *p++ = i < d.n ? d.d[i] : '0';
      if (d.n > d.exp10 + 1) {
        *p++ = '.';
        for (int i = d.exp10 + 1; i < d.n; ++i) *p++ = d.d[i];
      }
    }
  } else {
    *p++ = d.d[0];
    if (d.n > 1) {
      *p++ = '.';
      for (int i = 1; i < d.n; ++i) *p++ = d.d[i];
    }
    *p++ = 'E';
    *p++ = d.exp10 < 0 ? '-' : '+';
    int e = d.exp10 < 0 ? -d.exp10 : d.exp10;
    if (e < 10) *p++ = '0';
    p = std::to_chars(p, buf + kNumberTextMax, e).ptr;
  }
  return static_cast<std::size_t>(p - buf);
}

void append_cstr_number(std::string& out, double x) {
  char buf[kNumberTextMax];
  out.append(buf, cstr_number_to(x, buf));
}

std::string cstr_number(double x) {
  std::string out;
  append_cstr_number(out, x);
  return out;
}

}  // namespace base
