// tests/jet/functions_fn_test.cpp — the Jet functions over values: Null
// rules, conversions and their errors, date functions and the operators.
#include <gtest/gtest.h>

#include "db/jet/functions.h"

namespace db::jet {
namespace {

using namespace fn;

Value I(std::int64_t i) { return Value{i}; }
Value D(double d) { return Value{d}; }
Value T(const char* s) { return Value{std::string(s)}; }
const Value kNull{};

// Runs f and returns the message of the FunctionError it throws.
template <typename F>
std::string error_of(F f) {
  try {
    f();
  } catch (const FunctionError& e) {
    return e.what();
  }
  return "<no error>";
}

// Checks each {result, expected} row; a failure names the row by its number.
void ExpectRows(std::initializer_list<std::pair<Value, Value>> rows) {
  int row = 0;
  for (const auto& [actual, expected] : rows) {
    ++row;
    EXPECT_EQ(actual, expected) << "row " << row << ": " << value_text(actual) << " instead of "
                                << value_text(expected);
  }
}

TEST(JetFn, NullInNullOut) {
  for (Value v : {Val(kNull), CDate(kNull), CStr(kNull), CBool(kNull), CDbl(kNull), Add(kNull, I(1)), Sub(I(1), kNull),
                  Mul(kNull, T("x")), Div(I(1), kNull), Neg(kNull),
                  Format(kNull, T("0")), InStr(kNull, T("a")), InStr(T("a"), kNull), Left(kNull, I(1)),
                  Left(T("a"), kNull), Right(kNull, I(1)), Mid(kNull, I(1)), Len(kNull), Trim(kNull),
                  UCase(kNull), LCase(kNull), Round(kNull, I(2)), Abs(kNull), Int(kNull), Fix(kNull), Sgn(kNull),
                  Year(kNull), Month(kNull), Day(kNull), DateSerial(kNull, I(1), I(1)),
                  DateAdd(T("m"), I(1), kNull), DateDiff(T("d"), kNull, T("2024-01-01")), Like(kNull, T("*")),
                  IntDiv(kNull, I(2)), Mod(I(2), kNull), Pow(kNull, I(2)), Not(kNull), Xor(I(1), kNull),
                  Eqv(kNull, I(1)), Concat(kNull, kNull)}) {
    EXPECT_TRUE(is_null(v)) << value_text(v);
  }
  EXPECT_EQ(Nz(kNull), T(""));
  EXPECT_EQ(Nz(kNull, I(0)), I(0));
  EXPECT_EQ(Nz(T("x"), I(0)), T("x"));
}

TEST(JetFn, Conversions) {
  ExpectRows({
      {Val(D(2.5)), D(2.5)}, {CStr(T("2024-02-29")), T("29/02/2024")}, {CStr(D(3.0)), T("3")},
      {CStr(I(-1)), T("-1")},  // a Yes/No True is just -1
      {CBool(I(5)), I(-1)}, {CBool(D(0.0)), I(0)}, {CBool(T("True")), I(-1)}, {CInt(D(2.5)), I(2)},
      {CInt(D(3.5)), I(4)}, {CInt(T(" 12 ")), I(12)}, {CInt(D(-32768)), I(-32768)},
      {CLng(D(123456.5)), I(123456)}, {CDbl(T("1,5")), D(1.5)}, {CDbl(I(2)), D(2.0)},
      {CDate(D(45351.5)), T("2024-02-29 12:00:00")}, {CDate(I(0)), T("1899-12-30")},
  });
  EXPECT_EQ(error_of([] { CDate(T("abc")); }), "Tipo de dato no coincide en CDate: 'abc'");
  EXPECT_EQ(error_of([] { CDate(D(1e9)); }), "Desbordamiento en CDate: 1000000000");
  EXPECT_EQ(error_of([] { CInt(I(32768)); }), "Desbordamiento en CInt: 32768");
  EXPECT_EQ(error_of([] { CInt(T("12abc")); }), "Tipo de dato no coincide en CInt: '12abc'");
  EXPECT_EQ(error_of([] { CLng(kNull); }), "Uso no válido de Null en CLng");
  EXPECT_EQ(error_of([] { CLng(D(3e9)); }), "Desbordamiento en CLng: 3000000000");
  EXPECT_EQ(error_of([] { CBool(T("")); }), "Tipo de dato no coincide en CBool: ''");
}

TEST(JetFn, TextFunctionsOnValues) {
  ExpectRows({
      {Left(I(123456), D(2.0)), T("12")}, {Right(D(1.5), I(2)), T(".5")},
      {Mid(T("abcdef"), I(2), I(3)), T("bcd")}, {Len(I(-120)), I(4)}, {Trim(T("  a  ")), T("a")},
      {UCase(T("ñandú")), T("ÑANDÚ")}, {InStr(I(3), T("a-b-c"), T("-")), I(4)},
      {InStr(I(1), T("aBc"), T("b"), I(0)), I(0)}, {InStr(I(12345), I(3)), I(3)},
      {Space(I(3)), T("   ")}, {Format(D(0.5)), T("0.5")},
  });
  EXPECT_EQ(error_of([] { Left(T("abc"), I(-1)); }), "Argumento no válido en Left: -1");
  EXPECT_EQ(error_of([] { Mid(T("abc"), I(0)); }), "Argumento no válido en Mid: 0");
  EXPECT_EQ(error_of([] { InStr(I(0), T("abc"), T("a")); }), "Argumento no válido en InStr: 0");
}

TEST(JetFn, Arithmetic) {
  ExpectRows({
      {Round(D(2.5)), D(2.0)}, {Round(I(7), I(2)), I(7)}, {Round(T("1.25"), I(1)), D(1.2)},
      {Abs(I(-3)), I(3)}, {Int(D(-1.5)), I(-2)}, {Fix(D(-1.5)), I(-1)}, {Int(D(1e300)), D(1e300)},
      {Sgn(D(-0.1)), I(-1)}, {Sgn(I(0)), I(0)},
      {IntDiv(D(7.5), I(2)), I(4)},  // 7.5 rounds to 8 first
      {IntDiv(I(-7), I(2)), I(-3)}, {Mod(I(-7), I(3)), I(-1)},
      {Mod(D(5.5), I(4)), I(2)},  // 5.5 rounds to 6
      {Pow(I(2), I(10)), D(1024)}, {Pow(D(4), D(0.5)), D(2)},
  });
  EXPECT_EQ(error_of([] { Mod(I(1), D(0.4)); }), "División por cero");
  EXPECT_EQ(error_of([] { Pow(I(-8), D(0.5)); }), "Argumento no válido en ^: -8");
  EXPECT_EQ(error_of([] { Abs(T("x")); }), "Tipo de dato no coincide en Abs: 'x'");
  EXPECT_EQ(error_of([] { Round(D(1.5), I(-1)); }), "Argumento no válido en Round: -1");
}

TEST(JetFn, LogicalOperatorsFollowJetNullRules) {
  ExpectRows({
      {Not(I(0)), I(-1)}, {Not(I(-1)), I(0)}, {And(I(-1), I(0)), I(0)}, {And(I(6), I(3)), I(2)},
  });
  EXPECT_TRUE(is_null(Or(I(0), kNull)));
  ExpectRows({
      {Or(I(4), I(1)), I(5)}, {Xor(I(-1), I(-1)), I(0)}, {Eqv(I(0), I(0)), I(-1)},
      {Imp(I(-1), I(0)), I(0)}, {Imp(I(0), kNull), I(-1)}, {Imp(kNull, I(-1)), I(-1)},
  });
  EXPECT_TRUE(is_null(Imp(I(-1), kNull)));
  EXPECT_TRUE(is_null(Imp(kNull, I(0))));
  EXPECT_EQ(And(T("True"), I(-1)), I(-1));
  EXPECT_EQ(error_of([] { And(D(3e9), I(1)); }), "Desbordamiento en And: 3000000000");
  ExpectRows({
      {Like(T("Peña"), T("PE?A")), I(-1)}, {Like(I(123), T("1#3")), I(-1)},
      {Like(T("x"), T("y")), I(0)}, {Concat(T("a"), kNull), T("a")}, {Concat(kNull, I(5)), T("5")},
      {Concat(I(100), D(2.5)), T("1002.5")},
      {Concat(T("2024-02-29"), T("")), T("2024-02-29")},  // texts are not re-dated
  });
}

TEST(JetFn, DateFunctions) {
  ExpectRows({
      {Year(T("2024-02-29 13:05:00")), I(2024)}, {Month(T("29/02/2024")), I(2)},
      {Day(D(45351.75)), I(29)}, {Hour(T("2024-02-29 13:05:09")), I(13)},
      {Minute(T("2024-02-29 13:05:09")), I(5)}, {Second(T("2024-02-29 13:05:09")), I(9)},
      {Weekday(T("2024-02-25")), I(1)},  // a Sunday
  });
  EXPECT_EQ(error_of([] { Year(T("mañana")); }), "Tipo de dato no coincide en Year: 'mañana'");
  ExpectRows({
      {DateSerial(I(2024), I(2), I(29)), T("2024-02-29")},
      {DateSerial(I(2024), I(0), I(1)), T("2023-12-01")},
      {DateSerial(I(2024), I(3), I(0)), T("2024-02-29")},
      {DateSerial(I(2024), I(1), I(-30)), T("2023-12-01")},
      {DateSerial(I(24), I(1), I(1)), T("2024-01-01")},
      {DateSerial(I(95), I(1), I(1)), T("1995-01-01")},
  });
  EXPECT_EQ(error_of([] { DateSerial(I(10000), I(1), I(1)); }), "Desbordamiento en DateSerial: 10000");
  ExpectRows({
      {DateAdd(T("M"), I(-1), T("2024-03-31 08:00:00")), T("2024-02-29 08:00:00")},
      {DateAdd(T("yyyy"), I(1), T("2024-02-29")), T("2025-02-28")},
      {DateAdd(T("q"), I(1), T("2024-01-15")), T("2024-04-15")},
      {DateAdd(T("d"), I(1), T("2024-02-29")), T("2024-03-01")},
      {DateAdd(T("ww"), I(-1), T("2024-03-01")), T("2024-02-23")},
      {DateAdd(T("h"), I(36), T("2024-02-29")), T("2024-03-01 12:00:00")},
      {DateAdd(T("n"), I(-1), T("2024-03-01")), T("2024-02-29 23:59:00")},
  });
  EXPECT_EQ(error_of([] { DateAdd(T("x"), I(1), T("2024-01-01")); }), "Intervalo no válido en DateAdd: 'x'");
  ExpectRows({
      {DateDiff(T("d"), T("2024-02-28 23:00:00"), T("2024-02-29 01:00:00")), I(1)},
      {DateDiff(T("d"), T("2024-03-01"), T("2024-02-28")), I(-2)},
      {DateDiff(T("m"), T("2023-12-31"), T("2024-01-01")), I(1)},
      {DateDiff(T("yyyy"), T("2023-12-31"), T("2024-01-01")), I(1)},
      {DateDiff(T("ww"), T("2024-02-24"), T("2024-02-25")), I(1)},  // Saturday to Sunday
      {DateDiff(T("w"), T("2024-02-24"), T("2024-02-25")), I(0)},
      {DateDiff(T("h"), T("2024-02-29 10:59:00"), T("2024-02-29 11:00:00")), I(1)},
      {DateDiff(T("s"), T("2024-02-29"), T("2024-02-29 00:01:00")), I(60)},
  });
  // Date() and Now() are today's local date (and time) as ISO texts.
  ASSERT_TRUE(std::holds_alternative<std::string>(Date()));
  EXPECT_TRUE(parse_iso(std::get<std::string>(Date())).has_value());
  EXPECT_EQ(std::get<std::string>(Now()).substr(0, 10), std::get<std::string>(Date()));
}

TEST(JetFn, LessCommonFunctions) {
  ExpectRows({
      {Replace(T("Peña-Peña"), T("PEÑA"), T("X")), T("X-X")},
      {Replace(T("a.b.c"), T("."), T("")), T("abc")}, {Replace(T("abc"), T(""), T("x")), T("abc")},
      {Replace(T("aaa"), T("aa"), T("b")), T("ba")}, {Str(I(12)), T(" 12")},
      {Str(D(-1.5)), T("-1.5")}, {IsNumeric(T(" 12.5 ")), I(-1)}, {IsNumeric(T("12a")), I(0)},
      {IsNumeric(T("2024-02-29")), I(0)}, {IsNumeric(T("True")), I(0)}, {IsNumeric(kNull), I(0)},
      {IsNumeric(D(1.5)), I(-1)}, {IsDate(T("29/02/2024")), I(-1)},
      {IsDate(T("30/02/2024")), I(0)}, {IsDate(I(45000)), I(0)}, {CCur(D(1.23455)), D(1.2346)},
      {CCur(D(1.23445)), D(1.2344)}, {CSng(D(0.1)), D(0.1)}, {CSng(D(1.23456789)), D(1.2345679)},
      {CByte(I(255)), I(255)},
  });
  EXPECT_EQ(error_of([] { CByte(I(256)); }), "Desbordamiento en CByte: 256");
  EXPECT_EQ(Chr(I(65)), T("A"));
  EXPECT_EQ(Chr(I(241)), T("ñ"));
  EXPECT_EQ(Asc(T("ñandú")), I(241));
  EXPECT_EQ(error_of([] { Asc(T("")); }), "Argumento no válido en Asc: ''");
  ExpectRows({
      {String(I(3), T("ab")), T("aaa")}, {String(I(2), I(209)), T("ÑÑ")},
      {InStrRev(T("a-b-c"), T("-")), I(4)}, {InStrRev(T("a-b-c"), T("-"), I(3)), I(2)},
      {InStrRev(T("a-b-c"), T("x")), I(0)}, {StrReverse(T("Peña")), T("añeP")}, {Sqr(I(16)), D(4)},
  });
  EXPECT_EQ(error_of([] { Sqr(I(-1)); }), "Argumento no válido en Sqr: -1");
  EXPECT_EQ(Log(Exp(I(2))), D(2));
  EXPECT_EQ(error_of([] { Log(I(0)); }), "Argumento no válido en Log: 0");
  ExpectRows({
      {MonthName(I(2)), T("febrero")}, {MonthName(I(9), I(-1)), T("sep")},
      {DatePart(T("q"), T("2024-08-01")), I(3)}, {DatePart(T("y"), T("2024-02-09")), I(40)},
      {DatePart(T("ww"), T("2024-02-09")), I(6)},
      {DateValue(T("29/02/2024 13:05")), T("2024-02-29")},
      {TimeValue(T("2024-02-29 13:05:00")), T("1899-12-30 13:05:00")},
  });
}


// + - * / are strict on texts, fail on division by zero and move dates by days.
TEST(JetFn, ArithmeticIsStrictAndKnowsDates) {
  const std::pair<Value, Value> cases[] = {
      {Add(I(2), I(3)), I(5)}, {Add(T("12"), I(1)), I(13)}, {Add(T("1,5"), I(1)), D(2.5)},
      {Add(T(" 2.5 "), D(0.5)), D(3.0)}, {Sub(I(1), D(0.5)), D(0.5)}, {Mul(T("3"), I(2)), I(6)},
      {Div(I(10), I(4)), D(2.5)}, {Div(I(4), I(2)), D(2.0)}, {Neg(T("7")), I(-7)}, {Neg(I(7)), I(-7)},
      {Add(I(INT64_MAX), I(1)), D(9223372036854775808.0)},
      // Dates: a number of days away, time kept; date - date is days.
      {Add(I(1), T("2024-02-28")), T("2024-02-29")}, {Add(T("2024-02-29 13:05:00"), D(0.5)), T("2024-03-01 01:05:00")},
      {Sub(T("2024-02-29 12:00:00"), T("2024-02-29")), D(0.5)},
      {Mul(T("2024-02-29"), I(1)), D(45351.0)},
  };
  for (const auto& [got, expected] : cases) EXPECT_EQ(got, expected);
  EXPECT_EQ(error_of([] { Neg(T("x")); }), "Tipo de dato no coincide en -: 'x'");
  EXPECT_EQ(error_of([] { Div(I(0), D(0.0)); }), "División por cero");
  EXPECT_EQ(error_of([] { Add(T("9999-12-31"), I(1)); }), "Desbordamiento en +: '9999-12-31'");
}

}  // namespace
}  // namespace db::jet
