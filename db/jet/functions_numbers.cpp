// db/jet/functions_numbers.cpp — the strict reading of texts as numbers for
// the conversion functions, rounding at decimals, and CStr of values. Val and
// the number text itself live in base/number.h.
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/decimal_digits.h"
#include "db/jet/ascii.h"
#include "db/jet/functions.h"

namespace db::jet {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

double parse_double(const char* first, const char* last) {
  double d = 0.0;
  std::from_chars(first, last, d);
  return d;
}

}  // namespace

std::optional<double> text_to_number(std::string_view s) {
  while (!s.empty() && is_blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
  if (s.empty()) return std::nullopt;
  if (iequals(s, "true") || iequals(s, "verdadero")) return -1.0;
  if (iequals(s, "false") || iequals(s, "falso")) return 0.0;
  if (s[0] == '&') {
    Number n = val_radix(s, 1);
    return n.as_double();
  }
  if (auto date = parse_iso(s)) return to_serial(*date);
  if (s.size() > 64) return std::nullopt;
  char buf[72];
  std::size_t n = 0;
  std::size_t i = 0;
  bool negative = false;
  if (s[i] == '-' || s[i] == '+') {
    negative = s[i] == '-';
    ++i;
  }
  bool has_point = s.find('.') != std::string_view::npos;
  bool digits = false;
  bool point = false;
  for (; i < s.size(); ++i) {
    char c = s[i];
    if (is_digit(c)) {
      digits = true;
      buf[n++] = c;
    } else if ((c == '.' || (c == ',' && !has_point)) && !point) {
      point = true;
      buf[n++] = '.';
    } else {
      break;
    }
  }
  if (!digits) return std::nullopt;
  if (i < s.size() && lower_ascii(s[i]) == 'e') {
    buf[n++] = 'e';
    ++i;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) buf[n++] = s[i++];
    bool exp_digits = false;
    for (; i < s.size() && is_digit(s[i]); ++i) {
      buf[n++] = s[i];
      exp_digits = true;
    }
    if (!exp_digits) return std::nullopt;
  }
  if (i != s.size()) return std::nullopt;
  double d = 0.0;
  auto r = std::from_chars(buf, buf + n, d);
  if (r.ec != std::errc()) return std::nullopt;
  return negative ? -d : d;
}

double round_half_even(double x, int digits) {
  if (!std::isfinite(x) || x == 0.0) return x;
  if (digits <= 0) return std::nearbyint(x);
  DecimalDigits d = shortest_digits(x);
  int keep = d.exp10 + 1 + digits;  // significant digits kept
  if (keep >= d.n) return x;
  if (keep < 0) return 0.0;
  char kept[32];
  std::memcpy(kept, d.d, static_cast<std::size_t>(keep));
  int kept_n = keep;
  char next = d.d[keep];
  bool rest_nonzero = false;
  for (int i = keep + 1; i < d.n; ++i) rest_nonzero = rest_nonzero || d.d[i] != '0';
  bool last_odd = keep > 0 && ((kept[keep - 1] - '0') % 2 == 1);
  bool up = next > '5' || (next == '5' && (rest_nonzero || last_odd));
  int scale = d.exp10 + 1 - keep;  // value = kept * 10^scale
  if (up) {
    int i = kept_n - 1;
    while (i >= 0 && kept[i] == '9') kept[i--] = '0';
    if (i >= 0) {
      ++kept[i];
    } else {  // all nines (or nothing kept): one more digit in front
      std::memmove(kept + 1, kept, static_cast<std::size_t>(kept_n));
      kept[0] = '1';
      ++kept_n;
    }
  }
  if (kept_n == 0) return 0.0;
  char buf[48];
  std::memcpy(buf, kept, static_cast<std::size_t>(kept_n));
  int len = kept_n;
  buf[len++] = 'e';
  len = static_cast<int>(std::to_chars(buf + len, buf + sizeof buf, scale).ptr - buf);
  double r = parse_double(buf, buf + len);
  return x < 0 ? -r : r;
}

void append_cstr_text(std::string& out, std::string_view text) {
  if (auto date = parse_iso(text)) append_display(out, *date);
  else out += text;
}

std::optional<std::string> cstr_of(const Value& v) {
  if (is_null(v)) return std::nullopt;
  std::string out;
  if (const auto* s = std::get_if<std::string>(&v)) append_cstr_text(out, *s);
  else append_value_text(out, v);
  return out;
}

}  // namespace db::jet
