// settings/strings.cpp — text helpers (see strings.h).
#include "settings/strings.h"

namespace settings {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

}  // namespace

std::string Trim(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return std::string(s.substr(b, e - b));
}

std::string UpperAscii(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

std::string FoldCase(std::string_view s) {
  std::string out(s);
  for (std::size_t i = 0; i < out.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(out[i]);
    if (c >= 'A' && c <= 'Z') {
      out[i] = static_cast<char>(c - 'A' + 'a');
    } else if (c == 0xC3 && i + 1 < out.size()) {
      // Latin-1 capitals U+00C0..U+00DE (but not U+00D7, the multiplication
      // sign) are C3 80..C3 9E; their small letters are 0x20 further on.
      unsigned char d = static_cast<unsigned char>(out[i + 1]);
      if (d >= 0x80 && d <= 0x9E && d != 0x97) out[i + 1] = static_cast<char>(d + 0x20);
      ++i;
    }
  }
  return out;
}

bool IEquals(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  return a.size() == b.size() && FoldCase(a) == FoldCase(b);
}

bool IStartsWith(std::string_view s, std::string_view prefix) {
  return s.size() >= prefix.size() && IEquals(s.substr(0, prefix.size()), prefix);
}

namespace {

// The folded byte of hay[i], as FoldCase would give it (the Latin-1 fold
// depends on the byte before).
inline char FoldedAt(std::string_view hay, std::size_t i) {
  unsigned char c = static_cast<unsigned char>(hay[i]);
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  if (c >= 0x80 && c <= 0x9E && c != 0x97 && i > 0 && static_cast<unsigned char>(hay[i - 1]) == 0xC3)
    return static_cast<char>(c + 0x20);
  return static_cast<char>(c);
}

}  // namespace

std::size_t IFind(std::string_view hay, std::string_view needle, std::size_t from) {
  if (from > hay.size()) return std::string_view::npos;
  if (needle.empty()) return from;
  // Folds as it goes instead of copying the haystack, which may be a whole
  // interchange file.
  const std::string key = FoldCase(needle);
  const char first = key[0];
  const char first_upper = (first >= 'a' && first <= 'z') ? static_cast<char>(first - 'a' + 'A') : first;
  for (std::size_t i = from; i + key.size() <= hay.size(); ++i) {
    if (hay[i] != first && hay[i] != first_upper && FoldedAt(hay, i) != first) continue;
    std::size_t k = 1;
    while (k < key.size() && FoldedAt(hay, i + k) == key[k]) ++k;
    if (k == key.size()) return i;
  }
  return std::string_view::npos;
}

std::string IReplaceAll(std::string_view text, std::string_view find, std::string_view with) {
  if (find.empty()) return std::string(text);
  const std::string folded = FoldCase(text);
  const std::string key = FoldCase(find);
  std::string out;
  out.reserve(text.size());
  std::size_t pos = 0;
  for (;;) {
    std::size_t hit = folded.find(key, pos);
    if (hit == std::string::npos) break;
    out.append(text.substr(pos, hit - pos));
    out.append(with);
    pos = hit + key.size();
  }
  out.append(text.substr(pos));
  return out;
}

std::vector<std::string> SplitChar(std::string_view s, char sep) {
  std::vector<std::string> out;
  std::size_t start = 0;
  for (;;) {
    std::size_t p = s.find(sep, start);
    if (p == std::string_view::npos) {
      out.emplace_back(s.substr(start));
      return out;
    }
    out.emplace_back(s.substr(start, p - start));
    start = p + 1;
  }
}

bool WildcardMatch(std::string_view name, std::string_view pattern, bool ignore_case) {
  const std::string n = ignore_case ? FoldCase(name) : std::string(name);
  const std::string p = ignore_case ? FoldCase(pattern) : std::string(pattern);
  // Iterative match with one backtrack point for the last "*".
  std::size_t ni = 0, pi = 0, star = std::string::npos, mark = 0;
  auto next_char = [&](std::size_t i) {
    ++i;
    while (i < n.size() && IsContinuation(static_cast<unsigned char>(n[i]))) ++i;
    return i;
  };
  while (ni < n.size()) {
    if (pi < p.size() && p[pi] == '*') {
      star = pi++;
      mark = ni;
    } else if (pi < p.size() && p[pi] == '?') {
      ++pi;
      ni = next_char(ni);
    } else if (pi < p.size() && p[pi] == n[ni]) {
      ++pi;
      ++ni;
    } else if (star != std::string::npos) {
      pi = star + 1;
      mark = next_char(mark);
      ni = mark;
    } else {
      return false;
    }
  }
  while (pi < p.size() && p[pi] == '*') ++pi;
  return pi == p.size();
}

}  // namespace settings
