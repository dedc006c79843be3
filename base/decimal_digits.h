// base/decimal_digits.h — the shortest decimal digits of a double, shared
// by CStr, Round and Format so that all three round the number the user sees
// (2.675 is "2.675", not 2.67499999...).
#pragma once

namespace base {

// Digits of |x| for a finite non-zero x: x = d1.d2d3... * 10^exp10, with no
// trailing zeros (at most 17 digits).
struct DecimalDigits {
  char d[24];
  int n = 0;
  int exp10 = 0;
};

DecimalDigits shortest_digits(double x);

}  // namespace base
