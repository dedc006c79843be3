// demo/calendar.h — plain civil dates for the demo generator.
//
// Dates are written the way the databases keep them: ISO text "YYYY-MM-DD".
// Months are counted as year*12 + (month-1) so that month arithmetic is
// integer addition.
#pragma once

#include <string>

#include "base/month.h"

namespace demo {

struct Date {
  int year = 2000;
  int month = 1;
  int day = 1;

  // Month number: year*12 + month - 1.
  int month_index() const { return year * 12 + month - 1; }
  // "YYYY-MM-DD".
  std::string iso() const;
  friend bool operator==(const Date&, const Date&) = default;
  friend auto operator<=>(const Date&, const Date&) = default;
};

// Days in a month (Gregorian).
using base::days_in_month;

// The first day of the month with month number `index`.
Date first_of_month(int index);

// Day `day` of month number `index`, clamped to the month's length.
Date day_of_month(int index, int day);

}  // namespace demo
