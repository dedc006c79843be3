// db/jet/functions_arith.cpp — Jet's + - * / and unary minus.
//
// Jet is strict where SQLite is lenient: SQLite reads '12abc' + 1 as 13 and
// 'abc' * 2 as 0, Jet stops with a type mismatch. Here a text operand must
// read wholly as a number (text_to_number: "." decimals, or a single ","
// when there is no "."; so '1,5' is 1.5), anything else is "Tipo de dato no
// coincide". Division by zero stops the statement ("División por cero")
// instead of giving Null, which a Where clause would drop silently.
//
// Dates are ISO texts, so date arithmetic is decided by the operand's value:
// a date plus or minus a number is the date that many days away (time kept,
// written in the canonical ISO form), a date minus a date is the number of
// days between them; * and / take a date as its serial.
#include <cmath>
#include <string>

#include "db/jet/function_args.h"
#include "db/jet/functions.h"

namespace db::jet {

using namespace args;

namespace {

// An operand: a number, or a date kept as its serial.
struct Operand {
  double number = 0;
  std::int64_t integer = 0;
  bool is_int = false;
  bool is_date = false;
};

Operand operand(const Value& v, const char* op) {
  Operand out;
  if (const auto* i = std::get_if<std::int64_t>(&v)) {
    out.integer = *i;
    out.number = static_cast<double>(*i);
    out.is_int = true;
    return out;
  }
  if (const auto* s = std::get_if<std::string>(&v)) {
    if (auto date = parse_iso(*s)) {
      out.number = to_serial(*date);
      out.is_date = true;
      return out;
    }
  }
  out.number = number_arg(v, op);
  // A whole number text ("12") counts as an integer, as the column would hold it.
  if (std::trunc(out.number) == out.number && std::fabs(out.number) < 9007199254740992.0) {
    out.integer = static_cast<std::int64_t>(out.number);
    out.is_int = true;
  }
  return out;
}

Value number_result(double d, const char* op, const Value& shown_operand) {
  if (!std::isfinite(d)) overflow(op, shown_operand);
  return Value{d};
}

Value date_result(double serial, const char* op, const Value& shown_operand) {
  std::optional<DateTime> d = from_serial(serial);
  if (!d) overflow(op, shown_operand);
  return Value{format_iso(*d)};
}

// The serial difference of two dates as a count of days: whole days as an integer.
Value days_between(double a, double b) {
  double days = a - b;
  if (std::trunc(days) == days && std::fabs(days) < 1e15) return Value{static_cast<std::int64_t>(days)};
  return Value{days};
}

}  // namespace

namespace fn {

Value Add(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  Operand x = operand(a, "+");
  Operand y = operand(b, "+");
  if (x.is_int && y.is_int) {
    std::int64_t r = 0;
    if (!__builtin_add_overflow(x.integer, y.integer, &r)) return Value{r};
  }
  if (x.is_date || y.is_date) return date_result(x.number + y.number, "+", x.is_date ? a : b);
  return number_result(x.number + y.number, "+", a);
}

Value Sub(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  Operand x = operand(a, "-");
  Operand y = operand(b, "-");
  if (x.is_int && y.is_int) {
    std::int64_t r = 0;
    if (!__builtin_sub_overflow(x.integer, y.integer, &r)) return Value{r};
  }
  if (x.is_date && y.is_date) return days_between(x.number, y.number);
  if (x.is_date) return date_result(x.number - y.number, "-", a);
  return number_result(x.number - y.number, "-", a);
}

Value Mul(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  Operand x = operand(a, "*");
  Operand y = operand(b, "*");
  if (x.is_int && y.is_int) {
    std::int64_t r = 0;
    if (!__builtin_mul_overflow(x.integer, y.integer, &r)) return Value{r};
  }
  return number_result(x.number * y.number, "*", a);
}

Value Div(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return Value{};
  Operand x = operand(a, "/");
  Operand y = operand(b, "/");
  if (y.number == 0) throw FunctionError("División por cero");
  return number_result(x.number / y.number, "/", a);
}

Value Neg(const Value& a) {
  if (is_null(a)) return Value{};
  Operand x = operand(a, "-");
  if (x.is_int && x.integer != INT64_MIN) return Value{-x.integer};
  return Value{-x.number};
}

}  // namespace fn
}  // namespace db::jet
