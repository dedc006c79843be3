// settings/formats_table.h — the list of import formats read from ConfIMP.ini.
//
// ConfIMP.ini holds one format per line: the format's name as shown in the
// format list, "|", and the name of the format's file relative to the program
// folder, e.g. "Sistema XYZ (archivos)|xyz.fmt". A line without "|" may use "="
// instead ("Sistema XYZ=xyz.fmt"). Blanks around both parts are ignored. Empty
// lines and lines starting with ";" or "#" are comments and add no format.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

// Two columns of text: 0 the format's name, 1 its file. It is created with a
// single placeholder row ("-1", "-1") that stands for "no format yet"; the first
// ParseLine replaces it, so row i is always item i of the format list.
class FormatsTable {
 public:
  FormatsTable() { rows_.push_back({"-1", "-1"}); }

  // True while only the placeholder row is there.
  bool empty() const { return placeholder_; }
  // Number of format rows (0 while only the placeholder is there).
  std::size_t size() const { return placeholder_ ? 0 : rows_.size(); }
  // Cell of a format row; throws std::out_of_range outside the table (the
  // placeholder row 0 is readable while the table is empty).
  const std::string& cell(std::size_t row, int column) const;

  void add_row(std::string name, std::string file);

 private:
  std::vector<std::array<std::string, 2>> rows_;
  bool placeholder_ = true;
};

// Parses one ConfIMP.ini line into a new row (name, file). Returns false and
// adds nothing for an empty or comment line.
bool ParseLine(std::string_view line, FormatsTable& table);

// The first row whose cell in `column` equals `value`, both trimmed and
// compared without regard to case; -1 when none.
int FindRow(const FormatsTable& table, int column, std::string_view value);

}  // namespace settings
