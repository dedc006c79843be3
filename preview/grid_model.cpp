// preview/grid_model.cpp — rows and styles of a preview grid.
#include "preview/grid_model.h"

#include "settings/strings.h"

namespace preview {

std::vector<GridColumn> GridModel::ColumnsNamed(const std::vector<std::string>& fields) {
  std::vector<GridColumn> columns;
  for (const std::string& f : fields) columns.push_back({f, f});
  return columns;
}

std::string GridModel::value(std::size_t i, const std::string& field) const {
  for (std::size_t c = 0; c < columns_.size(); ++c)
    if (settings::IEquals(columns_[c].field, field)) return c < rows_.at(i).size() ? rows_.at(i)[c] : "";
  return "";
}

void GridModel::clear() {
  rows_.clear();
  styles_.clear();
}

void GridModel::add_row(std::vector<std::string> values, std::string style) {
  rows_.push_back(std::move(values));
  styles_.push_back(std::move(style));
}

void GridModel::set_rows(std::vector<std::vector<std::string>> rows) {
  rows_ = std::move(rows);
  styles_.assign(rows_.size(), std::string());
}

}  // namespace preview
