// staging/interchange_decode.h — turning the bytes of an interchange data file
// into UTF-8 text before it is parsed.
//
// Data files come from other systems: UTF-8 with or without byte-order mark,
// Windows-1252 ("ANSI" of Spanish Windows), now and then UTF-16 from Notepad.
// The layout may force an encoding; otherwise it is detected:
//   - a file that is valid UTF-8 is UTF-8;
//   - a file that holds valid multi-byte UTF-8 sequences and a few bytes that
//     are not UTF-8 is UTF-8 written by a program that let some Windows-1252
//     through: it is read as UTF-8 with each stray byte read as Windows-1252,
//     and the user is told the file and the first line where it happened;
//   - only a file with no valid multi-byte UTF-8 sequence at all is
//     Windows-1252.
// Files of hundreds of megabytes are never held whole: EncodingScanner looks
// at the bytes once, block by block, to choose; ChunkDecoder then turns each
// block into UTF-8 as the file is read.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "settings/encoding.h"

namespace staging {

// How the bytes of a file become UTF-8.
enum class ByteDecoding {
  Utf8,          // already UTF-8: copied as they are
  Utf8Mixed,     // UTF-8 with stray bytes, each read as Windows-1252
  Windows1252,   // every byte is a Windows-1252 character
};

// Looks at a file's bytes, fed in blocks of any size, and remembers what the
// encoding choice needs.
class EncodingScanner {
 public:
  void feed(std::string_view block);
  // Call once after the last block: a sequence cut by the end is a stray byte.
  void finish();

  bool has_nul() const { return nul_; }
  bool has_valid_multibyte() const { return multibyte_; }
  // Line (from 1) of the first byte that is not UTF-8; 0 when there is none.
  std::size_t first_bad_line() const { return first_bad_line_; }

 private:
  void scan(std::string_view bytes, bool last);

  std::string carry_;  // an incomplete sequence at the end of the last block
  std::size_t line_ = 1;
  std::size_t first_bad_line_ = 0;
  bool multibyte_ = false;
  bool nul_ = false;
};

// Chooses how a file whose bytes `scan` looked at is read. `forced` is the
// layout's encoding (nullopt: detect); `bom` says the file starts with the
// UTF-8 byte-order mark. Returns nullopt with a Spanish `error` when UTF-8 was
// declared and the file is not UTF-8 (naming its first bad line); sets
// `warning` when stray bytes are read as Windows-1252.
std::optional<ByteDecoding> ChooseDecoding(const EncodingScanner& scan, bool bom,
                                           const std::optional<settings::TextEncoding>& forced,
                                           const std::string& file_name, std::string* error,
                                           std::string* warning);

// Turns blocks of bytes into UTF-8 for one way of decoding, keeping a
// sequence cut by the end of a block for the next one.
class ChunkDecoder {
 public:
  explicit ChunkDecoder(ByteDecoding decoding) : decoding_(decoding) {}
  // Appends the UTF-8 text of `block` to `out`; `last` for the file's end.
  void decode(std::string_view block, bool last, std::string& out);

 private:
  ByteDecoding decoding_;
  std::string carry_;
};

// Decodes `bytes` (a whole file) into UTF-8 in place, with the rules above.
// `file_name` is only used in messages. Returns false with a Spanish `error`
// when the file is not text (NUL bytes, broken UTF-16) or, with UTF-8 forced,
// when its bytes are not UTF-8. `found` receives the encoding used (a file
// with stray bytes counts as UTF-8); `warning` the message about stray bytes.
bool DecodeDataFile(std::string& bytes, const std::optional<settings::TextEncoding>& forced,
                    const std::string& file_name, settings::TextEncoding* found, std::string* error,
                    std::string* warning = nullptr);

}  // namespace staging
