// settings/formats_table.cpp — ConfIMP.ini lines into the formats table.
#include "settings/formats_table.h"

#include <stdexcept>

#include "settings/strings.h"

namespace settings {

const std::string& FormatsTable::cell(std::size_t row, int column) const {
  if (column < 0 || column > 1 || row >= rows_.size())
    throw std::out_of_range("FormatsTable: celda fuera de la tabla");
  return rows_[row][static_cast<std::size_t>(column)];
}

void FormatsTable::add_row(std::string name, std::string file) {
  if (placeholder_) {
    rows_.clear();
    placeholder_ = false;
  }
  rows_.push_back({std::move(name), std::move(file)});
}

bool ParseLine(std::string_view line, FormatsTable& table) {
  std::string t = Trim(line);
  if (t.empty() || t[0] == ';' || t[0] == '#') return false;
  std::size_t sep = t.find('|');
  if (sep == std::string::npos) sep = t.find('=');
  if (sep == std::string::npos) {
    table.add_row(t, "");
  } else {
    table.add_row(Trim(std::string_view(t).substr(0, sep)), Trim(std::string_view(t).substr(sep + 1)));
  }
  return true;
}

int FindRow(const FormatsTable& table, int column, std::string_view value) {
  const std::string wanted = Trim(value);
  for (std::size_t r = 0; r < table.size(); ++r)
    if (IEquals(Trim(table.cell(r, column)), wanted)) return static_cast<int>(r);
  return -1;
}

}  // namespace settings
