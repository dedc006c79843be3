// base/value.cpp — conversions of field values to text and numbers.
//
// Numbers are written and read by base/number.h, the same code the Jet
// functions use, so that a value shown by the console, a grid or a golden
// test reads the same as the text a statement makes of it.
#include "base/value.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "base/number.h"

namespace base {

void append_value_text(std::string& out, const Value& v) {
  if (const auto* s = std::get_if<std::string>(&v)) {
    out += *s;
  } else if (const auto* i = std::get_if<std::int64_t>(&v)) {
    char buf[24];
    out.append(buf, static_cast<std::size_t>(std::to_chars(buf, buf + sizeof buf, *i).ptr - buf));
  } else if (const auto* d = std::get_if<double>(&v)) {
    append_cstr_number(out, *d);
  }
}

std::string as_text(const Value& v) {
  std::string out;
  append_value_text(out, v);
  return out;
}

std::string console_text(const Value& v) { return is_null(v) ? "NULL" : as_text(v); }

double as_double(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) return Val(*s);
  return 0;
}

std::int64_t as_int(const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
  if (const auto* s = std::get_if<std::string>(&v)) {
    Number n = val_text(*s);  // a long digit string stays exact
    if (n.is_int) return n.i;
  }
  double d = std::nearbyint(as_double(v));  // default rounding: half to even
  if (std::isnan(d)) return 0;
  if (d >= 9.2233720368547758e18) return std::numeric_limits<std::int64_t>::max();
  if (d <= -9.2233720368547758e18) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(d);
}

}  // namespace base
