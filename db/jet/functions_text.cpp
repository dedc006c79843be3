// db/jet/functions_text.cpp — Jet's text functions on UTF-8: lengths and
// pieces in characters, case-insensitive search, case conversion and Like.
//
// A character starts at the first byte and at every byte that is not a
// continuation byte (10xxxxxx); broken sequences are thereby still counted
// and cut consistently, never refused.
#include <memory>
#include <vector>

#include "db/jet/ascii.h"
#include "db/jet/functions.h"

namespace db::jet {

// ---- Like ---------------------------------------------------------------

enum class LikeKind : unsigned char { kStar, kAny, kDigit, kChar, kSet, kNotSet };

struct LikeElem {
  LikeKind kind;
  char32_t ch = 0;
  std::uint32_t set_begin = 0;  // index into ranges
  std::uint32_t set_end = 0;
};

struct LikeProgram {
  std::vector<LikeElem> elems;
  std::vector<std::pair<char32_t, char32_t>> ranges;
  std::vector<char32_t> pattern;
};

namespace {

bool is_cont(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

bool is_ascii(std::string_view s) {
  unsigned char acc = 0;
  for (char c : s) acc |= static_cast<unsigned char>(c);
  return acc < 0x80;
}

// Byte offset where character k (0-based) starts; s.size() past the end.
std::size_t offset_of_char(std::string_view s, std::int64_t k) {
  if (k <= 0) return 0;
  std::int64_t count = 0;
  for (std::size_t i = 1; i < s.size(); ++i) {
    if (!is_cont(s[i]) && ++count == k) return i;
  }
  return s.size();
}

// One character: its code point (or, for a broken sequence, a value above
// U+10FFFF built from its bytes so that it only equals itself) and its bytes.
char32_t decode(std::string_view s, std::size_t& i) {
  const auto b0 = static_cast<unsigned char>(s[i]);
  std::size_t start = i++;
  while (i < s.size() && is_cont(s[i])) ++i;
  std::size_t len = i - start;
  std::size_t want = b0 < 0x80 ? 1 : (b0 >> 5) == 0x6 ? 2 : (b0 >> 4) == 0xE ? 3 : (b0 >> 3) == 0x1E ? 4 : 0;
  if (len == 1 && b0 < 0x80) return b0;
  if (want == len) {
    char32_t cp = b0 & (want == 2 ? 0x1F : want == 3 ? 0x0F : 0x07);
    for (std::size_t j = start + 1; j < i; ++j) cp = (cp << 6) | (static_cast<unsigned char>(s[j]) & 0x3F);
    return cp;
  }
  char32_t bad = 0x200000;
  for (std::size_t j = start; j < i && j < start + 3; ++j) bad = (bad << 8) | static_cast<unsigned char>(s[j]);
  return bad;
}

void encode(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

// Latin Extended-A pairs: upper case at the even (or, in two runs, odd)
// code point, lower case right after it.
bool ext_a_upper_first_even(char32_t c) {
  return (c >= 0x100 && c <= 0x137 && c != 0x130 && c != 0x131) || (c >= 0x14A && c <= 0x177);
}
bool ext_a_upper_first_odd(char32_t c) {
  return (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
}

char32_t to_lower(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c < 0xC0) return c;
  if (c <= 0xDE) return c == 0xD7 ? c : c + 32;
  if (c == 0x178) return 0xFF;
  if (ext_a_upper_first_even(c)) return (c % 2 == 0) ? c + 1 : c;
  if (ext_a_upper_first_odd(c)) return (c % 2 == 1) ? c + 1 : c;
  return c;
}

char32_t to_upper(char32_t c) {
  if (c >= 'a' && c <= 'z') return c - 32;
  if (c < 0xE0) return c;
  if (c <= 0xFE) return c == 0xF7 ? c : c - 32;
  if (c == 0xFF) return 0x178;
  if (ext_a_upper_first_even(c)) return (c % 2 == 1) ? c - 1 : c;
  if (ext_a_upper_first_odd(c)) return (c % 2 == 0) ? c - 1 : c;
  return c;
}

void append_case(std::string& out, std::string_view s, bool upper) {
  out.reserve(out.size() + s.size());
  if (is_ascii(s)) {
    for (char c : s) {
      if (upper) out.push_back((c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c);
      else out.push_back(lower_ascii(c));
    }
    return;
  }
  std::size_t i = 0;
  while (i < s.size()) {
    std::size_t start = i;
    char32_t cp = decode(s, i);
    if (cp > 0x10FFFF) {
      out.append(s.substr(start, i - start));  // broken bytes stay as they were
    } else {
      encode(out, upper ? to_upper(cp) : to_lower(cp));
    }
  }
}

// s as lower-cased code points, into a reused buffer.
void fold_into(std::string_view s, std::vector<char32_t>& out) {
  out.clear();
  std::size_t i = 0;
  while (i < s.size()) out.push_back(to_lower(decode(s, i)));
}

void compile_like(std::string_view pattern, LikeProgram& prog) {
  fold_into(pattern, prog.pattern);
  prog.elems.clear();
  prog.ranges.clear();
  const auto& p = prog.pattern;
  for (std::size_t i = 0; i < p.size(); ++i) {
    char32_t c = p[i];
    // The original connection (Jet's OLE DB provider) read the ANSI wildcards
    // % and _; Access and DAO read * and ?. A format author may have written
    // either, so both are wildcards (docs/jet-dialect.md).
    if (c == '*' || c == '%') {
      if (prog.elems.empty() || prog.elems.back().kind != LikeKind::kStar) prog.elems.push_back({LikeKind::kStar});
    } else if (c == '?' || c == '_') {
      prog.elems.push_back({LikeKind::kAny});
    } else if (c == '#') {
      prog.elems.push_back({LikeKind::kDigit});
    } else if (c == '[') {
      std::size_t j = i + 1;
      bool negated = j < p.size() && p[j] == '!';
      if (negated) ++j;
      LikeElem e{negated ? LikeKind::kNotSet : LikeKind::kSet};
      e.set_begin = static_cast<std::uint32_t>(prog.ranges.size());
      while (j < p.size() && p[j] != ']') {
        char32_t lo = p[j];
        char32_t hi = lo;
        if (j + 2 < p.size() && p[j + 1] == '-' && p[j + 2] != ']') {
          hi = p[j + 2];
          j += 2;
          if (hi < lo) std::swap(lo, hi);
        }
        prog.ranges.emplace_back(lo, hi);
        ++j;
      }
      if (j >= p.size()) {
        throw FunctionError("Patrón no válido en Like: '" + std::string(pattern) + "'");
      }
      e.set_end = static_cast<std::uint32_t>(prog.ranges.size());
      // "[]" matches nothing and consumes nothing: Jet reads it as empty.
      if (e.set_end != e.set_begin || negated) prog.elems.push_back(e);
      i = j;
    } else {
      prog.elems.push_back({LikeKind::kChar, c});
    }
  }
}

bool elem_matches(const LikeProgram& prog, const LikeElem& e, char32_t c) {
  switch (e.kind) {
    case LikeKind::kAny:
      return true;
    case LikeKind::kDigit:
      return c >= '0' && c <= '9';
    case LikeKind::kChar:
      return c == e.ch;
    case LikeKind::kSet:
    case LikeKind::kNotSet: {
      bool in = false;
      for (std::uint32_t r = e.set_begin; r < e.set_end && !in; ++r)
        in = c >= prog.ranges[r].first && c <= prog.ranges[r].second;
      return e.kind == LikeKind::kSet ? in : !in;
    }
    case LikeKind::kStar:
      break;
  }
  return false;
}

}  // namespace

std::int64_t char_count(std::string_view s) {
  if (s.empty()) return 0;
  std::int64_t n = 1;
  for (std::size_t i = 1; i < s.size(); ++i) n += is_cont(s[i]) ? 0 : 1;
  return n;
}

std::string_view left_chars(std::string_view s, std::int64_t n) { return s.substr(0, offset_of_char(s, n)); }

std::string_view right_chars(std::string_view s, std::int64_t n) {
  if (n <= 0) return s.substr(s.size());
  std::int64_t count = 0;
  for (std::size_t i = s.size(); i > 0; --i) {
    if ((i - 1 == 0 || !is_cont(s[i - 1])) && ++count == n) return s.substr(i - 1);
  }
  return s;
}

std::string_view mid_chars(std::string_view s, std::int64_t start, std::optional<std::int64_t> length) {
  std::string_view rest = s.substr(offset_of_char(s, start - 1));
  return length ? left_chars(rest, *length) : rest;
}

std::int64_t instr_chars(std::int64_t start, std::string_view s, std::string_view find, bool binary) {
  if (s.empty()) return 0;
  if (find.empty()) return start <= char_count(s) ? start : 0;
  std::size_t from = offset_of_char(s, start - 1);
  if (from >= s.size()) return 0;
  if (binary) {
    std::size_t at = s.find(find, from);
    return at == std::string_view::npos ? 0 : char_count(s.substr(0, at)) + 1;
  }
  if (is_ascii(s) && is_ascii(find)) {
    const char f0 = lower_ascii(find[0]);
    for (std::size_t i = from; i + find.size() <= s.size(); ++i) {
      if (lower_ascii(s[i]) != f0) continue;
      std::size_t k = 1;
      while (k < find.size() && lower_ascii(s[i + k]) == lower_ascii(find[k])) ++k;
      if (k == find.size()) return static_cast<std::int64_t>(i) + 1;
    }
    return 0;
  }
  thread_local std::vector<char32_t> hay;
  thread_local std::vector<char32_t> needle;
  fold_into(s, hay);
  fold_into(find, needle);
  for (std::size_t i = static_cast<std::size_t>(start - 1); i + needle.size() <= hay.size(); ++i) {
    std::size_t k = 0;
    while (k < needle.size() && hay[i + k] == needle[k]) ++k;
    if (k == needle.size()) return static_cast<std::int64_t>(i) + 1;
  }
  return 0;
}

std::size_t find_text(std::string_view s, std::string_view find, std::size_t from) {
  if (find.empty() || from >= s.size()) return std::string_view::npos;
  if (is_ascii(find)) {
    const char f0 = lower_ascii(find[0]);
    for (std::size_t i = from; i + find.size() <= s.size(); ++i) {
      if (lower_ascii(s[i]) != f0) continue;
      std::size_t k = 1;
      while (k < find.size() && lower_ascii(s[i + k]) == lower_ascii(find[k])) ++k;
      if (k == find.size()) return i;
    }
    return std::string_view::npos;
  }
  for (std::size_t i = from; i < s.size(); ++i) {
    if (i > 0 && is_cont(s[i])) continue;
    std::size_t a = i, b = 0;
    bool same = true;
    while (same && b < find.size()) {
      same = a < s.size() && to_lower(decode(s, a)) == to_lower(decode(find, b));
    }
    if (same) return i;
  }
  return std::string_view::npos;
}

void append_reversed(std::string& out, std::string_view s) {
  std::size_t end = s.size();
  for (std::size_t i = s.size(); i > 0; --i) {
    if (i - 1 == 0 || !is_cont(s[i - 1])) {
      out.append(s.substr(i - 1, end - (i - 1)));
      end = i - 1;
    }
  }
}

void append_code_point(std::string& out, char32_t cp) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = 0xFFFD;
  encode(out, cp);
}

char32_t first_code_point(std::string_view s) {
  std::size_t i = 0;
  char32_t cp = decode(s, i);
  return cp > 0x10FFFF ? static_cast<unsigned char>(s[0]) : cp;
}

std::string_view trim_view(std::string_view s, bool leading, bool trailing) {
  if (leading)
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  if (trailing)
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

void append_upper(std::string& out, std::string_view s) { append_case(out, s, true); }
void append_lower(std::string& out, std::string_view s) { append_case(out, s, false); }

namespace {

bool run_like(const LikeProgram& prog, std::string_view s) {
  thread_local std::vector<char32_t> text;
  fold_into(s, text);
  const auto& t = text;
  const auto& e = prog.elems;
  // Greedy match with one backtrack point: every element but * takes
  // exactly one character, so retrying from the last * is enough.
  std::size_t ti = 0, ei = 0;
  std::size_t star = SIZE_MAX, star_t = 0;
  while (ti < t.size()) {
    if (ei < e.size() && e[ei].kind == LikeKind::kStar) {
      star = ei++;
      star_t = ti;
    } else if (ei < e.size() && elem_matches(prog, e[ei], t[ti])) {
      ++ei;
      ++ti;
    } else if (star != SIZE_MAX) {
      ei = star + 1;
      ti = ++star_t;
    } else {
      return false;
    }
  }
  while (ei < e.size() && e[ei].kind == LikeKind::kStar) ++ei;
  return ei == e.size();
}

}  // namespace

bool like_match(std::string_view s, std::string_view pattern) {
  thread_local LikeProgram prog;
  compile_like(pattern, prog);
  return run_like(prog, s);
}

LikePattern::LikePattern(std::string_view pattern) : program_(std::make_unique<LikeProgram>()) {
  compile_like(pattern, *program_);
}

LikePattern::~LikePattern() = default;

bool LikePattern::matches(std::string_view s) const { return run_like(*program_, s); }

}  // namespace db::jet
