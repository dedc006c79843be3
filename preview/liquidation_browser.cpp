// preview/liquidation_browser.cpp — paging the liquidation headers and
// showing the lines of the current one.
#include "preview/liquidation_browser.h"

#include "preview/preview_sql.h"

namespace preview {
namespace {

std::vector<std::string> texts_of(const std::vector<db::Value>& row) {
  std::vector<std::string> texts;
  texts.reserve(row.size());
  for (const db::Value& v : row) texts.push_back(db::as_text(v));
  return texts;
}

}  // namespace

void LiquidationBrowser::refresh(db::Connection& staging, int sort_column) {
  clear();
  if (sort_column != -1) {
    // The headings' names are the query's fields; before a first read they
    // are taken from the query in its current order, opened without reading.
    if (names_.empty()) names_ = db::open_cursor(staging, sql::liquidation_headers_select(sort_))->names();
    if (sort_column >= 0 && sort_column < static_cast<int>(names_.size()))
      sort_ = sql::liquidation_sort_text(sort_, names_[static_cast<std::size_t>(sort_column)], sort_column);
  }
  cursor_ = db::open_cursor(staging, sql::liquidation_headers_select(sort_));
  names_ = cursor_->names();
  headers_.set_columns(GridModel::ColumnsNamed(names_));
  fetch_more();
  // A bound grid makes its first row current.
  set_current_row(staging, headers_.row_count() > 0 ? 0 : -1);
}

void LiquidationBrowser::fetch_more(std::size_t rows) {
  if (!cursor_) return;
  for (const std::vector<db::Value>& row : cursor_->fetch(rows)) headers_.add_row(texts_of(row));
  if (cursor_->at_end()) cursor_.reset();
}

void LiquidationBrowser::set_current_row(db::Connection& staging, int row) {
  lines_.clear();
  current_row_ = row >= 0 && row < static_cast<int>(headers_.row_count()) ? row : -1;
  if (current_row_ < 0) return;
  const std::string id = headers_.value(static_cast<std::size_t>(current_row_), "id_Encabezado");
  db::Recordset rs = staging.open_recordset(sql::liquidation_lines_select(db::as_int(db::Value(id))));
  std::vector<std::size_t> shown;
  for (const GridColumn& c : lines_.columns()) shown.push_back(static_cast<std::size_t>(rs.field_index(c.field)));
  const int operation = rs.field_index("TipoOperacion");
  for (const std::vector<db::Value>& r : rs.rows()) {
    std::vector<std::string> values;
    for (std::size_t i : shown) values.push_back(i < r.size() ? db::as_text(r[i]) : "");
    const bool adds = operation >= 0 && db::as_text(r[static_cast<std::size_t>(operation)]) == "S";
    lines_.add_row(std::move(values), adds ? "Suma" : "Resta");
  }
}

void LiquidationBrowser::release() { cursor_.reset(); }

void LiquidationBrowser::clear() {
  cursor_.reset();
  headers_.clear();
  lines_.clear();
  current_row_ = -1;
}

}  // namespace preview
