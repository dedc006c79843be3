// settings/encoding.h — the text encodings of the files beside the program and
// of interchange files.
//
// Files written on Windows come as UTF-8 (with or without a byte-order mark),
// as Windows-1252 (the usual "ANSI" of Spanish Windows) or, from Notepad's
// "Unicode", as UTF-16 with a byte-order mark. Inside the program every text is
// UTF-8. Decoding Windows-1252 maps all 256 bytes (the five bytes Windows
// leaves undefined become the control characters of the same number), so a
// file read as Windows-1252 and written back is byte for byte the same.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace settings {

enum class TextEncoding {
  Utf8,         // UTF-8 without byte-order mark
  Utf8Bom,      // UTF-8 with byte-order mark
  Windows1252,  // bytes that are not valid UTF-8
  Utf16Le,      // with byte-order mark
  Utf16Be,      // with byte-order mark
};

// Name shown in messages ("UTF-8", "Windows-1252" ...).
const char* EncodingName(TextEncoding e);

// True when the bytes are well-formed UTF-8.
bool IsValidUtf8(std::string_view bytes);

// Decodes the bytes of a file, choosing the encoding: a UTF-16 or UTF-8
// byte-order mark decides; otherwise valid UTF-8 is UTF-8 and anything else is
// Windows-1252. Returns the UTF-8 text without the byte-order mark.
// Fails (nullopt, `error` set in Spanish) for bytes that are not text: a NUL
// byte outside UTF-16, or malformed UTF-16.
std::optional<std::string> DecodeAuto(std::string_view bytes, TextEncoding* found,
                                      std::string* error);

// Decodes with a declared encoding. Utf8 accepts an optional byte-order mark
// and fails on malformed bytes; Windows1252 never fails except on NUL bytes.
std::optional<std::string> DecodeAs(std::string_view bytes, TextEncoding e, std::string* error);

// Encodes UTF-8 text. Fails (nullopt) only for Windows-1252 when a character
// has no Windows-1252 byte.
std::optional<std::string> Encode(std::string_view utf8, TextEncoding e);

// Windows-1252 bytes as UTF-8 (every byte maps to one character).
std::string Windows1252ToUtf8(std::string_view bytes);

}  // namespace settings
