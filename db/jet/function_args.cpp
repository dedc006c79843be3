// db/jet/function_args.cpp — argument conversions and errors of the Jet
// functions.
#include "db/jet/function_args.h"

#include "db/jet/functions.h"

namespace db::jet::args {

// The value as the user wrote it, for error messages.
std::string shown(const Value& v) {
  if (const auto* s = std::get_if<std::string>(&v)) return "'" + *s + "'";
  return value_text(v);
}

[[noreturn]] void mismatch(const char* function, const Value& v) {
  throw FunctionError(std::string("Tipo de dato no coincide en ") + function + ": " + shown(v));
}

[[noreturn]] void overflow(const char* function, const Value& v) {
  throw FunctionError(std::string("Desbordamiento en ") + function + ": " + shown(v));
}

[[noreturn]] void bad_argument(const char* function, const Value& v) {
  throw FunctionError(std::string("Argumento no válido en ") + function + ": " + shown(v));
}

// Number of a non-Null value; texts must read as numbers.
double number_arg(const Value& v, const char* function) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
  if (const auto* d = std::get_if<double>(&v)) return *d;
  if (const auto* s = std::get_if<std::string>(&v)) {
    if (auto x = text_to_number(*s)) return *x;
  }
  mismatch(function, v);
}

// Whole number of a non-Null value, rounded half to even.
std::int64_t int_arg(const Value& v, const char* function) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
  std::int64_t out = 0;
  if (!round_to_int64(number_arg(v, function), out)) overflow(function, v);
  return out;
}

std::int32_t int32_arg(const Value& v, const char* function) {
  std::int64_t i = int_arg(v, function);
  if (i < INT32_MIN || i > INT32_MAX) overflow(function, v);
  return static_cast<std::int32_t>(i);
}

// Text of a non-Null argument: texts as they are, numbers as CStr writes
// them (into `scratch`).
std::string_view text_arg(const Value& v, std::string& scratch) {
  if (const auto* s = std::get_if<std::string>(&v)) return *s;
  scratch.clear();
  append_value_text(scratch, v);
  return scratch;
}

// A count of characters: whole, not negative.
std::int64_t count_arg(const Value& v, const char* function) {
  std::int64_t n = int_arg(v, function);
  if (n < 0) bad_argument(function, v);
  return n;
}

Value text_value(std::string_view s) { return Value{std::string(s)}; }

}  // namespace db::jet::args
