// mapping/mapping_grids.h — the concept and liquidation-type mapping grids
// (GridRelacConc, GridRelacTL) as models: their rows, sort and cursor.
//
// Both grids read the staging database, which reads the destination's
// concepts or types by path. A grid row is kept as its values and handed to
// a grid control as one text (RowText).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace mapping {

// The two databases the mapping works on; both must be open.
struct Databases {
  db::Connection& staging;
  db::Connection& destination;
};

// A row handed to a grid as one text: each value in single quotes, joined by
// "|", with no closing quote after the last value ('1'|'a'|'b).
std::string RowText(const std::vector<std::string>& values);

// Grid selection shared by both grids: the current row (-1 for none) and the
// rows the user selected.
struct GridCursor {
  int current_row = -1;
  std::vector<int> selected_rows;
};

// GridRelacConc: CodigoOS, DescOS, CodigoKEL, DescKEL, Totalizar.
class ConceptMappingGrid {
 public:
  struct Row {
    std::string CodigoOS, DescOS, CodigoKEL, DescKEL, Totalizar;
    bool to_create = false;  // the row's ConcCrear: no relation, or one with no KEL side
    std::vector<std::string> values() const { return {CodigoOS, DescOS, CodigoKEL, DescKEL, Totalizar}; }
  };

  // Column names, in order (the headings a click sorts by).
  static const std::vector<std::string>& columns();

  // Refills the grid (ActuGridConc). `sort_column` -1 keeps the sort; a
  // column index sorts by that column, descending when it already sorted
  // ascending by it. When rows came back `conc_crear` becomes the ids of the
  // rows to create, joined by "," in grid order; with no rows the grid is
  // empty and `conc_crear` is left as it was. Database errors propagate.
  void refresh(const Databases& dbs, int sort_column, std::string& conc_crear);

  const std::vector<Row>& rows() const { return rows_; }
  std::vector<std::string> row_texts() const;
  // "" (DescOS order), a column name, or a name followed by " Desc".
  const std::string& sort_text() const { return sort_; }
  GridCursor cursor;
  // The current row, or an empty row when there is none.
  Row current() const;

 private:
  std::vector<Row> rows_;
  std::string sort_;
};

// GridRelacTL: CodigoOS, DescOS, CodigoKEL, DescKEL, in the order of the
// source type's number.
class TypeMappingGrid {
 public:
  struct Row {
    std::string CodigoOS, DescOS, CodigoKEL, DescKEL;
    std::vector<std::string> values() const { return {CodigoOS, DescOS, CodigoKEL, DescKEL}; }
  };

  // Refills the grid (ActuGridTliq). Database errors propagate.
  void refresh(const Databases& dbs);

  const std::vector<Row>& rows() const { return rows_; }
  std::vector<std::string> row_texts() const;
  GridCursor cursor;
  Row current() const;

 private:
  std::vector<Row> rows_;
};

// What the grids say will happen to each source concept and type, one text
// per grid row, concepts first, for a run without a window:
//   "concepto 12 (C12->Sueldo) -> KEL 17 (Sueldo básico)"
//   "concepto 13 (...) -> No Importar", "... -> se crea en KEL",
//   "... -> concepto de KEL inexistente" (a relation onto a missing concept),
//   "tipo 1 (Mensual) -> KEL 1 (Sueldo mensual)", "tipo 2 (...) -> se crea en KEL".
std::vector<std::string> RelationSummary(const ConceptMappingGrid& concepts, const TypeMappingGrid& types);

}  // namespace mapping
