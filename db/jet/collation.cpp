// db/jet/collation.cpp — Jet's Spanish case-insensitive text order.
//
// Each character has a primary weight (its letter, case and accent dropped)
// and an accent mark. Texts compare by their primary weights; only when those
// are all equal does the first differing accent decide. Letter case never
// decides, so texts differing only in case are equal, as Jet treats them.
#include "db/jet/collation.h"

#include <array>
#include <cstdint>

namespace db::jet {
namespace {

// Weights: ASCII characters weigh twice their lower-case code, so that ñ
// (between n and o) fits in between; other characters weigh above all ASCII.
constexpr std::uint32_t kAboveAscii = 2 * 128;
constexpr std::uint32_t Letter(char lower) { return 2u * static_cast<unsigned char>(lower); }
constexpr std::uint32_t kEnie = 2u * 'n' + 1;

struct Weight {
  std::uint32_t primary;
  std::uint8_t accent;  // 0 none, then grave, acute, circumflex, tilde, diaeresis, ring, cedilla, stroke
};

constexpr std::array<std::uint32_t, 128> MakeAsciiWeights() {
  std::array<std::uint32_t, 128> w{};
  for (unsigned c = 0; c < 128; ++c) {
    unsigned lower = (c >= 'A' && c <= 'Z') ? c + 32 : c;
    w[c] = 2 * lower;
  }
  return w;
}
constexpr std::array<std::uint32_t, 128> kAscii = MakeAsciiWeights();

// Latin-1 letters U+00C0..U+00FF (upper and lower case share an entry: the
// lower-case letter is the upper-case one plus 0x20, except ß, ÿ, × and ÷).
Weight Latin1(std::uint32_t cp) {
  if (cp == 0xD7 || cp == 0xF7 || cp == 0xDF) {
    if (cp == 0xDF) return {Letter('s'), 9};
    return {kAboveAscii + cp, 0};
  }
  if (cp == 0xFF) return {Letter('y'), 5};
  std::uint32_t upper = cp >= 0xE0 ? cp - 0x20 : cp;
  switch (upper) {
    case 0xC0: return {Letter('a'), 1};
    case 0xC1: return {Letter('a'), 2};
    case 0xC2: return {Letter('a'), 3};
    case 0xC3: return {Letter('a'), 4};
    case 0xC4: return {Letter('a'), 5};
    case 0xC5: return {Letter('a'), 6};
    case 0xC7: return {Letter('c'), 7};
    case 0xC8: return {Letter('e'), 1};
    case 0xC9: return {Letter('e'), 2};
    case 0xCA: return {Letter('e'), 3};
    case 0xCB: return {Letter('e'), 5};
    case 0xCC: return {Letter('i'), 1};
    case 0xCD: return {Letter('i'), 2};
    case 0xCE: return {Letter('i'), 3};
    case 0xCF: return {Letter('i'), 5};
    case 0xD1: return {kEnie, 0};
    case 0xD2: return {Letter('o'), 1};
    case 0xD3: return {Letter('o'), 2};
    case 0xD4: return {Letter('o'), 3};
    case 0xD5: return {Letter('o'), 4};
    case 0xD6: return {Letter('o'), 5};
    case 0xD8: return {Letter('o'), 8};
    case 0xD9: return {Letter('u'), 1};
    case 0xDA: return {Letter('u'), 2};
    case 0xDB: return {Letter('u'), 3};
    case 0xDC: return {Letter('u'), 5};
    case 0xDD: return {Letter('y'), 2};
    default: return {kAboveAscii + upper, 0};  // Æ Ð Þ: by their upper-case code
  }
}

// Reads the character at `at` of `s` (at < s.size()) and advances `at`.
std::uint32_t NextCodePoint(std::string_view s, std::size_t& at) {
  auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
  unsigned char lead = byte(at);
  int extra = lead >= 0xF5 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
  if (extra == 0 || at + extra >= s.size()) {
    ++at;
    return lead;
  }
  std::uint32_t cp = lead & (0x3F >> extra);
  for (int k = 1; k <= extra; ++k) {
    unsigned char next = byte(at + k);
    if ((next & 0xC0) != 0x80) {
      ++at;
      return lead;  // not UTF-8: the byte alone
    }
    cp = (cp << 6) | (next & 0x3F);
  }
  at += static_cast<std::size_t>(extra) + 1;
  return cp;
}

Weight WeightOf(std::uint32_t cp) {
  if (cp < 128) return {kAscii[cp], 0};
  if (cp >= 0xC0 && cp <= 0xFF) return Latin1(cp);
  return {kAboveAscii + cp, 0};
}

}  // namespace

int compare_text(std::string_view a, std::string_view b) {
  std::size_t i = 0, j = 0;
  int accents = 0;  // the first accent difference, when the letters tie
  while (i < a.size() && j < b.size()) {
    unsigned char x = static_cast<unsigned char>(a[i]);
    unsigned char y = static_cast<unsigned char>(b[j]);
    if ((x | y) < 128) {  // both ASCII: the common case
      ++i;
      ++j;
      if (x == y) continue;
      std::uint32_t wx = kAscii[x], wy = kAscii[y];
      if (wx != wy) return wx < wy ? -1 : 1;
      continue;
    }
    Weight wx = WeightOf(NextCodePoint(a, i));
    Weight wy = WeightOf(NextCodePoint(b, j));
    if (wx.primary != wy.primary) return wx.primary < wy.primary ? -1 : 1;
    if (accents == 0 && wx.accent != wy.accent) accents = wx.accent < wy.accent ? -1 : 1;
  }
  if (i < a.size()) return 1;
  if (j < b.size()) return -1;
  return accents;
}

}  // namespace db::jet
