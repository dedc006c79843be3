// preview/grid_model.h — the data of one read-only grid of the preview: its
// columns with their captions, its rows of texts, and a style name per row.
//
// A Qt table model wraps a GridModel as it is; nothing here knows about
// widgets. Styles are names the window maps to its looks ("Suma", "Resta";
// "" for the plain look).
#pragma once

#include <string>
#include <vector>

namespace preview {

struct GridColumn {
  std::string field;    // the field the column shows
  std::string caption;  // its heading
};

class GridModel {
 public:
  GridModel() = default;
  explicit GridModel(std::vector<GridColumn> columns) : columns_(std::move(columns)) {}

  const std::vector<GridColumn>& columns() const { return columns_; }
  void set_columns(std::vector<GridColumn> columns) { columns_ = std::move(columns); }
  // Columns whose caption is the field's own name.
  static std::vector<GridColumn> ColumnsNamed(const std::vector<std::string>& fields);

  std::size_t row_count() const { return rows_.size(); }
  const std::vector<std::vector<std::string>>& rows() const { return rows_; }
  const std::vector<std::string>& row(std::size_t i) const { return rows_.at(i); }
  const std::string& style(std::size_t i) const { return styles_.at(i); }
  // The text of field `field` in row `i` ("" when the grid has no such column).
  std::string value(std::size_t i, const std::string& field) const;

  // Empties the rows (the columns stay).
  void clear();
  void add_row(std::vector<std::string> values, std::string style = {});
  void set_rows(std::vector<std::vector<std::string>> rows);

 private:
  std::vector<GridColumn> columns_;
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::string> styles_;
};

}  // namespace preview
