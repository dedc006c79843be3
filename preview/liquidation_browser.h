// preview/liquidation_browser.h — the liquidation browser: the staged
// liquidation headers (GridLiq, over the saved query CHistLiq) and the lines
// of the current header (GridDatosLiq, over cLisLiquida).
//
// A staged history of ten years holds hundreds of thousands of headers, so
// GridLiq is filled a page at a time from an open cursor: refresh() shows the
// first page, fetch_more() appends the next one as the user scrolls. Only
// the pages shown are kept. Nothing is written.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "db/connection.h"
#include "db/row_cursor.h"
#include "preview/grid_model.h"

namespace preview {

class LiquidationBrowser {
 public:
  static constexpr std::size_t kPageRows = 100;

  // ActuGridLiquida(Col): `sort_column` -1 keeps the sort; a column index
  // sorts by that column (descending when the sort was that column's name;
  // the month column always ascending by its date value). Shows the first
  // page and the lines of its first header. Database errors propagate.
  void refresh(db::Connection& staging, int sort_column);
  // True while the headers have rows not fetched yet.
  bool can_fetch_more() const { return cursor_ && !cursor_->at_end(); }
  // Appends up to `rows` further headers to GridLiq.
  void fetch_more(std::size_t rows = kPageRows);
  // The current row of GridLiq changed: GridDatosLiq shows that header's
  // lines, each styled "Suma" or "Resta". -1 (or a row not fetched) empties it.
  void set_current_row(db::Connection& staging, int row);
  int current_row() const { return current_row_; }
  // Lets go of the open cursor (before the staging connection is closed or
  // replaced); the rows shown stay.
  void release();
  // Empties both grids and the cursor (the sort stays).
  void clear();

  const GridModel& GridLiq() const { return headers_; }
  const GridModel& GridDatosLiq() const { return lines_; }
  // "" (id_Persona order), a column name, "cdate(<name>)", each maybe + " Desc".
  const std::string& sort_text() const { return sort_; }

 private:
  GridModel headers_;
  GridModel lines_{{{"Codigo", "Codigo"}, {"Nombre", "Nombre"}, {"Cant", "Cant."}, {"Coef", "Valor"}, {"strMonto", "Monto"}}};
  std::unique_ptr<db::RowCursor> cursor_;
  std::vector<std::string> names_;  // fields of CHistLiq, known after a first read
  std::string sort_;
  int current_row_ = -1;
};

}  // namespace preview
