// base/value.h — one field value as read from a database.
//
// Values come from SQLite (or ODBC) as Null, a 64-bit integer, a double or a
// text (UTF-8). Dates are texts in ISO 8601 form ("YYYY-MM-DD" at midnight,
// otherwise "YYYY-MM-DD HH:MM:SS"); Yes/No fields are the integers -1 and 0.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace db {

using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

inline bool is_null(const Value& v) { return std::holds_alternative<std::monostate>(v); }

// Text of a value for display and for building SQL texts: Null gives "",
// integers their decimal digits, whole doubles no ".0", texts themselves.
std::string as_text(const Value& v);

// Numeric value: integers and doubles as they are, texts by their leading
// number (as Jet's Val reads them), Null as 0.
double as_double(const Value& v);

// as_double rounded half to even and narrowed to 64 bits.
std::int64_t as_int(const Value& v);

}  // namespace db
