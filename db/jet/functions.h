// db/jet/functions.h — Jet's functions and operators as plain C++.
//
// Every Jet function that the emitter does not turn into a native SQLite
// expression is implemented here over db::Value and registered with SQLite
// as "jet_" + its lower-case name (db/jet_functions_sqlite.cpp). They run for
// every row of the transfer, so the text work is done on string_views by the
// primitives in the first half of this header; the db::Value functions in
// namespace fn are thin wrappers over them.
//
// Decisions where Jet and our storage differ:
// - There is no boolean type: True is the number -1 and False 0, and CStr,
//   Format and "&" print them as -1 and 0 (Jet would print "True"/"False"
//   for a Yes/No field; a stored -1/0 cannot be told apart from a number).
// - Dates are ISO texts. CStr (and Format without a pattern) shows a text
//   that is exactly an ISO date as "dd/MM/yyyy" (" hh:nn:ss" added when it
//   has a time); "&" and the string functions (Left, Mid, Len...) take texts
//   as they are, ISO included.
// - Numbers print as CStr writes them here: integers as digits, whole reals
//   without ".0", other reals in their shortest round-trip form with "." as
//   decimal separator (1.5, 0.1, 123.45), in scientific form "1.5E+20" /
//   "1E-05" below 1e-4 and from 1e15 up (base/number.h).
// - Texts read as numbers (CInt, CDbl, Abs, the logical operators...) take
//   "." as decimal separator, or a single "," when there is no "."; "True",
//   "False", "Verdadero", "Falso"; and ISO date texts as their serials.
// - Format uses "." for decimals and "," for thousands, and Spanish month
//   and day names. Supported named formats: "General Number", "Fixed",
//   "Standard", "Percent", "Currency" (as Standard with "$ "), "Scientific",
//   "Yes/No" (Sí/No), "True/False" (Verdadero/Falso), "On/Off"
//   (Activado/Desactivado) and the date ones of date.h. A text that is not a
//   number (numeric pattern) or not a date (date pattern) comes back as it is.
// - Null in, Null out for every function except Nz and the Null rules of
//   "&", And, Or and Imp. Jet raises "Invalid use of Null" for CStr(Null),
//   CInt(Null) and the like; we return Null.
// - Errors (thrown as FunctionError, a Spanish message) are: a text that is
//   not a date given to CDate/Year/Month/Day/DateAdd/DateDiff ("Tipo de dato
//   no coincide en CDate: 'abc'"), a text that is not a number given to
//   CInt/CLng/CDbl/CBool/Abs/Int/Fix/Sgn/Round and the logical operators,
//   overflow of CInt (16 bits), CLng and the logical operators (32 bits),
//   division by zero in \ and Mod, a negative length or a start below 1 in
//   Left/Right/Mid/InStr/InStrRev, a bad interval in DateAdd/DateDiff/
//   DatePart, a bad [...] in a Like pattern, dates outside the years
//   100-9999, and out-of-range arguments of the less common functions
//   (Asc of "", Chr beyond U+FFFF, Sqr of a negative, Log of 0, CByte
//   outside 0-255, MonthName outside 1-12).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/decimal_digits.h"
#include "base/number.h"
#include "base/value.h"
#include "db/jet/date.h"

namespace db::jet {

// A Jet function refused its arguments; the message is for the user.
class FunctionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ---- Numbers ------------------------------------------------------------

// Val, the CStr text of numbers and the value text are the program's one
// reading and writing of numbers (base/number.h, base/value.h).
using base::append_cstr_number;
using base::append_value_text;
using base::cstr_number;
using base::cstr_number_to;
using base::DecimalDigits;
using base::kNumberTextMax;
using base::Number;
using base::round_to_int64;
using base::shortest_digits;
using base::val_radix;
using base::val_text;
inline std::string value_text(const Value& v) { return base::as_text(v); }

// Strict reading of a whole text as a number for the conversion functions
// (see the header comment). Nullopt when it is not one.
std::optional<double> text_to_number(std::string_view text);

// x rounded half to even at `digits` decimals (0-15), decimally: 2.675 with
// 2 digits is 2.68 as its decimal text says, 0.125 gives 0.12.
double round_half_even(double x, int digits);

// CStr of a value: like value_text, but an ISO date text shows as
// "dd/MM/yyyy[ hh:nn:ss]". Null gives nullopt.
std::optional<std::string> cstr_of(const Value& v);
// The same for a text alone (the ISO check without building a Value).
void append_cstr_text(std::string& out, std::string_view text);

// ---- Texts (UTF-8; a character starts at every byte that is not a
// continuation byte, so broken UTF-8 never throws) -------------------------

std::int64_t char_count(std::string_view s);

// The first / last n characters (all of s when n >= its length). n >= 0.
std::string_view left_chars(std::string_view s, std::int64_t n);
std::string_view right_chars(std::string_view s, std::int64_t n);
// Characters from `start` (1-based, >= 1), `length` of them or to the end.
std::string_view mid_chars(std::string_view s, std::int64_t start, std::optional<std::int64_t> length);

// Position (1-based, in characters) of `find` in s at or after character
// `start` (>= 1); 0 when absent or s is empty; `start` when find is empty and
// start is within s. Case-insensitive (accented Latin letters too) unless
// binary.
std::int64_t instr_chars(std::int64_t start, std::string_view s, std::string_view find, bool binary = false);

// Byte offset of the first case-insensitive occurrence of `find` (not
// empty) in s at or after byte `from` (a character start); npos if none.
std::size_t find_text(std::string_view s, std::string_view find, std::size_t from);

// s reversed character by character.
void append_reversed(std::string& out, std::string_view s);

// UTF-8 text of one code point (invalid ones give U+FFFD).
void append_code_point(std::string& out, char32_t cp);

// Code point of the first character of s (s not empty).
char32_t first_code_point(std::string_view s);

// s without leading and/or trailing spaces (only ' ', as Jet).
std::string_view trim_view(std::string_view s, bool leading, bool trailing);

// Upper / lower case of ASCII and Latin-1 / Latin Extended-A letters
// (á->Á, ñ->Ñ, ç->Ç); other characters copied.
void append_upper(std::string& out, std::string_view s);
void append_lower(std::string& out, std::string_view s);

// s Like pattern, case-insensitive: * any run, ? one character, # one digit,
// [abc] [a-z] [!a-z] a character of (not of) the list. Throws FunctionError
// for an unclosed [.
bool like_match(std::string_view s, std::string_view pattern);

// A Like pattern read once and matched against many texts (the SQLite
// function keeps one per statement while the pattern stays the same).
struct LikeProgram;
class LikePattern {
 public:
  // Throws FunctionError for an unclosed [.
  explicit LikePattern(std::string_view pattern);
  ~LikePattern();
  LikePattern(const LikePattern&) = delete;
  LikePattern& operator=(const LikePattern&) = delete;

  bool matches(std::string_view s) const;

 private:
  std::unique_ptr<LikeProgram> program_;
};

// ---- Dates --------------------------------------------------------------

// The date a value stands for: an ISO or CDate-readable text, or a serial.
// Nullopt for Null. Throws FunctionError ("Tipo de dato no coincide en
// <function>: '<text>'") when it is not a date.
std::optional<DateTime> date_of(const Value& v, const char* function);

// Appends Format(v, pattern) for a non-Null v (pattern may be empty).
void append_format(std::string& out, const Value& v, std::string_view pattern);

// ---- The functions, by their Jet names ----------------------------------
namespace fn {

Value Nz(const Value& x);
Value Nz(const Value& x, const Value& if_null);
Value Val(const Value& x);
Value CDate(const Value& x);
Value CStr(const Value& x);
Value CBool(const Value& x);
Value CInt(const Value& x);
Value CLng(const Value& x);
Value CDbl(const Value& x);
Value Format(const Value& x);
Value Format(const Value& x, const Value& pattern);
Value InStr(const Value& s, const Value& find);
Value InStr(const Value& start, const Value& s, const Value& find);
// compare: 0 binary (case-sensitive), 1 text.
Value InStr(const Value& start, const Value& s, const Value& find, const Value& compare);
Value Left(const Value& s, const Value& n);
Value Right(const Value& s, const Value& n);
Value Mid(const Value& s, const Value& start);
Value Mid(const Value& s, const Value& start, const Value& length);
Value Len(const Value& s);
Value Trim(const Value& s);
Value LTrim(const Value& s);
Value RTrim(const Value& s);
Value UCase(const Value& s);
Value LCase(const Value& s);
Value Space(const Value& n);
Value Round(const Value& x);
Value Round(const Value& x, const Value& digits);
Value Abs(const Value& x);
Value Int(const Value& x);
Value Fix(const Value& x);
Value Sgn(const Value& x);
// Today / the current local time (not deterministic).
Value Date();
Value Now();
Value Year(const Value& d);
Value Month(const Value& d);
Value Day(const Value& d);
Value Hour(const Value& d);
Value Minute(const Value& d);
Value Second(const Value& d);
Value Weekday(const Value& d);
Value DateSerial(const Value& y, const Value& m, const Value& d);
// Intervals: "yyyy" years, "q" quarters, "m" months, "y"/"d"/"w" days,
// "ww" weeks, "h" hours, "n" minutes, "s" seconds.
Value DateAdd(const Value& interval, const Value& n, const Value& d);
// Counts the interval boundaries crossed from d1 to d2 ("d": calendar days,
// "m": calendar months, "ww": Sundays, "w": whole weeks of days).
Value DateDiff(const Value& interval, const Value& d1, const Value& d2);

// Less common functions a statement file may use.
Value Replace(const Value& s, const Value& find, const Value& with);  // case-insensitive
Value Str(const Value& x);        // " 12" / "-12": a space stands for the sign
Value IsNumeric(const Value& x);  // -1 / 0 (dates and Null are not numbers)
Value IsDate(const Value& x);     // -1 / 0 for texts CDate reads
Value CCur(const Value& x);       // rounded half to even at 4 decimals
Value CSng(const Value& x);       // single precision (7 significant digits)
Value CByte(const Value& x);      // 0-255
Value Chr(const Value& code);     // the character of a Unicode code point
Value Asc(const Value& s);        // code point of the first character
Value String(const Value& n, const Value& c);
Value InStrRev(const Value& s, const Value& find);
Value InStrRev(const Value& s, const Value& find, const Value& start);
Value StrReverse(const Value& s);
Value Sqr(const Value& x);
Value Exp(const Value& x);
Value Log(const Value& x);
Value MonthName(const Value& m);
Value MonthName(const Value& m, const Value& abbreviated);
// Intervals as DateAdd's, "y" day of year, "w" weekday, "ww" week of year.
Value DatePart(const Value& interval, const Value& d);
Value DateValue(const Value& d);  // the date without its time
Value TimeValue(const Value& d);  // the time on 1899-12-30

// Operators. + - * / and unary minus are strict (functions_arith.cpp): a
// text must read as a number, a date (ISO text) moves by days, / by zero fails.
Value Add(const Value& a, const Value& b);
Value Sub(const Value& a, const Value& b);
Value Mul(const Value& a, const Value& b);
Value Div(const Value& a, const Value& b);
Value Neg(const Value& a);
Value Concat(const Value& a, const Value& b);    // a & b
Value Like(const Value& s, const Value& pattern);  // -1 / 0
Value IntDiv(const Value& a, const Value& b);    // a \ b
Value Mod(const Value& a, const Value& b);       // a Mod b
Value Pow(const Value& a, const Value& b);       // a ^ b
Value Not(const Value& a);
Value And(const Value& a, const Value& b);
Value Or(const Value& a, const Value& b);
Value Xor(const Value& a, const Value& b);
Value Eqv(const Value& a, const Value& b);
Value Imp(const Value& a, const Value& b);

}  // namespace fn
}  // namespace db::jet
