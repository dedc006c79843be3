// db/jet_functions_sqlite.cpp — Jet's functions as SQLite functions.
//
// Every function of db/jet/functions.h is registered as "jet_" + its lower-
// case Jet name, once per number of arguments it accepts. Most go through a
// generic adapter (sqlite3_value -> db::Value -> function -> result); the ones
// the transfer calls for every row of millions (Val, &, InStr, Left, Right,
// Mid, Len, Trim, CDate, Format, Like, Nz, Year/Month/Day) read SQLite's text
// in place and fall back to the generic path only for unusual arguments, so
// both paths give the same results and the same errors.
#include "db/jet_functions_sqlite.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "db/error.h"
#include "db/jet/functions.h"

namespace db {

namespace {

namespace fn = jet::fn;

Value to_value(sqlite3_value* v) {
  switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
      return Value{static_cast<std::int64_t>(sqlite3_value_int64(v))};
    case SQLITE_FLOAT:
      return Value{sqlite3_value_double(v)};
    case SQLITE_NULL:
      return Value{};
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(v));
      int bytes = sqlite3_value_bytes(v);
      return Value{std::string(text != nullptr ? text : "", static_cast<std::size_t>(bytes))};
    }
  }
}

void result_text(sqlite3_context* ctx, std::string_view s) {
  sqlite3_result_text64(ctx, s.data(), s.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void set_result(sqlite3_context* ctx, const Value& v) {
  if (const auto* i = std::get_if<std::int64_t>(&v)) sqlite3_result_int64(ctx, *i);
  else if (const auto* d = std::get_if<double>(&v)) sqlite3_result_double(ctx, *d);
  else if (const auto* s = std::get_if<std::string>(&v)) result_text(ctx, *s);
  else sqlite3_result_null(ctx);
}

// Runs f, turning a refused argument into an SQLite error with the Spanish
// message, so that the statement fails with it.
template <typename F>
void guarded(sqlite3_context* ctx, F f) {
  try {
    f();
  } catch (const jet::FunctionError& e) {
    sqlite3_result_error(ctx, e.what(), -1);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(ctx);
  } catch (const std::exception& e) {
    sqlite3_result_error(ctx, e.what(), -1);
  }
}

// ---- Generic adapters ---------------------------------------------------

template <Value (*F)()>
void udf0(sqlite3_context* ctx, int, sqlite3_value**) {
  guarded(ctx, [&] { set_result(ctx, F()); });
}

template <Value (*F)(const Value&)>
void udf1(sqlite3_context* ctx, int, sqlite3_value** argv) {
  guarded(ctx, [&] { set_result(ctx, F(to_value(argv[0]))); });
}

template <Value (*F)(const Value&, const Value&)>
void udf2(sqlite3_context* ctx, int, sqlite3_value** argv) {
  guarded(ctx, [&] { set_result(ctx, F(to_value(argv[0]), to_value(argv[1]))); });
}

template <Value (*F)(const Value&, const Value&, const Value&)>
void udf3(sqlite3_context* ctx, int, sqlite3_value** argv) {
  guarded(ctx, [&] { set_result(ctx, F(to_value(argv[0]), to_value(argv[1]), to_value(argv[2]))); });
}

template <Value (*F)(const Value&, const Value&, const Value&, const Value&)>
void udf4(sqlite3_context* ctx, int, sqlite3_value** argv) {
  guarded(ctx, [&] {
    set_result(ctx, F(to_value(argv[0]), to_value(argv[1]), to_value(argv[2]), to_value(argv[3])));
  });
}

// ---- Fast paths ---------------------------------------------------------

// + - * / of two SQLite numbers, the common case of every transfer row, done
// without building values; texts, dates, Nulls, overflow and division by
// zero go through the strict functions of functions_arith.cpp.
template <int kOp, Value (*F)(const Value&, const Value&)>
void fast_arith(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  int ta = sqlite3_value_type(argv[0]);
  int tb = sqlite3_value_type(argv[1]);
  if (ta == SQLITE_INTEGER && tb == SQLITE_INTEGER && kOp != 3) {
    sqlite3_int64 a = sqlite3_value_int64(argv[0]), b = sqlite3_value_int64(argv[1]), r = 0;
    bool overflowed = kOp == 0   ? __builtin_add_overflow(a, b, &r)
                      : kOp == 1 ? __builtin_sub_overflow(a, b, &r)
                                 : __builtin_mul_overflow(a, b, &r);
    if (!overflowed) return sqlite3_result_int64(ctx, r);
  } else if ((ta == SQLITE_INTEGER || ta == SQLITE_FLOAT) &&
             (tb == SQLITE_INTEGER || tb == SQLITE_FLOAT)) {
    double a = sqlite3_value_double(argv[0]), b = sqlite3_value_double(argv[1]);
    double r = kOp == 0 ? a + b : kOp == 1 ? a - b : kOp == 2 ? a * b : (b != 0 ? a / b : 0.0);
    if (std::isfinite(r) && (kOp != 3 || b != 0)) return sqlite3_result_double(ctx, r);
  }
  udf2<F>(ctx, argc, argv);
}


// An argument's text without copying SQLite's: texts in place, numbers as
// CStr writes them into a small buffer.
class ArgText {
 public:
  explicit ArgText(sqlite3_value* v) {
    switch (sqlite3_value_type(v)) {
      case SQLITE_NULL:
        null_ = true;
        break;
      case SQLITE_INTEGER: {
        auto r = std::to_chars(buf_, buf_ + sizeof buf_, static_cast<std::int64_t>(sqlite3_value_int64(v)));
        view_ = std::string_view(buf_, static_cast<std::size_t>(r.ptr - buf_));
        break;
      }
      case SQLITE_FLOAT:
        view_ = std::string_view(buf_, jet::cstr_number_to(sqlite3_value_double(v), buf_));
        break;
      default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(v));
        int bytes = sqlite3_value_bytes(v);
        if (text != nullptr) view_ = std::string_view(text, static_cast<std::size_t>(bytes));
        break;
      }
    }
  }
  ArgText(const ArgText&) = delete;
  ArgText& operator=(const ArgText&) = delete;

  bool null() const { return null_; }
  std::string_view view() const { return view_; }

 private:
  char buf_[jet::kNumberTextMax];
  std::string_view view_;
  bool null_ = false;
};

// A whole-number argument stored as an integer (the usual case), or false
// to take the generic path, which converts, rounds and checks.
bool plain_int(sqlite3_value* v, std::int64_t& out) {
  if (sqlite3_value_type(v) != SQLITE_INTEGER) return false;
  out = sqlite3_value_int64(v);
  return true;
}

bool is_null_arg(sqlite3_value* v) { return sqlite3_value_type(v) == SQLITE_NULL; }

// A reused output buffer for functions that build a text.
std::string& scratch() {
  thread_local std::string buffer;
  buffer.clear();
  return buffer;
}

void fast_val(sqlite3_context* ctx, int, sqlite3_value** argv) {
  int type = sqlite3_value_type(argv[0]);
  if (type == SQLITE_INTEGER || type == SQLITE_FLOAT || type == SQLITE_NULL) {
    sqlite3_result_value(ctx, argv[0]);
    return;
  }
  ArgText s(argv[0]);
  jet::Number n = jet::val_text(s.view());
  if (n.is_int) sqlite3_result_int64(ctx, n.i);
  else sqlite3_result_double(ctx, n.d);
}

void fast_concat(sqlite3_context* ctx, int, sqlite3_value** argv) {
  ArgText a(argv[0]);
  ArgText b(argv[1]);
  if (a.null() && b.null()) {
    sqlite3_result_null(ctx);
    return;
  }
  std::size_t n = a.view().size() + b.view().size();
  auto* out = static_cast<char*>(sqlite3_malloc64(n + 1));
  if (out == nullptr) {
    sqlite3_result_error_nomem(ctx);
    return;
  }
  if (!a.view().empty()) std::memcpy(out, a.view().data(), a.view().size());
  if (!b.view().empty()) std::memcpy(out + a.view().size(), b.view().data(), b.view().size());
  out[n] = '\0';
  sqlite3_result_text64(ctx, out, n, sqlite3_free, SQLITE_UTF8);
}

void fast_instr(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  std::int64_t start = 1;
  std::int64_t compare = 1;
  int first = argc == 2 ? 0 : 1;
  bool plain = (argc == 2 || (plain_int(argv[0], start) && start >= 1)) &&
               (argc < 4 || (plain_int(argv[3], compare) && (compare == 0 || compare == 1)));
  if (!plain) {
    if (argc == 3) return udf3<fn::InStr>(ctx, argc, argv);
    return udf4<fn::InStr>(ctx, argc, argv);
  }
  ArgText s(argv[first]);
  ArgText find(argv[first + 1]);
  if (s.null() || find.null()) {
    sqlite3_result_null(ctx);
    return;
  }
  sqlite3_result_int64(ctx, jet::instr_chars(start, s.view(), find.view(), compare == 0));
}

template <bool kLeft>
void fast_left_right(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  std::int64_t n = 0;
  if (!plain_int(argv[1], n) || n < 0) return udf2<kLeft ? fn::Left : fn::Right>(ctx, argc, argv);
  ArgText s(argv[0]);
  if (s.null()) return sqlite3_result_null(ctx);
  result_text(ctx, kLeft ? jet::left_chars(s.view(), n) : jet::right_chars(s.view(), n));
}

void fast_mid(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  std::int64_t start = 0;
  std::int64_t length = 0;
  bool plain = plain_int(argv[1], start) && start >= 1 && (argc == 2 || (plain_int(argv[2], length) && length >= 0));
  if (!plain) {
    if (argc == 2) return udf2<fn::Mid>(ctx, argc, argv);
    return udf3<fn::Mid>(ctx, argc, argv);
  }
  ArgText s(argv[0]);
  if (s.null()) return sqlite3_result_null(ctx);
  result_text(ctx, jet::mid_chars(s.view(), start, argc == 2 ? std::nullopt : std::optional<std::int64_t>(length)));
}

void fast_len(sqlite3_context* ctx, int, sqlite3_value** argv) {
  ArgText s(argv[0]);
  if (s.null()) return sqlite3_result_null(ctx);
  sqlite3_result_int64(ctx, jet::char_count(s.view()));
}

template <bool kLeading, bool kTrailing>
void fast_trim(sqlite3_context* ctx, int, sqlite3_value** argv) {
  ArgText s(argv[0]);
  if (s.null()) return sqlite3_result_null(ctx);
  std::string_view t = jet::trim_view(s.view(), kLeading, kTrailing);
  result_text(ctx, t);
}

template <bool kUpper>
void fast_case(sqlite3_context* ctx, int, sqlite3_value** argv) {
  ArgText s(argv[0]);
  if (s.null()) return sqlite3_result_null(ctx);
  std::string& out = scratch();
  if (kUpper) jet::append_upper(out, s.view());
  else jet::append_lower(out, s.view());
  result_text(ctx, out);
}

void fast_cstr(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) != SQLITE_TEXT) return udf1<fn::CStr>(ctx, argc, argv);
  ArgText s(argv[0]);
  std::string& out = scratch();
  jet::append_cstr_text(out, s.view());
  result_text(ctx, out);
}

// "MM/yyyy" read as the first of that month ("2024-02-01" into `iso`), for
// years 100-9999; false for any other text. The liquidation browser sorts by
// CDate of such a month for every staged header, so this shape skips the
// general reader; what it accepts the general reader reads alike.
bool month_year_to_iso(std::string_view s, char (&iso)[10]) {
  if (s.size() != 7 || s[2] != '/') return false;
  for (std::size_t i : {0, 1, 3, 4, 5, 6})
    if (s[i] < '0' || s[i] > '9') return false;
  const int month = (s[0] - '0') * 10 + (s[1] - '0');
  const int year = (s[3] - '0') * 1000 + (s[4] - '0') * 100 + (s[5] - '0') * 10 + (s[6] - '0');
  if (month < 1 || month > 12 || year < 100) return false;
  const char out[10] = {s[3], s[4], s[5], s[6], '-', s[0], s[1], '-', '0', '1'};
  std::memcpy(iso, out, sizeof out);
  return true;
}

// The bytes of a text argument as stored, without the terminating zero that
// sqlite3_value_text adds: a column's text read from its page has none, and
// adding it costs a copy into a fresh allocation for every row. For shape
// checks of ASCII texts only (in a UTF-16 database these bytes match no
// ASCII shape, and the caller falls back to the text as ArgText reads it).
std::string_view stored_text(sqlite3_value* v) {
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(v));
  const int n = sqlite3_value_bytes(v);
  return bytes != nullptr && n > 0 ? std::string_view(bytes, static_cast<std::size_t>(n)) : std::string_view();
}

void fast_cdate(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) != SQLITE_TEXT) return udf1<fn::CDate>(ctx, argc, argv);
  const std::string_view raw = stored_text(argv[0]);
  if (raw.size() == 10 && jet::parse_iso(raw)) {
    result_text(ctx, raw);  // already a stored date
    return;
  }
  if (char iso[10]; month_year_to_iso(raw, iso)) {
    sqlite3_result_text(ctx, iso, sizeof iso, SQLITE_TRANSIENT);
    return;
  }
  ArgText s(argv[0]);
  std::optional<jet::DateTime> d = jet::parse_date_text(s.view());
  if (!d) return udf1<fn::CDate>(ctx, argc, argv);  // raises the error
  std::string& out = scratch();
  jet::append_iso(out, *d);
  result_text(ctx, out);
}

void fast_format(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (is_null_arg(argv[0])) return sqlite3_result_null(ctx);
  guarded(ctx, [&] {
    Value x = to_value(argv[0]);
    std::string_view pattern;
    std::optional<ArgText> p;
    if (argc == 2) {
      p.emplace(argv[1]);
      pattern = p->view();
    }
    std::string& out = scratch();
    jet::append_format(out, x, pattern);
    result_text(ctx, out);
  });
}

void delete_like_pattern(void* p) { delete static_cast<jet::LikePattern*>(p); }

// The pattern is read once per statement while it stays the same (SQLite
// keeps the compiled pattern as auxiliary data of a constant argument).
void fast_like(sqlite3_context* ctx, int, sqlite3_value** argv) {
  ArgText s(argv[0]);
  ArgText p(argv[1]);
  if (s.null() || p.null()) return sqlite3_result_null(ctx);
  if (const auto* cached = static_cast<const jet::LikePattern*>(sqlite3_get_auxdata(ctx, 1))) {
    sqlite3_result_int64(ctx, cached->matches(s.view()) ? -1 : 0);
    return;
  }
  auto compiled = std::make_unique<jet::LikePattern>(p.view());
  sqlite3_result_int64(ctx, compiled->matches(s.view()) ? -1 : 0);
  sqlite3_set_auxdata(ctx, 1, compiled.release(), delete_like_pattern);
}

void fast_nz(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (!is_null_arg(argv[0])) sqlite3_result_value(ctx, argv[0]);
  else if (argc == 2) sqlite3_result_value(ctx, argv[1]);
  else sqlite3_result_text(ctx, "", 0, SQLITE_STATIC);
}

// Year/Month/Day of a stored ISO date without building a value.
template <int kPart, Value (*F)(const Value&)>
void fast_date_part(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
    ArgText s(argv[0]);
    if (auto d = jet::parse_iso(s.view())) {
      sqlite3_result_int64(ctx, kPart == 0 ? d->year : kPart == 1 ? d->month : d->day);
      return;
    }
  }
  udf1<F>(ctx, argc, argv);
}

// ---- The table of functions ---------------------------------------------

using Callback = void (*)(sqlite3_context*, int, sqlite3_value**);

// A fast path behind the same guard as the generic ones: no exception (not
// even running out of memory) may cross back into SQLite's C code.
template <Callback F>
void safe(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  guarded(ctx, [&] { F(ctx, argc, argv); });
}

struct Registration {
  const char* name;
  int argc;
  Callback callback;
  bool deterministic;
};

constexpr Registration kFunctions[] = {
    {"jet_nz", 1, safe<fast_nz>, true},
    {"jet_nz", 2, safe<fast_nz>, true},
    {"jet_val", 1, safe<fast_val>, true},
    {"jet_cdate", 1, safe<fast_cdate>, true},
    {"jet_cstr", 1, safe<fast_cstr>, true},
    {"jet_cbool", 1, udf1<fn::CBool>, true},
    {"jet_cint", 1, udf1<fn::CInt>, true},
    {"jet_clng", 1, udf1<fn::CLng>, true},
    {"jet_cdbl", 1, udf1<fn::CDbl>, true},
    {"jet_format", 1, safe<fast_format>, true},
    {"jet_format", 2, safe<fast_format>, true},
    {"jet_instr", 2, safe<fast_instr>, true},
    {"jet_instr", 3, safe<fast_instr>, true},
    {"jet_instr", 4, safe<fast_instr>, true},
    {"jet_left", 2, safe<fast_left_right<true>>, true},
    {"jet_right", 2, safe<fast_left_right<false>>, true},
    {"jet_mid", 2, safe<fast_mid>, true},
    {"jet_mid", 3, safe<fast_mid>, true},
    {"jet_len", 1, safe<fast_len>, true},
    {"jet_trim", 1, safe<fast_trim<true, true>>, true},
    {"jet_ltrim", 1, safe<fast_trim<true, false>>, true},
    {"jet_rtrim", 1, safe<fast_trim<false, true>>, true},
    {"jet_ucase", 1, safe<fast_case<true>>, true},
    {"jet_lcase", 1, safe<fast_case<false>>, true},
    {"jet_space", 1, udf1<fn::Space>, true},
    {"jet_round", 1, udf1<fn::Round>, true},
    {"jet_round", 2, udf2<fn::Round>, true},
    {"jet_abs", 1, udf1<fn::Abs>, true},
    {"jet_int", 1, udf1<fn::Int>, true},
    {"jet_fix", 1, udf1<fn::Fix>, true},
    {"jet_sgn", 1, udf1<fn::Sgn>, true},
    {"jet_date", 0, udf0<fn::Date>, false},
    {"jet_now", 0, udf0<fn::Now>, false},
    {"jet_year", 1, fast_date_part<0, fn::Year>, true},
    {"jet_month", 1, fast_date_part<1, fn::Month>, true},
    {"jet_day", 1, fast_date_part<2, fn::Day>, true},
    {"jet_hour", 1, udf1<fn::Hour>, true},
    {"jet_minute", 1, udf1<fn::Minute>, true},
    {"jet_second", 1, udf1<fn::Second>, true},
    {"jet_weekday", 1, udf1<fn::Weekday>, true},
    {"jet_dateserial", 3, udf3<fn::DateSerial>, true},
    {"jet_dateadd", 3, udf3<fn::DateAdd>, true},
    {"jet_datediff", 3, udf3<fn::DateDiff>, true},
    {"jet_replace", 3, udf3<fn::Replace>, true},
    {"jet_str", 1, udf1<fn::Str>, true},
    {"jet_isnumeric", 1, udf1<fn::IsNumeric>, true},
    {"jet_isdate", 1, udf1<fn::IsDate>, true},
    {"jet_ccur", 1, udf1<fn::CCur>, true},
    {"jet_csng", 1, udf1<fn::CSng>, true},
    {"jet_cbyte", 1, udf1<fn::CByte>, true},
    {"jet_chr", 1, udf1<fn::Chr>, true},
    {"jet_asc", 1, udf1<fn::Asc>, true},
    {"jet_string", 2, udf2<fn::String>, true},
    {"jet_instrrev", 2, udf2<fn::InStrRev>, true},
    {"jet_instrrev", 3, udf3<fn::InStrRev>, true},
    {"jet_strreverse", 1, udf1<fn::StrReverse>, true},
    {"jet_sqr", 1, udf1<fn::Sqr>, true},
    {"jet_exp", 1, udf1<fn::Exp>, true},
    {"jet_log", 1, udf1<fn::Log>, true},
    {"jet_monthname", 1, udf1<fn::MonthName>, true},
    {"jet_monthname", 2, udf2<fn::MonthName>, true},
    {"jet_datepart", 2, udf2<fn::DatePart>, true},
    {"jet_datevalue", 1, udf1<fn::DateValue>, true},
    {"jet_timevalue", 1, udf1<fn::TimeValue>, true},
    {"jet_concat", 2, safe<fast_concat>, true},
    {"jet_like", 2, safe<fast_like>, true},
    {"jet_add", 2, fast_arith<0, fn::Add>, true},
    {"jet_sub", 2, fast_arith<1, fn::Sub>, true},
    {"jet_mul", 2, fast_arith<2, fn::Mul>, true},
    {"jet_div", 2, fast_arith<3, fn::Div>, true},
    {"jet_neg", 1, udf1<fn::Neg>, true},
    {"jet_intdiv", 2, udf2<fn::IntDiv>, true},
    {"jet_mod", 2, udf2<fn::Mod>, true},
    {"jet_pow", 2, udf2<fn::Pow>, true},
    {"jet_not", 1, udf1<fn::Not>, true},
    {"jet_and", 2, udf2<fn::And>, true},
    {"jet_or", 2, udf2<fn::Or>, true},
    {"jet_xor", 2, udf2<fn::Xor>, true},
    {"jet_eqv", 2, udf2<fn::Eqv>, true},
    {"jet_imp", 2, udf2<fn::Imp>, true},
};


// jet_one(x): the single value of a subquery used as a value; a second row
// is Jet's error. Null when there is no row.
struct OneValue {
  sqlite3_value* value;
  bool seen;
};

void one_step(sqlite3_context* ctx, int, sqlite3_value** argv) {
  auto* state = static_cast<OneValue*>(sqlite3_aggregate_context(ctx, sizeof(OneValue)));
  if (state == nullptr) return sqlite3_result_error_nomem(ctx);
  if (state->seen) {
    return sqlite3_result_error(ctx, "Como máximo, esta subconsulta puede devolver un registro", -1);
  }
  state->seen = true;
  state->value = sqlite3_value_dup(argv[0]);
}

void one_final(sqlite3_context* ctx) {
  auto* state = static_cast<OneValue*>(sqlite3_aggregate_context(ctx, 0));
  if (state == nullptr || !state->seen) return sqlite3_result_null(ctx);
  sqlite3_result_value(ctx, state->value);
  sqlite3_value_free(state->value);
}

}  // namespace

void register_jet_functions(sqlite3* db) {
  for (const Registration& r : kFunctions) {
    int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (r.deterministic ? SQLITE_DETERMINISTIC : 0);
    int rc = sqlite3_create_function_v2(db, r.name, r.argc, flags, nullptr, r.callback, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
      throw Error(std::string("No se pudo registrar la función ") + r.name + ": " + sqlite3_errmsg(db));
  }
  if (sqlite3_create_function_v2(db, "jet_one", 1, SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC,
                                 nullptr, nullptr, one_step, one_final, nullptr) != SQLITE_OK) {
    throw Error(std::string("No se pudo registrar la función jet_one: ") + sqlite3_errmsg(db));
  }
}

}  // namespace db
