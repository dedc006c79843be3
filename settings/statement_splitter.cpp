// settings/statement_splitter.cpp — statement ends (see statement_splitter.h).
#include "settings/statement_splitter.h"

#include "settings/strings.h"
#include "settings/text_file.h"

namespace settings {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

bool IsCommentLine(std::string_view line) {
  std::size_t p = line.find_first_not_of(" \t");
  return p != std::string_view::npos && line.substr(p, 2) == "--";
}

std::optional<std::string> StatementSplitter::add_line(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  if (IsCommentLine(line)) return std::nullopt;
  std::size_t end = line.size();
  while (end > 0 && IsBlank(line[end - 1])) --end;
  if (end == 0 || line[end - 1] != ';') {
    lines_.emplace_back(line);
    return std::nullopt;
  }
  while (end > 0 && (line[end - 1] == ';' || IsBlank(line[end - 1]))) --end;
  lines_.emplace_back(line.substr(0, end));
  return finish();
}

std::optional<std::string> StatementSplitter::finish() {
  std::vector<std::string> lines;
  lines.swap(lines_);
  while (!lines.empty() && Trim(lines.back()).empty()) lines.pop_back();
  std::size_t first = 0;
  while (first < lines.size() && Trim(lines[first]).empty()) ++first;
  if (first == lines.size()) return std::nullopt;
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(first));
  return JoinLines(lines, "\n");
}

std::vector<std::string> SplitStatements(std::string_view text) {
  std::vector<std::string> statements;
  StatementSplitter splitter;
  for (const std::string& line : SplitLines(text))
    if (auto statement = splitter.add_line(line)) statements.push_back(std::move(*statement));
  if (auto statement = splitter.finish()) statements.push_back(std::move(*statement));
  return statements;
}

}  // namespace settings
