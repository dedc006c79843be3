// base/month.h — calendar months as the month range of an import needs them:
// the days of a month and one bound of the range (Desde or Hasta) with its
// check box. The session keeps the range; the template expansion turns the
// bounds into the [Desde] and [Hasta] dates; the translator and the demo
// count days with the same rule.
#pragma once

#include <cstdint>

namespace base {

// Days of `month` (1..12) in `year` of the Gregorian calendar, leap years
// included; 0 for a month number outside 1..12.
int days_in_month(std::int64_t year, int month);

// One bound of the month range: the month (year and month number) and whether
// its check box is ticked.
struct MonthBound {
  int year = 1900;
  int month = 1;
  bool checked = false;
};

}  // namespace base
