// settings/encoding.cpp — decoding and encoding of file texts (see encoding.h).
#include "settings/encoding.h"

#include <cstdint>
#include <cstring>

namespace settings {

namespace {

// Unicode code points of Windows-1252 bytes 0x80..0x9F; the undefined bytes
// map to the C1 control of the same number, as Windows itself does.
constexpr char32_t kHigh1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// Reads one code point of valid UTF-8 at `i`, advancing it.
char32_t NextCodePoint(std::string_view s, std::size_t& i) {
  unsigned char c = static_cast<unsigned char>(s[i++]);
  if (c < 0x80) return c;
  int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
  char32_t cp = c & (0x3F >> extra);
  for (int k = 0; k < extra && i < s.size(); ++k)
    cp = (cp << 6) | (static_cast<unsigned char>(s[i++]) & 0x3F);
  return cp;
}

bool HasBom8(std::string_view b) { return b.size() >= 3 && b.substr(0, 3) == "\xEF\xBB\xBF"; }

std::optional<std::string> DecodeUtf16(std::string_view b, bool little, std::string* error) {
  std::string out;
  out.reserve(b.size());
  auto unit = [&](std::size_t i) -> char32_t {
    unsigned char lo = static_cast<unsigned char>(b[little ? i : i + 1]);
    unsigned char hi = static_cast<unsigned char>(b[little ? i + 1 : i]);
    return static_cast<char32_t>(hi << 8 | lo);
  };
  if (b.size() % 2 != 0) {
    if (error) *error = "el archivo UTF-16 tiene un número impar de bytes";
    return std::nullopt;
  }
  for (std::size_t i = 2; i < b.size(); i += 2) {
    char32_t u = unit(i);
    if (u >= 0xD800 && u <= 0xDBFF) {
      if (i + 2 >= b.size() || unit(i + 2) < 0xDC00 || unit(i + 2) > 0xDFFF) {
        if (error) *error = "el archivo UTF-16 tiene caracteres mal formados";
        return std::nullopt;
      }
      u = 0x10000 + ((u - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
      i += 2;
    } else if (u >= 0xDC00 && u <= 0xDFFF) {
      if (error) *error = "el archivo UTF-16 tiene caracteres mal formados";
      return std::nullopt;
    }
    if (u == 0) {
      if (error) *error = "el archivo contiene caracteres nulos y no es un archivo de texto";
      return std::nullopt;
    }
    AppendUtf8(out, u);
  }
  return out;
}

bool CheckNoNul(std::string_view b, std::string* error) {
  if (b.find('\0') == std::string_view::npos) return true;
  if (error) *error = "el archivo contiene caracteres nulos y no es un archivo de texto";
  return false;
}

}  // namespace

const char* EncodingName(TextEncoding e) {
  switch (e) {
    case TextEncoding::Utf8: return "UTF-8";
    case TextEncoding::Utf8Bom: return "UTF-8 con BOM";
    case TextEncoding::Windows1252: return "Windows-1252";
    case TextEncoding::Utf16Le: return "UTF-16LE";
    case TextEncoding::Utf16Be: return "UTF-16BE";
  }
  return "?";
}

bool IsValidUtf8(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    // Runs of ASCII, the bulk of any data file, eight bytes at a time.
    while (i + 8 <= s.size()) {
      std::uint64_t word;
      std::memcpy(&word, s.data() + i, 8);
      if (word & 0x8080808080808080ULL) break;
      i += 8;
    }
    if (i >= s.size()) break;
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) { ++i; continue; }
    int extra;
    char32_t min;
    if (c >= 0xC2 && c <= 0xDF) { extra = 1; min = 0x80; }
    else if (c >= 0xE0 && c <= 0xEF) { extra = 2; min = 0x800; }
    else if (c >= 0xF0 && c <= 0xF4) { extra = 3; min = 0x10000; }
    else return false;
    if (i + extra >= s.size()) return false;
    char32_t cp = c & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
      unsigned char d = static_cast<unsigned char>(s[i + k]);
      if ((d & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (d & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
    i += extra + 1;
  }
  return true;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (char ch : bytes) {
    unsigned char c = static_cast<unsigned char>(ch);
    if (c < 0x80) out += ch;
    else if (c < 0xA0) AppendUtf8(out, kHigh1252[c - 0x80]);
    else AppendUtf8(out, c);
  }
  return out;
}

std::optional<std::string> DecodeAs(std::string_view b, TextEncoding e, std::string* error) {
  switch (e) {
    case TextEncoding::Utf8:
    case TextEncoding::Utf8Bom:
      if (HasBom8(b)) b.remove_prefix(3);
      if (!IsValidUtf8(b)) {
        if (error) *error = "el archivo no está escrito en UTF-8";
        return std::nullopt;
      }
      if (!CheckNoNul(b, error)) return std::nullopt;
      return std::string(b);
    case TextEncoding::Windows1252:
      if (!CheckNoNul(b, error)) return std::nullopt;
      return Windows1252ToUtf8(b);
    case TextEncoding::Utf16Le:
    case TextEncoding::Utf16Be: {
      bool little = e == TextEncoding::Utf16Le;
      std::string with_bom(little ? "\xFF\xFE" : "\xFE\xFF");
      bool has_bom = b.size() >= 2 && b.substr(0, 2) == with_bom;
      std::string data = has_bom ? std::string(b) : with_bom + std::string(b);
      return DecodeUtf16(data, little, error);
    }
  }
  return std::nullopt;
}

std::optional<std::string> DecodeAuto(std::string_view b, TextEncoding* found, std::string* error) {
  TextEncoding e;
  if (b.size() >= 2 && b.substr(0, 2) == "\xFF\xFE") e = TextEncoding::Utf16Le;
  else if (b.size() >= 2 && b.substr(0, 2) == "\xFE\xFF") e = TextEncoding::Utf16Be;
  else if (HasBom8(b)) e = TextEncoding::Utf8Bom;
  else if (IsValidUtf8(b)) e = TextEncoding::Utf8;
  else e = TextEncoding::Windows1252;
  if (found) *found = e;
  return DecodeAs(b, e, error);
}

std::optional<std::string> Encode(std::string_view utf8, TextEncoding e) {
  std::string out;
  std::size_t i = 0;
  switch (e) {
    case TextEncoding::Utf8: return std::string(utf8);
    case TextEncoding::Utf8Bom: return "\xEF\xBB\xBF" + std::string(utf8);
    case TextEncoding::Windows1252:
      out.reserve(utf8.size());
      while (i < utf8.size()) {
        char32_t cp = NextCodePoint(utf8, i);
        if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
          out += static_cast<char>(cp);
          continue;
        }
        int found = -1;
        for (int k = 0; k < 32; ++k)
          if (kHigh1252[k] == cp) found = k;
        if (found < 0) return std::nullopt;
        out += static_cast<char>(0x80 + found);
      }
      return out;
    case TextEncoding::Utf16Le:
    case TextEncoding::Utf16Be: {
      bool little = e == TextEncoding::Utf16Le;
      auto put = [&](char32_t u) {
        char lo = static_cast<char>(u & 0xFF), hi = static_cast<char>(u >> 8);
        if (little) { out += lo; out += hi; } else { out += hi; out += lo; }
      };
      put(0xFEFF);
      while (i < utf8.size()) {
        char32_t cp = NextCodePoint(utf8, i);
        if (cp >= 0x10000) {
          cp -= 0x10000;
          put(0xD800 + (cp >> 10));
          put(0xDC00 + (cp & 0x3FF));
        } else {
          put(cp);
        }
      }
      return out;
    }
  }
  return std::nullopt;
}

}  // namespace settings
