// staging/interchange_decode.cpp — detection and block-wise decoding of data
// files.
#include "staging/interchange_decode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace staging {

namespace {

constexpr char kUtf8Bom[] = "\xEF\xBB\xBF";

bool StartsWith(std::string_view s, const char* prefix, std::size_t n) {
  return s.size() >= n && std::memcmp(s.data(), prefix, n) == 0;
}

// The UTF-8 sequence at `p` (`avail` bytes readable, p[0] >= 0x80): its
// length when valid, 0 when the bytes so far are a valid start but the
// sequence goes past `avail`, -1 when p[0] is a stray byte.
int SequenceAt(const unsigned char* p, std::size_t avail) {
  const unsigned char c = p[0];
  int extra;
  if (c >= 0xC2 && c <= 0xDF) extra = 1;
  else if (c >= 0xE0 && c <= 0xEF) extra = 2;
  else if (c >= 0xF0 && c <= 0xF4) extra = 3;
  else return -1;
  for (int k = 1; k <= extra; ++k) {
    if (static_cast<std::size_t>(k) >= avail) return 0;
    const unsigned char d = p[k];
    if ((d & 0xC0) != 0x80) return -1;
    // Second-byte limits rule out overlong forms, surrogates and code points
    // past U+10FFFF.
    if (k == 1) {
      if (c == 0xE0 && d < 0xA0) return -1;
      if (c == 0xED && d > 0x9F) return -1;
      if (c == 0xF0 && d < 0x90) return -1;
      if (c == 0xF4 && d > 0x8F) return -1;
    }
  }
  return extra + 1;
}

// Offset of the first byte >= 0x80 or NUL from `i`, looking at 8 bytes at a time.
std::size_t SkipPlainAscii(const unsigned char* p, std::size_t i, std::size_t n) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  while (i + 8 <= n) {
    std::uint64_t w;
    std::memcpy(&w, p + i, 8);
    // A high bit, or a zero byte (NUL), stops the fast path.
    if ((w & kHigh) || ((w - kOnes) & ~w & kHigh)) break;
    i += 8;
  }
  return i;
}

std::size_t CountLines(const unsigned char* p, std::size_t from, std::size_t to) {
  std::size_t n = 0;
  const unsigned char* at = p + from;
  const unsigned char* end = p + to;
  while (at < end) {
    const void* q = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (!q) break;
    ++n;
    at = static_cast<const unsigned char*>(q) + 1;
  }
  return n;
}

}  // namespace

void EncodingScanner::feed(std::string_view block) {
  if (!carry_.empty()) {
    // The sequence cut by the last block, completed with this block's first
    // bytes (carried bytes are never line breaks).
    const std::size_t carried = carry_.size();
    const std::string head = carry_ + std::string(block.substr(0, std::min<std::size_t>(block.size(), 4)));
    carry_.clear();
    const auto* p = reinterpret_cast<const unsigned char*>(head.data());
    std::size_t pos = 0;
    while (pos < carried) {
      int len = SequenceAt(p + pos, head.size() - pos);
      if (len == 0) {  // the block was too short to complete it
        carry_ = head.substr(pos);
        return;
      }
      if (len > 0) {
        multibyte_ = true;
        pos += static_cast<std::size_t>(len);
      } else {
        if (!first_bad_line_) first_bad_line_ = line_;
        ++pos;
      }
    }
    block.remove_prefix(pos - carried);
  }
  scan(block, false);
}

void EncodingScanner::finish() {
  if (carry_.empty()) return;
  std::string rest = carry_;
  carry_.clear();
  scan(rest, true);
}

void EncodingScanner::scan(std::string_view bytes, bool last) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t n = bytes.size();
  std::size_t i = 0;
  std::size_t counted = 0;  // lines are counted only up to the first bad byte
  while (i < n) {
    i = SkipPlainAscii(p, i, n);
    if (i >= n) break;
    const unsigned char c = p[i];
    if (c < 0x80) {
      if (c == 0) nul_ = true;
      ++i;
      continue;
    }
    int len = SequenceAt(p + i, n - i);
    if (len == 0 && !last) {
      carry_.assign(bytes.substr(i));
      break;
    }
    if (len > 0) {
      multibyte_ = true;
      i += static_cast<std::size_t>(len);
      continue;
    }
    if (!first_bad_line_) {
      line_ += CountLines(p, counted, i);
      counted = i;
      first_bad_line_ = line_;
    }
    ++i;
  }
  if (!first_bad_line_) line_ += CountLines(p, counted, carry_.empty() ? n : n - carry_.size());
}

std::optional<ByteDecoding> ChooseDecoding(const EncodingScanner& scan, bool bom,
                                           const std::optional<settings::TextEncoding>& forced,
                                           const std::string& file_name, std::string* error,
                                           std::string* warning) {
  using settings::TextEncoding;
  if (forced == TextEncoding::Windows1252) return ByteDecoding::Windows1252;
  if (!scan.first_bad_line()) return ByteDecoding::Utf8;
  if (forced) {  // UTF-8 declared, and it is not
    if (error) {
      *error = "El archivo " + file_name + " no está escrito en UTF-8 (carácter inválido en la línea " +
               std::to_string(scan.first_bad_line()) +
               "). Guárdelo como UTF-8 o indique Codificacion=windows-1252 en el formato";
    }
    return std::nullopt;
  }
  // The byte-order mark is itself a multi-byte sequence: the file says UTF-8.
  if (!scan.has_valid_multibyte() && !bom) return ByteDecoding::Windows1252;
  if (warning) {
    *warning = "El archivo " + file_name + " está en UTF-8 pero trae caracteres que no lo son (el primero en la línea " +
               std::to_string(scan.first_bad_line()) + "); se leen como Windows-1252";
  }
  return ByteDecoding::Utf8Mixed;
}

void ChunkDecoder::decode(std::string_view block, bool last, std::string& out) {
  switch (decoding_) {
    case ByteDecoding::Utf8:
      out.append(block);
      return;
    case ByteDecoding::Windows1252:
      out += settings::Windows1252ToUtf8(block);
      return;
    case ByteDecoding::Utf8Mixed:
      break;
  }
  std::string joined;
  if (!carry_.empty()) {
    joined = carry_ + std::string(block);
    carry_.clear();
    block = joined;
  }
  const auto* p = reinterpret_cast<const unsigned char*>(block.data());
  const std::size_t n = block.size();
  std::size_t i = 0, plain = 0;  // [plain, i) is copied as it stands
  while (i < n) {
    i = SkipPlainAscii(p, i, n);
    if (i >= n) break;
    if (p[i] < 0x80) {
      ++i;
      continue;
    }
    int len = SequenceAt(p + i, n - i);
    if (len == 0 && !last) {
      out.append(block.substr(plain, i - plain));
      carry_.assign(block.substr(i));
      return;
    }
    if (len > 0) {
      i += static_cast<std::size_t>(len);
      continue;
    }
    out.append(block.substr(plain, i - plain));
    out += settings::Windows1252ToUtf8(block.substr(i, 1));
    plain = ++i;
  }
  out.append(block.substr(plain, n - plain));
}

bool DecodeDataFile(std::string& bytes, const std::optional<settings::TextEncoding>& forced,
                    const std::string& file_name, settings::TextEncoding* found, std::string* error,
                    std::string* warning) {
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
  EncodingScanner scan;
  scan.feed(bytes);
  scan.finish();
  if (scan.has_nul()) {
    if (error) {
      *error = "El archivo " + file_name +
               " no es un archivo de texto (contiene bytes nulos); exporte los datos como texto "
               "delimitado";
    }
    return false;
  }
  const bool bom = StartsWith(bytes, kUtf8Bom, 3);
  auto decoding = ChooseDecoding(scan, bom, forced, file_name, error, warning);
  if (!decoding) return false;
  if (*decoding == ByteDecoding::Windows1252) {
    bytes = settings::Windows1252ToUtf8(bytes);
    set_found(TextEncoding::Windows1252);
    return true;
  }
  if (bom) bytes.erase(0, 3);
  set_found(bom ? TextEncoding::Utf8Bom : TextEncoding::Utf8);
  if (*decoding == ByteDecoding::Utf8Mixed) {
    std::string out;
    out.reserve(bytes.size() + 16);
    ChunkDecoder(ByteDecoding::Utf8Mixed).decode(bytes, true, out);
    bytes = std::move(out);
  }
  return true;
}

}  // namespace staging
