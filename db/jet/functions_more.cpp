// db/jet/functions_more.cpp — the less common Jet functions a statement
// file may use: Replace, Str, IsNumeric, IsDate, CCur, CSng, CByte, Chr, Asc,
// String, InStrRev, StrReverse, Sqr, Exp, Log, MonthName.
#include <charconv>
#include <cmath>

#include "db/jet/function_args.h"
#include "db/jet/functions.h"

namespace db::jet {

using namespace args;

namespace fn {

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
}  // namespace fn
}  // namespace db::jet
