// db/jet/function_args.h — how the Jet functions take their arguments:
// numbers and texts out of values, and the Spanish errors they raise when an
// argument does not fit. Shared by the functions_*.cpp files only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/value.h"

namespace db::jet::args {

// The value as the user wrote it, for error messages ('abc', 12, 1.5).
std::string shown(const Value& v);

// Throw FunctionError: "Tipo de dato no coincide en <function>: <value>",
// "Desbordamiento en ..." and "Argumento no válido en ...".
[[noreturn]] void mismatch(const char* function, const Value& v);
[[noreturn]] void overflow(const char* function, const Value& v);
[[noreturn]] void bad_argument(const char* function, const Value& v);

// Number of a non-Null value; texts must read as numbers (mismatch if not).
double number_arg(const Value& v, const char* function);

// Whole number of a non-Null value, rounded half to even; overflow beyond
// 64 bits (int_arg) or 32 bits (int32_arg).
std::int64_t int_arg(const Value& v, const char* function);
std::int32_t int32_arg(const Value& v, const char* function);

// Text of a non-Null argument: texts as they are, numbers as CStr writes
// them (into `scratch`, which must outlive the view).
std::string_view text_arg(const Value& v, std::string& scratch);

// A count of characters: whole and not negative (bad_argument if negative).
std::int64_t count_arg(const Value& v, const char* function);

// A text value holding a copy of s.
Value text_value(std::string_view s);

}  // namespace db::jet::args
