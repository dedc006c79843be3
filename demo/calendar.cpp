// demo/calendar.cpp — civil date helpers of the demo generator.
#include "demo/calendar.h"

#include <algorithm>
#include <cstdio>

namespace demo {

std::string Date::iso() const {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", year, month, day);
  return buf;
}

Date first_of_month(int index) { return Date{index / 12, index % 12 + 1, 1}; }

Date day_of_month(int index, int day) {
  Date d = first_of_month(index);
  d.day = std::clamp(day, 1, days_in_month(d.year, d.month));
  return d;
}

}  // namespace demo
