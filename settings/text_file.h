// settings/text_file.h — reading and writing whole text files, and splitting
// and joining their lines.
//
// Every text file the program reads (ConfIMP.ini, format files, statement
// files, interchange files) goes through ReadFile/ReadText, which decode the
// file's encoding to UTF-8. Writing is atomic: the new text goes to a temporary
// file in the same folder, flushed to disk, which then replaces the old file by
// a rename whose folder entry is flushed too, so neither a crash nor a power
// cut leaves a half-written format file behind.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "settings/encoding.h"

namespace settings {

// A file read whole.
struct FileText {
  bool exists = false;       // the file was there and could be opened
  std::string text;          // UTF-8, without byte-order mark
  TextEncoding encoding = TextEncoding::Utf8;
  std::string line_ending = "\r\n";  // the first line ending in the file; CR LF when none
  std::string error;         // Spanish reason when the file exists but is not readable text
  bool ok() const { return exists && error.empty(); }
};

// Reads and decodes a file (see encoding.h for how the encoding is chosen). A
// missing file gives exists false and no error; a file that cannot be read or
// is not text gives `error` ("No se pudo leer el archivo <path>: <reason>").
FileText ReadFile(const std::filesystem::path& path);

// The whole text of a file, UTF-8 inside. A missing or unreadable file gives
// an empty text, silently; callers that must tell the user why use ReadFile.
std::string ReadText(const std::filesystem::path& path);

// Splits a text into lines at CR LF, LF or CR alike. "" gives no lines; a text
// that ends with a line break gives no empty last line.
std::vector<std::string> SplitLines(std::string_view text);

// Joins values with a separator between them ("a", "b" with "\r\n": "a\r\nb").
std::string JoinLines(const std::vector<std::string>& values, std::string_view separator);

// Writes raw bytes to `path` atomically (temporary file in the same folder,
// fsync, then rename over the target and fsync the folder). Returns false and sets `error` (Spanish) when
// it fails; the old file is then untouched.
bool WriteBytesAtomic(const std::filesystem::path& path, std::string_view bytes, std::string* error);

// The first line of a file (without its line break), decoded as ReadText
// would decode the whole file, reading only as far as the first line break
// (at most `limit` bytes). Files with a UTF-16 byte-order mark are read whole.
// A missing or unreadable file gives "".
std::string ReadFirstLine(const std::filesystem::path& path, std::size_t limit = 1 << 20);

// Number of lines of a text: each LF, CR LF or lone CR ends a line, and a
// last line without a break counts too ("" has none).
long long CountLines(std::string_view text);

// Number of lines of a file, counted on its bytes without decoding (LF, CR LF
// and lone CR each end a line; a last line without a break counts). A missing
// file counts 0.
long long CountFileLines(const std::filesystem::path& path);

}  // namespace settings
