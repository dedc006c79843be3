// base/value.h — one field value as read from a database.
//
// Values come from SQLite (or ODBC) as Null, a 64-bit integer, a double or a
// text (UTF-8). Dates are texts in ISO 8601 form ("YYYY-MM-DD" at midnight,
// otherwise "YYYY-MM-DD HH:MM:SS"); Yes/No fields are the integers -1 and 0.
//
// The value lives at the bottom because both the connections and the
// translator's Jet functions (which sit below them) take and give it. The
// connections' code names it db::Value, so the names are also declared there.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace base {

using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

inline bool is_null(const Value& v) { return std::holds_alternative<std::monostate>(v); }

// Text of a value for display, for "&" and for building SQL texts: Null gives
// "", integers their decimal digits, doubles as CStr writes them (whole ones
// without ".0"), texts themselves.
std::string as_text(const Value& v);
void append_value_text(std::string& out, const Value& v);

// The console's and the golden tests' text of a value: "NULL" for Null,
// otherwise as_text(v).
std::string console_text(const Value& v);

// Numeric value: integers and doubles as they are, texts by their leading
// number as Val reads it (base/number.h), Null as 0.
double as_double(const Value& v);

// as_double rounded half to even and narrowed to 64 bits; a text holding a
// long whole number keeps all its digits.
std::int64_t as_int(const Value& v);

}  // namespace base

namespace db {
using base::as_double;
using base::as_int;
using base::as_text;
using base::console_text;
using base::is_null;
using base::Value;
}  // namespace db
