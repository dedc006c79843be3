// db/jet/date_format.cpp — dates written out: ISO texts, the CStr display
// form and Format's date patterns and named date formats.
#include <array>
#include <cstddef>

#include "db/jet/ascii.h"
#include "db/jet/date.h"

namespace db::jet {

namespace {

constexpr std::array<const char*, 7> kDayNames = {
    "domingo", "lunes", "martes", "miércoles", "jueves", "viernes", "sábado"};
constexpr std::array<const char*, 7> kDayAbbrev = {"dom", "lun", "mar", "mié", "jue", "vie", "sáb"};

void append_2(std::string& out, int v) {
  out.push_back(static_cast<char>('0' + (v / 10) % 10));
  out.push_back(static_cast<char>('0' + v % 10));
}

void append_4(std::string& out, int v) {
  append_2(out, v / 100);
  append_2(out, v % 100);
}

void append_int(std::string& out, std::int64_t v) { out += std::to_string(v); }

void append_short_date(std::string& out, const DateTime& d) {
  append_2(out, d.day);
  out.push_back('/');
  append_2(out, d.month);
  out.push_back('/');
  append_4(out, d.year);
}

void append_long_time(std::string& out, const DateTime& d) {
  append_2(out, d.hour);
  out.push_back(':');
  append_2(out, d.minute);
  out.push_back(':');
  append_2(out, d.second);
}

void append_long_date(std::string& out, const DateTime& d) {
  out += kDayNames[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
  out += ", ";
  append_int(out, d.day);
  out += " de ";
  out += month_name(d.month, false);
  out += " de ";
  append_4(out, d.year);
}

// True when the pattern shows AM/PM, which switches hours to a 12-hour clock.
bool uses_12_hour(std::string_view p) {
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) break;
      i = close;
    } else if (p[i] == '\\') {
      ++i;
    } else if (lower_ascii(p[i]) == 'a' || p[i] == 'A') {
      std::string_view rest = p.substr(i);
      if (rest.size() >= 5 && (iequals(rest.substr(0, 5), "am/pm"))) return true;
      if (rest.size() >= 3 && iequals(rest.substr(0, 3), "a/p")) return true;
      if (rest.size() >= 4 && iequals(rest.substr(0, 4), "ampm")) return true;
    }
  }
  return false;
}

}  // namespace

void append_iso(std::string& out, const DateTime& d) {
  append_4(out, d.year);
  out.push_back('-');
  append_2(out, d.month);
  out.push_back('-');
  append_2(out, d.day);
  if (d.has_time()) {
    out.push_back(' ');
    append_long_time(out, d);
  }
}

std::string format_iso(const DateTime& d) {
  std::string out;
  out.reserve(19);
  append_iso(out, d);
  return out;
}

void append_display(std::string& out, const DateTime& d) {
  bool day_zero = d.year == 1899 && d.month == 12 && d.day == 30;
  if (day_zero && d.has_time()) {
    append_long_time(out, d);
    return;
  }
  append_short_date(out, d);
  if (d.has_time()) {
    out.push_back(' ');
    append_long_time(out, d);
  }
}

bool is_date_pattern(std::string_view p) {
  static constexpr const char* kDateNames[] = {"general date", "short date", "medium date", "long date",
                                               "short time",   "medium time", "long time"};
  for (const char* name : kDateNames)
    if (iequals(p, name)) return true;
  bool date_letter = false;
  for (std::size_t i = 0; i < p.size(); ++i) {
    char c = lower_ascii(p[i]);
    if (c == '"') {
      std::size_t close = p.find('"', i + 1);
      if (close == std::string_view::npos) break;
      i = close;
    } else if (c == '\\') {
      ++i;
    } else if (c == '0' || c == '#') {
      return false;
    } else if (c == 'd' || c == 'm' || c == 'y' || c == 'h' || c == 'n' || c == 's' || c == 'w' || c == 'q' ||
               c == 'c') {
      date_letter = true;
    }
  }
  return date_letter;
}

void append_date_pattern(std::string& out, const DateTime& d, std::string_view p) {
  if (iequals(p, "general date") || p == "c" || p == "C") return append_display(out, d);
  if (iequals(p, "short date")) return append_short_date(out, d);
  if (iequals(p, "long date")) return append_long_date(out, d);
  if (iequals(p, "long time")) return append_long_time(out, d);
  if (iequals(p, "medium date")) return append_date_pattern(out, d, "dd-mmm-yy");
  if (iequals(p, "short time")) return append_date_pattern(out, d, "hh:nn");
  if (iequals(p, "medium time")) return append_date_pattern(out, d, "hh:nn AM/PM");

  const bool twelve = uses_12_hour(p);
  bool after_hour = false;  // the last field shown was an hour: m means minutes
  std::size_t i = 0;
  while (i < p.size()) {
    char c = lower_ascii(p[i]);
    std::size_t run = 1;
    while (i + run < p.size() && lower_ascii(p[i + run]) == c) ++run;
    switch (c) {
      case '"': {
        std::size_t close = p.find('"', i + 1);
        if (close == std::string_view::npos) close = p.size();
        out.append(p.substr(i + 1, close - i - 1));
        i = close + 1;
        continue;
      }
      case '\\':
        if (i + 1 < p.size()) out.push_back(p[i + 1]);
        i += 2;
        continue;
      case 'd':
        if (run == 1) append_int(out, d.day);
        else if (run == 2) append_2(out, d.day);
        else if (run == 3) out += kDayAbbrev[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
        else if (run == 4) out += kDayNames[static_cast<std::size_t>(weekday(day_number(d)) - 1)];
        else if (run == 5) append_short_date(out, d);
        else append_long_date(out, d);
        after_hour = false;
        break;
      case 'm':
        if (run <= 2 && after_hour) {
          if (run == 1) append_int(out, d.minute);
          else append_2(out, d.minute);
        } else if (run == 1) {
          append_int(out, d.month);
        } else if (run == 2) {
          append_2(out, d.month);
        } else if (run == 3) {
          out += month_name(d.month, true);
        } else {
          out += month_name(d.month, false);
        }
        after_hour = false;
        break;
      case 'n':
        if (run == 1) append_int(out, d.minute);
        else append_2(out, d.minute);
        after_hour = false;
        break;
      case 'y':
        if (run == 1) append_int(out, day_of_year(d));
        else if (run == 2) append_2(out, d.year % 100);
        else append_4(out, d.year);
        after_hour = false;
        break;
      case 'h': {
        int h = d.hour;
        if (twelve) h = h % 12 == 0 ? 12 : h % 12;
        if (run == 1) append_int(out, h);
        else append_2(out, h);
        after_hour = true;
        break;
      }
      case 's':
        if (run == 1) append_int(out, d.second);
        else append_2(out, d.second);
        after_hour = false;
        break;
      case 'w':
        if (run == 1) append_int(out, weekday(day_number(d)));
        else append_int(out, week_of_year(d));
        after_hour = false;
        break;
      case 'q':
        append_int(out, (d.month - 1) / 3 + 1);
        after_hour = false;
        break;
      case 'a': {
        std::string_view rest = p.substr(i);
        bool pm = d.hour >= 12;
        if (rest.size() >= 5 && iequals(rest.substr(0, 5), "am/pm")) {
          bool upper = rest[0] == 'A';
          out += pm ? (upper ? "PM" : "pm") : (upper ? "AM" : "am");
          i += 5;
          continue;
        }
        if (rest.size() >= 3 && iequals(rest.substr(0, 3), "a/p")) {
          bool upper = rest[0] == 'A';
          out.push_back(pm ? (upper ? 'P' : 'p') : (upper ? 'A' : 'a'));
          i += 3;
          continue;
        }
        if (rest.size() >= 4 && iequals(rest.substr(0, 4), "ampm")) {
          out += pm ? "p.m." : "a.m.";
          i += 4;
          continue;
        }
        out.append(p.substr(i, run));
        break;
      }
      default:
        out.append(p.substr(i, run));
        break;
    }
    i += run;
  }
}

}  // namespace db::jet
