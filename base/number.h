// base/number.h — numbers read from texts the way Basic's Val reads them, and
// written the way CStr writes them.
//
// There is one Val in the program: the format files, the window's boxes, the
// field values and the translator's Val function all read a number here, so
// "&H1F" is 31 everywhere and a long whole number stays exact.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace base {

// A number that is an integer when it can be.
struct Number {
  bool is_int = true;
  std::int64_t i = 0;
  double d = 0.0;
  double as_double() const { return is_int ? static_cast<double>(i) : d; }
};

// Basic's Val of a text: its leading number, blanks (space, tab, line breaks)
// skipped anywhere; an optional sign, digits, a decimal point, an exponent
// (e or d); "&H1F" hexadecimal and "&O17" octal; 0 when there is none.
// Integer when whole and within 64 bits, so long digit runs stay exact.
Number val_text(std::string_view text);

// The digits of "&H..." / "&O..." read from position `i` (just after the
// ampersand). Jet gives them the narrowest of 16, 32 or 64 signed bits that
// holds the digits, so "&HFFFF" is -1; 0 when there are no digits.
Number val_radix(std::string_view text, std::size_t i);

// val_text as a double.
double Val(std::string_view text);

// Val rounded half to even and clamped to the 32-bit range; `overflow` (when
// given) is set when the value did not fit.
std::int32_t ValInt32(std::string_view text, bool* overflow = nullptr);

// x rounded half to even to an integer; false when it does not fit 64 bits.
bool round_to_int64(double x, std::int64_t& out);

// Longest text cstr_number_to writes.
inline constexpr std::size_t kNumberTextMax = 32;

// Writes x as CStr does into buf (at least kNumberTextMax bytes) and returns
// the length: integers as digits, whole reals without ".0", other reals in
// the shortest form that reads back (15 significant digits at most, "." as
// the separator), in scientific form "1.5E+20" / "1E-05" below 1e-4 and from
// 1e15 up.
std::size_t cstr_number_to(double x, char* buf);

// x as CStr writes it ("1.5", "100", "-0.25", "1E+20").
std::string cstr_number(double x);
void append_cstr_number(std::string& out, double x);

}  // namespace base
