// base/value_format.h — how values are written as text for people and tests.
//
// Numbers are written the way Jet's CStr writes them so that what the console
// prints, what the golden tests expect and what the grids show agree: whole
// doubles without ".0", other doubles in the shortest decimal that reads back
// to the same double, with "." as the separator.
#pragma once

#include <string>
#include <string_view>

#include "base/value.h"

namespace db {

// A double as CStr writes it: "3" for 3.0, "0.1" for 0.1, "1E+20" for 1e20,
// "1E-05" for 0.00001.
std::string format_double(double d);

// The console's text of a value: "NULL" for Null, otherwise as_text(v).
std::string console_text(const Value& v);

// The leading number of a text as Jet's Val reads it: blanks anywhere are
// skipped, "&H"/"&O" prefixes read hexadecimal/octal, an exponent may follow
// ("1.5e2" is 150); a text with no leading number gives 0.
double leading_number(std::string_view text);

}  // namespace db
