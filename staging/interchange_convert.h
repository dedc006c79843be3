// staging/interchange_convert.h — typed columns of interchange data files:
// turning a field's text into the value stored in the load table.
//
// Empty fields are Null, except a quoted empty field ("") of a text column,
// which is an empty text. Integers are whole numbers with an optional sign (a
// whole value written with decimals, "12.00", is accepted too, as spreadsheets
// write them); reals use the layout's decimal separator; dates are read with
// the column's pattern, optionally followed by a time of day ("2024-02-29
// 00:00:00"), and stored as ISO text: "YYYY-MM-DD" at midnight, otherwise
// "YYYY-MM-DD hh:nn:ss". A field that does
// not convert becomes Null and counts as a bad value: the load goes on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "settings/data_layout.h"

namespace staging {

// One converted field. For text the view points at the field itself; for a
// date, at `iso` (so the value must not be copied while the view is in use).
struct FieldValue {
  enum class Kind { Null, Integer, Real, Text } kind = Kind::Null;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view text;
  std::string iso;  // backing storage of a converted date
};

// Converts `field` for `column`. Returns false (and leaves `out` Null) when a
// non-empty field does not fit the column's type.
// `quoted` says the field was written between quotes.
bool ConvertField(std::string_view field, const settings::DataColumn& column, char decimal_separator,
                  FieldValue& out, bool quoted = false);

// The Spanish name of what a column expects, for messages ("un número entero",
// "una fecha dd/MM/yyyy").
std::string ExpectedText(const settings::DataColumn& column);

}  // namespace staging
