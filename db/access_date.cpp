// db/access_date.cpp — the calendar arithmetic behind access_date_text.
#include "db/access_date.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace db {

namespace {

// Days since 1970-01-01 to a proleptic Gregorian civil date (the usual
// era-based algorithm, exact for any year in range).
void civil_from_days(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  y = static_cast<std::int64_t>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = doy - (153 * mp + 2) / 5 + 1;
  m = mp < 10 ? mp + 3 : mp - 9;
  if (m <= 2) ++y;
}

// 1899-12-30, the day 0 of Access dates, counted from 1970-01-01.
constexpr std::int64_t kAccessEpoch = -25569;
// 0100-01-01 and 9999-12-31 as Access day numbers.
constexpr double kFirstDay = -657434.0;
constexpr double kLastDay = 2958465.0;

}  // namespace

std::optional<std::string> access_date_text(double stored) {
  if (!std::isfinite(stored) || stored <= kFirstDay - 1.0 || stored >= kLastDay + 1.0) return std::nullopt;
  double whole = std::trunc(stored);
  std::int64_t day = static_cast<std::int64_t>(whole);
  // The time of day is the fraction's size whatever the sign of the day.
  auto seconds = static_cast<std::int64_t>(std::llround(std::fabs(stored - whole) * 86400.0));
  if (seconds >= 86400) {
    // A fraction that rounds to a whole day is midnight of the next day.
    seconds -= 86400;
    day += 1;
  }
  std::int64_t year = 0;
  unsigned month = 0, mday = 0;
  civil_from_days(day + kAccessEpoch, year, month, mday);
  // Years 100 to 9999 and a time below 24 hours: every field has its width.
  const int y = static_cast<int>(year);
  const int h = static_cast<int>(seconds / 3600), mi = static_cast<int>(seconds / 60 % 60),
            s = static_cast<int>(seconds % 60);
  char text[64];
  if (seconds == 0) {
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", y, month, mday);
  } else {
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", y, month, mday, h, mi, s);
  }
  return std::string(text);
}

}  // namespace db
