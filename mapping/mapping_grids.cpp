// mapping/mapping_grids.cpp — filling the mapping grids.
#include "mapping/mapping_grids.h"

#include "db/sql_text.h"
#include "mapping/grid_sql.h"
#include "settings/strings.h"

namespace mapping {
namespace {

std::string text_of(const db::Recordset& rs, std::string_view field) { return db::as_text(rs.field(field)); }

// Jet's True is -1; SQLite's comparison gives 1. Either is "true".
bool truth_of(const db::Value& v) { return !db::is_null(v) && db::as_double(v) != 0; }

template <typename Row>
Row row_at(const std::vector<Row>& rows, const GridCursor& cursor) {
  if (cursor.current_row < 0 || cursor.current_row >= static_cast<int>(rows.size())) return Row{};
  return rows[static_cast<std::size_t>(cursor.current_row)];
}

// A refilled grid has its first row current and nothing selected.
void reset_cursor(GridCursor& cursor, std::size_t rows) {
  cursor.selected_rows.clear();
  cursor.current_row = rows == 0 ? -1 : 0;
}

}  // namespace

std::string RowText(const std::vector<std::string>& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text += "'|";
    text += "'" + values[i];
  }
  return text;
}

const std::vector<std::string>& ConceptMappingGrid::columns() {
  static const std::vector<std::string> names = {"CodigoOS", "DescOS", "CodigoKEL", "DescKEL", "Totalizar"};
  return names;
}

void ConceptMappingGrid::refresh(const Databases& dbs, int sort_column, std::string& conc_crear) {
  rows_.clear();
  reset_cursor(cursor, 0);
  if (sort_column != -1 && sort_column >= 0 && sort_column < static_cast<int>(columns().size())) {
    const std::string& name = columns()[static_cast<std::size_t>(sort_column)];
    sort_ = settings::IEquals(sort_, name) ? name + " Desc" : name;
  }
  const std::string path = db::jet_path_literal(dbs.destination.data_source_name());
  db::Recordset rs = dbs.staging.open_recordset(sql::concept_grid_select(path, sort_));
  if (rs.eof()) return;
  conc_crear.clear();
  for (; !rs.eof(); rs.move_next()) {
    Row row{text_of(rs, "CodigoOS"), text_of(rs, "DescOS"), text_of(rs, "CodigoKEL"), text_of(rs, "DescKEL"),
            text_of(rs, "Totalizar"), truth_of(rs.field("ConcCrear"))};
    if (row.to_create) conc_crear += "," + row.CodigoOS;
    rows_.push_back(std::move(row));
  }
  if (!conc_crear.empty()) conc_crear.erase(0, 1);
  reset_cursor(cursor, rows_.size());
}

std::vector<std::string> ConceptMappingGrid::row_texts() const {
  std::vector<std::string> texts;
  for (const Row& r : rows_) texts.push_back(RowText(r.values()));
  return texts;
}

ConceptMappingGrid::Row ConceptMappingGrid::current() const { return row_at(rows_, cursor); }

void TypeMappingGrid::refresh(const Databases& dbs) {
  rows_.clear();
  const std::string path = db::jet_path_literal(dbs.destination.data_source_name());
  db::Recordset rs = dbs.staging.open_recordset(sql::type_grid_select(path));
  for (; !rs.eof(); rs.move_next())
    rows_.push_back({text_of(rs, "CodigoOS"), text_of(rs, "DescOS"), text_of(rs, "CodigoKEL"), text_of(rs, "DescKEL")});
  reset_cursor(cursor, rows_.size());
}

std::vector<std::string> TypeMappingGrid::row_texts() const {
  std::vector<std::string> texts;
  for (const Row& r : rows_) texts.push_back(RowText(r.values()));
  return texts;
}

TypeMappingGrid::Row TypeMappingGrid::current() const { return row_at(rows_, cursor); }

std::vector<std::string> RelationSummary(const ConceptMappingGrid& concepts, const TypeMappingGrid& types) {
  std::vector<std::string> lines;
  for (const ConceptMappingGrid::Row& r : concepts.rows()) {
    std::string target;
    if (!r.CodigoKEL.empty()) {
      target = "KEL " + r.CodigoKEL + " (" + r.DescKEL + ")";
    } else if (r.Totalizar == "No Importar") {
      target = "No Importar";
    } else if (r.to_create) {
      target = "se crea en KEL";
    } else {
      target = "concepto de KEL inexistente";
    }
    lines.push_back("concepto " + r.CodigoOS + " (" + r.DescOS + ") -> " + target);
  }
  for (const TypeMappingGrid::Row& r : types.rows()) {
    const std::string target = r.CodigoKEL.empty() ? "se crea en KEL" : "KEL " + r.CodigoKEL + " (" + r.DescKEL + ")";
    lines.push_back("tipo " + r.CodigoOS + " (" + r.DescOS + ") -> " + target);
  }
  return lines;
}

}  // namespace mapping
