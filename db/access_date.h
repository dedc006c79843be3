// db/access_date.h — Access date/time values (a double counting days from
// 1899-12-30) as the ISO 8601 texts every database of the program holds.
//
// The reader converts the stored double itself: libmdb's own date text is
// wrong before 1899-12-30 and after about year 4600.
#pragma once

#include <optional>
#include <string>

namespace db {

// "YYYY-MM-DD" for a value at midnight, otherwise "YYYY-MM-DD HH:MM:SS"
// (rounded to the second). The whole part counts days from 1899-12-30; the
// fraction is the time of day and is counted forward from midnight also for
// negative days (-1.25 is 1899-12-29 06:00). nullopt for values outside the
// years 100 to 9999, which Access never stores (a damaged field).
std::optional<std::string> access_date_text(double stored);

}  // namespace db
