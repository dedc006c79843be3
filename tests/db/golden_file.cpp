// tests/db/golden_file.cpp — parser of the golden test file format.
#include "golden_file.h"

#include <sstream>

namespace golden {

namespace {

bool is_blank(const std::string& line) {
  return line.find_first_not_of(" \t") == std::string::npos;
}

std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

// Rest of `line` after its first word, blanks trimmed.
std::string after_word(const std::string& line, const std::string& word) {
  std::string rest = line.substr(word.size());
  std::size_t start = rest.find_first_not_of(" \t");
  if (start == std::string::npos) return {};
  std::size_t end = rest.find_last_not_of(" \t");
  return rest.substr(start, end - start + 1);
}

bool starts_with(const std::string& s, const std::string& prefix) {
  return s.compare(0, prefix.size(), prefix) == 0 &&
         (s.size() == prefix.size() || s[prefix.size()] == ' ' || s[prefix.size()] == '\t');
}

}  // namespace

File parse(const std::string& text) {
  File file;
  std::vector<std::string> lines = split_lines(text);
  std::size_t i = 0;
  auto problem = [&](std::size_t line, const std::string& what) {
    file.problems.push_back("línea " + std::to_string(line + 1) + ": " + what);
  };
  while (i < lines.size()) {
    const std::string& head = lines[i];
    if (is_blank(head) || head[0] == '#') {
      ++i;
      continue;
    }
    Record record;
    record.line = static_cast<int>(i + 1);
    bool has_result = false;
    if (starts_with(head, "statement ok")) {
      record.kind = Kind::kStatementOk;
    } else if (starts_with(head, "statement error")) {
      record.kind = Kind::kStatementError;
      record.argument = after_word(head, "statement error");
    } else if (starts_with(head, "query")) {
      record.kind = Kind::kQuery;
      has_result = true;
    } else if (starts_with(head, "explain")) {
      record.kind = Kind::kExplain;
      has_result = true;
    } else if (starts_with(head, "connect")) {
      record.kind = Kind::kConnect;
      record.argument = after_word(head, "connect");
      if (record.argument.empty()) {
        problem(i, "connect sin nombre de base");
      } else {
        file.records.push_back(record);
      }
      ++i;
      continue;
    } else if (starts_with(head, "sqlite")) {
      record.kind = Kind::kSqlite;
    } else {
      problem(i, "directiva desconocida: " + head);
      while (i < lines.size() && !is_blank(lines[i])) ++i;
      continue;
    }
    ++i;
    bool separator = false;
    while (i < lines.size() && !is_blank(lines[i])) {
      if (has_result && lines[i] == "----") {
        separator = true;
        ++i;
        break;
      }
      record.sql += (record.sql.empty() ? "" : "\n") + lines[i];
      ++i;
    }
    if (separator) {
      while (i < lines.size() && !is_blank(lines[i])) record.expected.push_back(lines[i++]);
    }
    if (record.sql.empty()) {
      problem(static_cast<std::size_t>(record.line - 1), "registro sin instrucción");
      continue;
    }
    if (has_result && !separator) {
      problem(static_cast<std::size_t>(record.line - 1), "falta la línea ---- y el resultado");
      continue;
    }
    if (record.kind == Kind::kExplain && record.expected.size() != 1) {
      problem(static_cast<std::size_t>(record.line - 1),
              "explain espera exactamente una línea de resultado");
      continue;
    }
    if (record.kind == Kind::kQuery && record.expected.empty()) {
      problem(static_cast<std::size_t>(record.line - 1), "query sin línea de encabezado");
      continue;
    }
    file.records.push_back(std::move(record));
  }
  return file;
}

}  // namespace golden
