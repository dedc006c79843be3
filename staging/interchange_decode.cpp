// staging/interchange_decode.cpp — detection and in-place decoding of data files.
#include "staging/interchange_decode.h"

#include <algorithm>
#include <cstring>

namespace staging {

namespace {

constexpr char kUtf8Bom[] = "\xEF\xBB\xBF";

bool StartsWith(const std::string& s, const char* prefix, std::size_t n) {
  return s.size() >= n && std::memcmp(s.data(), prefix, n) == 0;
}

// Offset of the first byte that breaks UTF-8, or npos when all are good.
std::size_t FirstBadUtf8(const std::string& s) {
  std::size_t i = 0;
  while (i < s.size()) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      ++i;
      continue;
    }
    int extra;
    char32_t min;
    if (c >= 0xC2 && c <= 0xDF) {
      extra = 1;
      min = 0x80;
    } else if (c >= 0xE0 && c <= 0xEF) {
      extra = 2;
      min = 0x800;
    } else if (c >= 0xF0 && c <= 0xF4) {
      extra = 3;
      min = 0x10000;
    } else {
      return i;
    }
    if (i + static_cast<std::size_t>(extra) >= s.size()) return i;
    char32_t cp = c & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
      unsigned char d = static_cast<unsigned char>(s[i + k]);
      if ((d & 0xC0) != 0x80) return i;
      cp = (cp << 6) | (d & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return i;
    i += static_cast<std::size_t>(extra) + 1;
  }
  return std::string::npos;
}

std::size_t LineOf(const std::string& s, std::size_t offset) {
  return 1 + static_cast<std::size_t>(std::count(s.begin(), s.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

}  // namespace

bool DecodeDataFile(std::string& bytes, const std::optional<settings::TextEncoding>& forced,
                    const std::string& file_name, settings::TextEncoding* found, std::string* error) {
  using settings::TextEncoding;
  auto set_found = [&](TextEncoding e) {
    if (found) *found = e;
  };
  bool utf16_bom = StartsWith(bytes, "\xFF\xFE", 2) || StartsWith(bytes, "\xFE\xFF", 2);
  if (utf16_bom) {
    // Rare and small (Notepad exports): the settings decoder handles it.
    std::string why;
    TextEncoding e = TextEncoding::Utf16Le;
    auto text = settings::DecodeAuto(bytes, &e, &why);
    if (!text) {
      if (error) *error = "El archivo " + file_name + " no es un archivo de texto: " + why;
      return false;
    }
    bytes = std::move(*text);
    set_found(e);
    return true;
  }
  if (std::memchr(bytes.data(), '\0', bytes.size()) != nullptr) {
    if (error) {
      *error = "El archivo " + file_name +
               " no es un archivo de texto (contiene bytes nulos); exporte los datos como texto "
               "delimitado";
    }
    return false;
  }
  bool bom = StartsWith(bytes, kUtf8Bom, 3);
  if (forced == TextEncoding::Windows1252) {
    bytes = settings::Windows1252ToUtf8(bytes);
    set_found(TextEncoding::Windows1252);
    return true;
  }
  if (bom) bytes.erase(0, 3);
  std::size_t bad = FirstBadUtf8(bytes);
  if (bad == std::string::npos) {
    set_found(bom ? TextEncoding::Utf8Bom : TextEncoding::Utf8);
    return true;
  }
  if (forced) {  // UTF-8 declared, and it is not
    if (error) {
      *error = "El archivo " + file_name + " no está escrito en UTF-8 (carácter inválido en la línea " +
               std::to_string(LineOf(bytes, bad)) +
               "). Guárdelo como UTF-8 o indique Codificacion=windows-1252 en el formato";
    }
    return false;
  }
  if (bom) bytes.insert(0, kUtf8Bom);  // not UTF-8 after all: the three bytes are data
  bytes = settings::Windows1252ToUtf8(bytes);
  set_found(TextEncoding::Windows1252);
  return true;
}

}  // namespace staging
