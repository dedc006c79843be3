// db/jet/functions.cpp — the Jet functions over db::Value: conversions,
// text functions, arithmetic and operators, with their Null rules, over the
// primitives of functions_numbers.cpp, functions_text.cpp and
// functions_format.cpp. Dates are in functions_dates.cpp, the less common
// functions in functions_more.cpp.
#include "db/jet/functions.h"

#include <cmath>

#include "db/jet/function_args.h"

namespace db::jet {

using namespace args;

namespace {

Value number_value(double d) {
  std::int64_t i = 0;
  if (std::trunc(d) == d && std::fabs(d) < 9.2e18 && round_to_int64(d, i)) return Value{i};
  return Value{d};
}

struct Logical {
  bool null;
  std::int32_t v;
};

Logical logical_arg(const Value& v, const char* op) {
  if (is_null(v)) return {true, 0};
  return {false, int32_arg(v, op)};
}

}  // namespace

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

// Jet's conversions to a whole number refuse Null ("Invalid use of Null").
// CDate(Null) stays Null: the transfer's month tests run
// cdate(Format(x,'MM/yyyy')) over columns that may be empty, and a row
// without a date must simply not match (see docs/jet-dialect.md).
Value CInt(const Value& x) {
  if (is_null(x)) throw FunctionError("Uso no válido de Null en CInt");
  std::int64_t i = int_arg(x, "CInt");
  if (i < -32768 || i > 32767) overflow("CInt", x);
  return Value{i};
}

Value CLng(const Value& x) {
  if (is_null(x)) throw FunctionError("Uso no válido de Null en CLng");
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
