// settings/key_file.h — the keys of a format file.
//
// On-disk syntax (formats/README.md tells format authors the same):
//   * A key line starts, at its first character, with a key name (a letter
//     followed by letters, digits or "_") and "=". Key names are compared
//     without regard to case. Text before the first key line is a free comment.
//   * The value is the rest of the key line followed by every next line up to
//     the next key line. When the key line holds nothing after "=", the value
//     starts on the next line. Empty lines at the end of a value are not part of
//     it (so keys may be separated by blank lines). Lines are joined with CR LF.
//   * A value line that would look like a key line ("Tabla=x") is written with
//     one "\" in front; reading removes one "\" from any line that is one or
//     more "\" followed by key-like text. Other lines, such as "\\server\x",
//     are read as they stand.
//   * When a key appears twice, the first one counts (and is the one written).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace settings {

// True for a line that starts a key ("Name=..."); `name` receives the key name
// and `rest` the text after "=".
bool IsKeyLine(std::string_view line, std::string* name = nullptr, std::string* rest = nullptr);

// The value of `key` in the text of a format file, lines joined with CR LF;
// "" when the key is absent.
std::string KeyValue(std::string_view text, std::string_view key);

// The text with `key` set to `value` (CR LF, LF or CR separated lines): the
// key's old lines are replaced in place, or the key is added at the end when
// absent; every other line stays as it was. Lines are joined with
// `line_ending`.
std::string SetKeyInText(std::string_view text, std::string_view key, std::string_view value,
                         std::string_view line_ending);

// Stores `value` under `key` in the file at `path`: only that key changes, the
// file keeps its line ending and its encoding, and is replaced atomically. A
// missing file is created (UTF-8, CR LF). A Windows-1252 file that would have
// to hold a character Windows-1252 cannot write is saved as UTF-8 with a
// byte-order mark instead, so that nothing is lost (the program reads both).
// Returns false with a Spanish `error` when the file cannot be read as text or
// cannot be written; the file is then left untouched.
bool WriteKey(const std::filesystem::path& path, std::string_view key, std::string_view value,
              std::string* error = nullptr);

}  // namespace settings
