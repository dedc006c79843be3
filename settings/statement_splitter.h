// settings/statement_splitter.h — where one statement of a statement text
// ends: the one rule shared by the statement files the load runs and the SQL
// console, so that what a format author tries in `kelimport --sql` is what the
// load runs.
//
// The text is read line by line. A line whose first non-blank characters are
// "--" is a comment and is dropped. A statement ends at a line whose last
// non-blank character is ";": the ";" (and any more of them) and the blanks
// around them are cut. Blank lines before and after a statement are dropped;
// its lines are joined with "\n" and keep their own blanks. Text left at the
// end without a ";" is a statement too.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

class StatementSplitter {
 public:
  // Takes the next line (without its line end; a trailing CR is ignored).
  // Returns the statement this line ends, if it ends one that is not empty.
  std::optional<std::string> add_line(std::string_view line);

  // The statement left unterminated at the end of the text, if any; the
  // splitter is empty afterwards.
  std::optional<std::string> finish();

 private:
  std::vector<std::string> lines_;  // lines of the statement being read
};

// A comment line: its first non-blank characters are "--".
bool IsCommentLine(std::string_view line);

// Every statement of a whole text (lines ended by LF, CR LF or CR).
std::vector<std::string> SplitStatements(std::string_view text);

}  // namespace settings
