// base/value.cpp — conversions of field values to text and numbers.
//
// Numbers are written and read exactly as the Jet functions do (CStr, Val in
// db/jet/functions.h), so that a value shown by the console, a grid or a
// golden test reads the same as the text a statement makes of it.
#include <cmath>
#include <limits>
#include <string>

#include "db/jet/functions.h"
#include "base/value.h"
#include "base/value_format.h"

namespace db {

std::string format_double(double d) { return jet::cstr_number(d); }

std::string as_text(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
  if (const auto* d = std::get_if<double>(&v)) return format_double(*d);
  if (const auto* s = std::get_if<std::string>(&v)) return *s;
  return {};
}

std::string console_text(const Value& v) { return is_null(v) ? "NULL" : as_text(v); }

double leading_number(std::string_view text) { return jet::val_text(text).as_double(); }

double as_double(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) return leading_number(*s);
  return 0;
}

std::int64_t as_int(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
  if (const auto* s = std::get_if<std::string>(&v)) {
    jet::Number n = jet::val_text(*s);  // a long digit string stays exact
    if (n.is_int) return n.i;
  }
  double d = std::nearbyint(as_double(v));  // default rounding: half to even
  if (std::isnan(d)) return 0;
  if (d >= 9.2233720368547758e18) return std::numeric_limits<std::int64_t>::max();
  if (d <= -9.2233720368547758e18) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(d);
}

}  // namespace db
