// settings/key_file.cpp — reading and writing format-file keys (see key_file.h).
#include "settings/key_file.h"

#include <vector>

#include "settings/strings.h"
#include "settings/text_file.h"

namespace settings {

namespace {

bool IsKeyChar(char c, bool first) {
  bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return first ? letter : (letter || (c >= '0' && c <= '9') || c == '_');
}

// A value line as read: one "\" is removed from a line that is backslashes
// followed by key-like text.
std::string Unescape(const std::string& line) {
  std::size_t n = 0;
  while (n < line.size() && line[n] == '\\') ++n;
  if (n > 0 && IsKeyLine(std::string_view(line).substr(n))) return line.substr(1);
  return line;
}

std::string Escape(const std::string& line) {
  std::size_t n = 0;
  while (n < line.size() && line[n] == '\\') ++n;
  return IsKeyLine(std::string_view(line).substr(n)) ? "\\" + line : line;
}

// Where a key's block lies in a list of lines: [first, end) covers the key line
// and its value lines, `value_end` the end of its non-empty value lines.
struct Block {
  std::size_t first = 0, value_end = 0, end = 0;
  bool found = false;
};

Block FindBlock(const std::vector<std::string>& lines, std::string_view key) {
  Block b;
  std::string name;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!IsKeyLine(lines[i], &name) || !IEquals(name, key)) continue;
    b.found = true;
    b.first = i;
    std::size_t j = i + 1;
    while (j < lines.size() && !IsKeyLine(lines[j])) ++j;
    b.end = j;
    std::size_t v = j;
    while (v > i + 1 && Trim(lines[v - 1]).empty()) --v;
    b.value_end = v;
    return b;
  }
  return b;
}

}  // namespace

bool IsKeyLine(std::string_view line, std::string* name, std::string* rest) {
  if (line.empty() || !IsKeyChar(line[0], true)) return false;
  std::size_t i = 1;
  while (i < line.size() && IsKeyChar(line[i], false)) ++i;
  if (i >= line.size() || line[i] != '=') return false;
  if (name) *name = std::string(line.substr(0, i));
  if (rest) *rest = std::string(line.substr(i + 1));
  return true;
}

std::string KeyValue(std::string_view text, std::string_view key) {
  std::vector<std::string> lines = SplitLines(text);
  Block b = FindBlock(lines, key);
  if (!b.found) return {};
  std::string first;
  IsKeyLine(lines[b.first], nullptr, &first);
  std::vector<std::string> values;
  if (!first.empty()) values.push_back(first);
  for (std::size_t i = b.first + 1; i < b.value_end; ++i) values.push_back(Unescape(lines[i]));
  while (!values.empty() && Trim(values.back()).empty()) values.pop_back();
  return JoinLines(values, "\r\n");
}

std::string SetKeyInText(std::string_view text, std::string_view key, std::string_view value,
                         std::string_view line_ending) {
  std::vector<std::string> lines = SplitLines(text);
  std::vector<std::string> value_lines = SplitLines(value);
  std::vector<std::string> block;
  if (value_lines.empty() || value_lines.front().empty()) {
    // An empty first line cannot sit on the key line (it would be dropped on
    // reading), so the value starts on the next line.
    block.push_back(std::string(key) + "=");
    for (const auto& l : value_lines) block.push_back(Escape(l));
  } else {
    block.push_back(std::string(key) + "=" + value_lines.front());
    for (std::size_t i = 1; i < value_lines.size(); ++i) block.push_back(Escape(value_lines[i]));
  }
  Block b = FindBlock(lines, key);
  if (b.found) {
    // Keep the key's own spelling and the blank lines that separated it from
    // the next key.
    std::string name;
    IsKeyLine(lines[b.first], &name);
    block.front().replace(0, key.size(), name);
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(b.first),
                lines.begin() + static_cast<std::ptrdiff_t>(b.value_end));
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(b.first), block.begin(), block.end());
  } else {
    lines.insert(lines.end(), block.begin(), block.end());
  }
  std::string out = JoinLines(lines, line_ending);
  out.append(line_ending);
  return out;
}

bool WriteKey(const std::filesystem::path& path, std::string_view key, std::string_view value,
              std::string* error) {
  FileText file = ReadFile(path);
  if (file.exists && !file.error.empty()) {
    if (error) *error = file.error;
    return false;
  }
  std::string text = SetKeyInText(file.text, key, value, file.line_ending);
  TextEncoding enc = file.exists ? file.encoding : TextEncoding::Utf8;
  auto bytes = Encode(text, enc);
  if (!bytes) bytes = Encode(text, TextEncoding::Utf8Bom);
  return WriteBytesAtomic(path, *bytes, error);
}

}  // namespace settings
