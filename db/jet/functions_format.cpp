// db/jet/functions_format.cpp — Jet's Format(): which pattern a value gets
// (named formats, date patterns, number patterns) and the number patterns
// ("0.00", "#,##0", "0%", "0.00E+00", sections separated by ";").
#include <string>
#include <vector>

#include "db/jet/ascii.h"
#include "base/decimal_digits.h"
#include "db/jet/functions.h"

namespace db::jet {

namespace {

// Rounds a digit string half away from zero to `keep` digits; true when the
// carry added a digit in front.
bool round_digits(std::string& digits, std::size_t keep) {
  if (digits.size() <= keep) return false;
  bool up = digits[keep] >= '5';
  digits.resize(keep);
  if (!up) return false;
  for (std::size_t i = keep; i > 0; --i) {
    if (digits[i - 1] != '9') {
      ++digits[i - 1];
      return false;
    }
    digits[i - 1] = '0';
  }
  digits.insert(digits.begin(), '1');
  return true;
}

// |x| in fixed notation rounded (half away from zero, on its decimal text)
// to `decimals` places: integer digits without leading zeros ("" for zero)
// and exactly `decimals` fraction digits.
void fixed_digits(double x, int decimals, std::string& int_part, std::string& frac_part) {
  int_part.clear();
  frac_part.clear();
  if (x != 0.0) {
    DecimalDigits d = shortest_digits(x);
    std::string all;
    int point;  // digits of `all` before the decimal point
    if (d.exp10 >= 0) {
      all.assign(d.d, static_cast<std::size_t>(d.n));
      if (static_cast<int>(all.size()) < d.exp10 + 1) all.append(static_cast<std::size_t>(d.exp10 + 1) - all.size(), '0');
      point = d.exp10 + 1;
    } else {
      all.assign(static_cast<std::size_t>(-d.exp10 - 1), '0');
      all.append(d.d, static_cast<std::size_t>(d.n));
      point = 0;
    }
    if (round_digits(all, static_cast<std::size_t>(point + decimals))) ++point;
    int_part = all.substr(0, static_cast<std::size_t>(point));
    frac_part = all.substr(static_cast<std::size_t>(point));
    std::size_t nz = int_part.find_first_not_of('0');
    int_part.erase(0, nz == std::string::npos ? int_part.size() : nz);
  }
  if (static_cast<int>(frac_part.size()) < decimals) frac_part.append(static_cast<std::size_t>(decimals) - frac_part.size(), '0');
}

// One section of a number pattern, read once.
struct NumberPattern {
  std::string prefix;
  std::string suffix;
  // Integer part, left to right: '0' or '#' placeholders and literal texts
  // (a literal is stored as a string starting with '\x01').
  std::vector<std::string> int_slots;
  int int_placeholders = 0;
  int dec_zero = 0;
  int dec_hash = 0;
  bool point = false;
  bool thousands = false;
  bool percent = false;
  bool scientific = false;
  bool exp_plus = false;
  int exp_zero = 0;
};

NumberPattern read_pattern(std::string_view p) {
  NumberPattern np;
  enum Phase { kBefore, kInteger, kDecimal, kExponent } phase = kBefore;
  auto add_literal = [&](std::string_view text) {
    if (phase == kBefore) np.prefix += text;
    else if (phase == kInteger) np.int_slots.push_back("\x01" + std::string(text));
    else np.suffix += text;
  };
  for (std::size_t i = 0; i < p.size(); ++i) {
    char c = p[i];
    if (c == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) close = p.size();
      add_literal(p.substr(i + 1, close - i - 1));
      i = close;
    } else if (c == '\\') {
      if (i + 1 < p.size()) add_literal(p.substr(++i, 1));
    } else if (c == '0' || c == '#') {
      if (phase == kExponent) {
        ++np.exp_zero;
      } else if (np.point) {
        (c == '0' && np.dec_hash == 0 ? np.dec_zero : np.dec_hash)++;
      } else {
        phase = kInteger;
        np.int_slots.emplace_back(1, c);
        ++np.int_placeholders;
      }
    } else if (c == '.' && !np.point && phase != kExponent) {
      np.point = true;
      phase = kDecimal;
    } else if (c == ',' && phase == kInteger) {
      np.thousands = true;
    } else if ((c == 'E' || c == 'e') && phase != kBefore && i + 1 < p.size() && (p[i + 1] == '+' || p[i + 1] == '-')) {
      np.scientific = true;
      np.exp_plus = p[i + 1] == '+';
      phase = kExponent;
      ++i;
    } else {
      if (c == '%') np.percent = true;
      add_literal(p.substr(i, 1));
    }
  }
  return np;
}

// Literal slots that come after the last placeholder belong after the
// digits; moving them to the suffix keeps the decimal part next to the
// integer part ("0 \"kg\"" gives "5 kg", "0.00 kg" too).
void move_trailing_literals(NumberPattern& np) {
  while (!np.int_slots.empty() && np.int_slots.back()[0] == '\x01') {
    np.suffix.insert(0, np.int_slots.back().substr(1));
    np.int_slots.pop_back();
  }
}

void append_integer_part(std::string& out, const NumberPattern& np, const std::string& digits) {
  if (np.thousands) {
    int zeros = 0;
    for (const auto& s : np.int_slots) zeros += s == "0" ? 1 : 0;
    std::string d = digits;
    if (static_cast<int>(d.size()) < zeros) d.insert(0, static_cast<std::size_t>(zeros) - d.size(), '0');
    for (std::size_t i = 0; i < d.size(); ++i) {
      if (i > 0 && (d.size() - i) % 3 == 0) out.push_back(',');
      out.push_back(d[i]);
    }
    return;
  }
  if (np.int_placeholders == 0) {
    out += digits;
    return;
  }
  // Digits fill the placeholders from the right; the leftmost takes the rest.
  const int n = static_cast<int>(digits.size());
  const int p = np.int_placeholders;
  int j = 0;
  for (const auto& slot : np.int_slots) {
    if (slot[0] == '\x01') {
      out.append(slot, 1);
      continue;
    }
    if (j == 0) {
      int take = n - (p - 1);
      if (take > 0) out.append(digits, 0, static_cast<std::size_t>(take));
      else if (slot[0] == '0') out.push_back('0');
    } else {
      int pos = n - (p - j);
      if (pos >= 0) out.push_back(digits[static_cast<std::size_t>(pos)]);
      else if (slot[0] == '0') out.push_back('0');
    }
    ++j;
  }
}

void append_fraction(std::string& out, const NumberPattern& np, std::string frac) {
  if (!np.point) return;
  while (static_cast<int>(frac.size()) > np.dec_zero && frac.back() == '0') frac.pop_back();
  out.push_back('.');
  out += frac;
}

void append_scientific(std::string& out, const NumberPattern& np, double ax) {
  int int_digits = np.int_placeholders > 0 ? np.int_placeholders : 1;
  int decimals = np.dec_zero + np.dec_hash;
  std::string digits;
  int exp10 = 0;
  if (ax != 0.0) {
    DecimalDigits d = shortest_digits(ax);
    digits.assign(d.d, static_cast<std::size_t>(d.n));
    exp10 = d.exp10;
    if (round_digits(digits, static_cast<std::size_t>(int_digits + decimals))) ++exp10;
  }
  digits.resize(static_cast<std::size_t>(int_digits + decimals), '0');
  out.append(digits, 0, static_cast<std::size_t>(int_digits));
  append_fraction(out, np, digits.substr(static_cast<std::size_t>(int_digits)));
  int shown = ax == 0.0 ? 0 : exp10 - (int_digits - 1);
  out.push_back('E');
  if (shown < 0) out.push_back('-');
  else if (np.exp_plus) out.push_back('+');
  std::string e = std::to_string(shown < 0 ? -shown : shown);
  if (static_cast<int>(e.size()) < np.exp_zero) e.insert(0, static_cast<std::size_t>(np.exp_zero) - e.size(), '0');
  out += e;
}

// Splits a pattern at the ";" outside quotes.
std::vector<std::string_view> split_sections(std::string_view p) {
  std::vector<std::string_view> out;
  std::size_t start = 0;
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) break;
      i = close;
    } else if (p[i] == '\\') {
      ++i;
    } else if (p[i] == ';') {
      out.push_back(p.substr(start, i - start));
      start = i + 1;
    }
  }
  out.push_back(p.substr(start));
  return out;
}

void append_number_pattern(std::string& out, double x, std::string_view pattern) {
  std::vector<std::string_view> sections = split_sections(pattern);
  std::string_view section = sections[0];
  bool show_minus = x < 0;
  if (x < 0 && sections.size() >= 2 && !sections[1].empty()) {
    section = sections[1];
    show_minus = false;
  } else if (x == 0 && sections.size() >= 3 && !sections[2].empty()) {
    section = sections[2];
  }
  NumberPattern np = read_pattern(section);
  move_trailing_literals(np);
  double ax = x < 0 ? -x : x;
  if (np.percent) ax *= 100.0;
  std::string body;
  if (np.scientific) {
    append_scientific(body, np, ax);
  } else {
    std::string int_part, frac_part;
    fixed_digits(ax, np.dec_zero + np.dec_hash, int_part, frac_part);
    if (int_part.empty() && frac_part.find_first_not_of('0') == std::string::npos) show_minus = false;
    append_integer_part(body, np, int_part);
    append_fraction(body, np, frac_part);
  }
  if (show_minus) out.push_back('-');
  out += np.prefix;
  out += body;
  out += np.suffix;
}

// A number for Format: numbers as they are, texts when they read as one.
std::optional<double> number_for_format(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) return text_to_number(*s);
  return std::nullopt;
}

bool append_named_number(std::string& out, const Value& v, std::string_view p) {
  static constexpr std::string_view kNames[] = {"general number", "currency", "fixed",  "standard", "percent",
                                                "scientific",     "yes/no",   "true/false", "on/off"};
  int which = -1;
  for (int i = 0; i < static_cast<int>(std::size(kNames)); ++i)
    if (iequals(p, kNames[i])) which = i;
  if (which < 0) return false;
  std::optional<double> x = number_for_format(v);
  if (!x) {
    append_value_text(out, v);
    return true;
  }
  switch (which) {
    case 0: append_cstr_number(out, *x); break;
    case 1: append_number_pattern(out, *x, "\"$ \"#,##0.00"); break;
    case 2: append_number_pattern(out, *x, "0.00"); break;
    case 3: append_number_pattern(out, *x, "#,##0.00"); break;
    case 4: append_number_pattern(out, *x, "0.00%"); break;
    case 5: append_number_pattern(out, *x, "0.00E+00"); break;
    case 6: out += *x != 0 ? "Sí" : "No"; break;
    case 7: out += *x != 0 ? "Verdadero" : "Falso"; break;
    default: out += *x != 0 ? "Activado" : "Desactivado"; break;
  }
  return true;
}

bool has_number_placeholder(std::string_view p) {
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) return false;
      i = close;
    } else if (p[i] == '\\') {
      ++i;
    } else if (p[i] == '0' || p[i] == '#' || p[i] == '.') {
      return true;
    }
  }
  return false;
}

}  // namespace

void append_format(std::string& out, const Value& v, std::string_view pattern) {
  if (pattern.empty()) {
    if (const auto* s = std::get_if<std::string>(&v)) append_cstr_text(out, *s);
    else append_value_text(out, v);
    return;
  }
  if (pattern == ">" || pattern == "<") {
    std::string text = value_text(v);
    if (pattern == ">") append_upper(out, text);
    else append_lower(out, text);
    return;
  }
  if (append_named_number(out, v, pattern)) return;
  if (is_date_pattern(pattern)) {
    std::optional<DateTime> d;
    if (const auto* s = std::get_if<std::string>(&v)) d = parse_date_text(*s);
    else if (auto x = number_for_format(v)) d = from_serial(*x);
    if (d) append_date_pattern(out, *d, pattern);
    else append_value_text(out, v);
    return;
  }
  std::optional<double> x = number_for_format(v);
  if (!x || !has_number_placeholder(pattern)) {
    append_value_text(out, v);
    return;
  }
  append_number_pattern(out, *x, pattern);
}

}  // namespace db::jet
