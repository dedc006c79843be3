// db/sqlite_strftime.cpp — strftime(format, date) answered directly for a
// stored ISO date and a format of plain fields, and by SQLite's own strftime
// for everything else.
//
// Once strftime is registered on a connection, SQLite's own function can no
// longer be called there; the other cases are asked of a private in-memory
// connection (opened on the first such call), where "SELECT strftime(?1,?2)"
// still runs SQLite's own. That is slower, but only unusual arguments take it.
// One difference remains by construction: 'now' is read on that connection,
// so two calls within one step may see different instants; our statements
// never ask strftime for 'now' (Jet's Now() is a function of its own).
#include "db/sqlite_strftime.h"

#include <sqlite3.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "db/error.h"

namespace db {
namespace {

// The private connection and its prepared statement.
struct Fallback {
  sqlite3* db = nullptr;
  sqlite3_stmt* stmt = nullptr;

  ~Fallback() {
    sqlite3_finalize(stmt);
    sqlite3_close_v2(db);
  }
};

void delete_fallback(void* p) { delete static_cast<Fallback*>(p); }

// SQLite's own strftime of the two arguments, through the private connection.
void builtin_strftime(sqlite3_context* ctx, sqlite3_value** argv) {
  auto* fb = static_cast<Fallback*>(sqlite3_user_data(ctx));
  if (fb->stmt == nullptr) {
    if (fb->db == nullptr && sqlite3_open_v2(":memory:", &fb->db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
      sqlite3_result_error(ctx, "No se pudo preparar strftime", -1);
      return;
    }
    if (sqlite3_prepare_v2(fb->db, "SELECT strftime(?1, ?2)", -1, &fb->stmt, nullptr) != SQLITE_OK) {
      sqlite3_result_error(ctx, sqlite3_errmsg(fb->db), -1);
      return;
    }
  }
  sqlite3_bind_value(fb->stmt, 1, argv[0]);
  sqlite3_bind_value(fb->stmt, 2, argv[1]);
  const int rc = sqlite3_step(fb->stmt);
  if (rc == SQLITE_ROW) sqlite3_result_value(ctx, sqlite3_column_value(fb->stmt, 0));
  else if (rc == SQLITE_NOMEM) sqlite3_result_error_nomem(ctx);
  else sqlite3_result_error(ctx, sqlite3_errmsg(fb->db), -1);
  sqlite3_reset(fb->stmt);
  sqlite3_clear_bindings(fb->stmt);
}

// The bytes of a text argument as stored, without the terminating zero
// that sqlite3_value_text would add by copying a column's text for each row.
// In a UTF-16 database they match none of the ASCII shapes read below.
std::string_view stored_text(sqlite3_value* v) {
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(v));
  const int n = sqlite3_value_bytes(v);
  return bytes != nullptr && n > 0 ? std::string_view(bytes, static_cast<std::size_t>(n)) : std::string_view();
}

bool digits(std::string_view s, std::size_t pos, std::size_t count, int& value) {
  value = 0;
  for (std::size_t i = pos; i < pos + count; ++i) {
    if (s[i] < '0' || s[i] > '9') return false;
    value = value * 10 + (s[i] - '0');
  }
  return true;
}

// A stored date "yyyy-MM-dd" or "yyyy-MM-dd hh:nn:ss" that is a real day and
// time of the years 1000-9999, where SQLite's own reading and ours agree; its
// fields' texts are then the characters of `s` themselves. False for any
// other text (SQLite also reads days past the month's end, fractions of
// seconds, 'T', zones and more, and answers those itself).
bool plain_stored_date(std::string_view s) {
  if (s.size() != 10 && s.size() != 19) return false;
  int year = 0, month = 0, day = 0;
  if (s[4] != '-' || s[7] != '-' || !digits(s, 0, 4, year) || !digits(s, 5, 2, month) || !digits(s, 8, 2, day))
    return false;
  if (year < 1000 || month < 1 || month > 12 || day < 1) return false;
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  if (day > kDays[month - 1] + (month == 2 && leap ? 1 : 0)) return false;
  if (s.size() == 10) return true;
  int hour = 0, minute = 0, second = 0;
  return s[10] == ' ' && s[13] == ':' && s[16] == ':' && digits(s, 11, 2, hour) && digits(s, 14, 2, minute) &&
         digits(s, 17, 2, second) && hour < 24 && minute < 60 && second < 60;
}

// Fills `out` with `format` applied to the plain stored date `date`, when the
// format uses only %d %m %Y %H %M %S and %%; returns the length written, or
// -1 for any other format (or one longer than `out` can hold).
int format_plain(std::string_view format, std::string_view date, char (&out)[64]) {
  static constexpr std::string_view kMidnight = "00:00:00";
  const std::string_view time = date.size() == 19 ? date.substr(11) : kMidnight;
  std::size_t n = 0;
  auto put = [&](std::string_view part) {
    if (n + part.size() > sizeof out) return false;
    for (char c : part) out[n++] = c;
    return true;
  };
  for (std::size_t i = 0; i < format.size(); ++i) {
    std::string_view part;
    if (format[i] != '%') {
      part = format.substr(i, 1);
    } else if (i + 1 < format.size()) {
      switch (format[++i]) {
        case 'd': part = date.substr(8, 2); break;
        case 'm': part = date.substr(5, 2); break;
        case 'Y': part = date.substr(0, 4); break;
        case 'H': part = time.substr(0, 2); break;
        case 'M': part = time.substr(3, 2); break;
        case 'S': part = time.substr(6, 2); break;
        case '%': part = "%"; break;
        default: return -1;
      }
    } else {
      return -1;
    }
    if (!put(part)) return -1;
  }
  return static_cast<int>(n);
}

void quick_strftime(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_TEXT && sqlite3_value_type(argv[1]) == SQLITE_TEXT) {
    // The date first: its shape also rules out a UTF-16 database's bytes.
    const std::string_view date = stored_text(argv[1]);
    if (plain_stored_date(date)) {
      char out[64];
      const int n = format_plain(stored_text(argv[0]), date, out);
      if (n >= 0) {
        sqlite3_result_text(ctx, out, n, SQLITE_TRANSIENT);
        return;
      }
    }
  }
  builtin_strftime(ctx, argv);
}

}  // namespace

void register_quick_strftime(sqlite3* db) {
  auto* fallback = new Fallback;
  // Deterministic like SQLite's own for a stored date, so that views and
  // index expressions that use it are planned alike.
  const int rc = sqlite3_create_function_v2(db, "strftime", 2, SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC,
                                            fallback, quick_strftime, nullptr, nullptr, delete_fallback);
  // SQLite calls delete_fallback itself when the registration fails.
  if (rc != SQLITE_OK) throw Error(std::string("No se pudo registrar la función strftime: ") + sqlite3_errmsg(db));
}

}  // namespace db
