// settings/statement_file.cpp — parsing statement files (see statement_file.h).
#include "settings/statement_file.h"

#include <stdexcept>

#include "settings/statement_splitter.h"
#include "settings/strings.h"
#include "settings/text_file.h"

namespace settings {

namespace {

enum class Section { Statements, Pairs, Layout };

bool SectionLine(const std::string& line, Section* s) {
  std::string t = Trim(line);
  if (IEquals(t, "@SENTENCIAS")) *s = Section::Statements;
  else if (IEquals(t, "@PARES")) *s = Section::Pairs;
  else if (IEquals(t, "@ARCHIVO")) *s = Section::Layout;
  else return false;
  return true;
}

}  // namespace

void StatementFile::clear() {
  statements_.clear();
  pairs_.clear();
  layout_.reset();
  warnings_.clear();
  error_.clear();
}

bool StatementFile::load(const std::filesystem::path& path) {
  clear();
  path_ = path;
  FileText f = ReadFile(path);
  if (!f.exists) {
    error_ = "No existe el archivo de sentencias " + path.string();
    return false;
  }
  if (!f.error.empty()) {
    error_ = f.error;
    return false;
  }
  if (!load_text(f.text)) {
    error_ = path.filename().string() + ": " + error_;
    return false;
  }
  return true;
}

bool StatementFile::load_text(std::string_view text) {
  clear();
  Section section = Section::Statements;
  std::vector<std::string> layout_lines;
  bool has_layout = false;
  StatementSplitter splitter;  // the same statement ends as the SQL console's
  auto end_statement = [&] {
    if (auto statement = splitter.finish()) statements_.push_back(std::move(*statement));
  };
  std::vector<std::string> lines = SplitLines(text);
  for (std::size_t n = 0; n < lines.size(); ++n) {
    const std::string& line = lines[n];
    Section next;
    if (SectionLine(line, &next)) {
      end_statement();
      if (next == Section::Layout) {
        if (has_layout) {
          clear();
          error_ = "la sección @ARCHIVO aparece dos veces (línea " + std::to_string(n + 1) + ")";
          return false;
        }
        has_layout = true;
      }
      section = next;
      continue;
    }
    if (section == Section::Layout) {
      layout_lines.push_back(line);
      continue;
    }
    if (IsCommentLine(line)) continue;
    if (section == Section::Pairs) {
      if (Trim(line).empty()) continue;
      std::size_t bar = line.find('|');
      if (bar == std::string::npos) {
        warnings_.push_back("Línea " + std::to_string(n + 1) +
                            ": el par de reemplazo no tiene '|' entre Campo y Valor y se ignora: " + line);
        continue;
      }
      pairs_.push_back({line.substr(0, bar), line.substr(bar + 1)});
      continue;
    }
    if (auto statement = splitter.add_line(line)) statements_.push_back(std::move(*statement));
  }
  end_statement();
  if (has_layout) {
    std::string why;
    layout_ = ParseDataFileLayout(layout_lines, &why);
    if (!layout_) {
      std::vector<std::string> keep = warnings_;
      clear();
      warnings_ = keep;
      error_ = why;
      return false;
    }
  }
  return true;
}

const std::string& StatementFile::statement(int i) const {
  if (i < 1 || i > statement_count())
    throw std::out_of_range("StatementFile: no hay sentencia " + std::to_string(i));
  return statements_[static_cast<std::size_t>(i - 1)];
}

}  // namespace settings
