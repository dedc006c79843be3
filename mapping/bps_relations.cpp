// mapping/bps_relations.cpp — BPS totalisation relations (see bps_relations.h).
#include "mapping/bps_relations.h"

#include <stdexcept>

#include "base/number.h"
#include "settings/strings.h"
#include "settings/text_file.h"

namespace mapping {

namespace {

constexpr std::array<std::int32_t, 7> kDefaultCodes = {1, 2, 5, 7, 8, -1, -2};
constexpr std::array<std::int32_t, 7> kDefaultKel = {17, 13, 45, 12, 71, 53, 4};

void CheckCell(int column, int row) {
  if (column < 0 || column > 1 || row < 0 || row >= RelationTable::kRows)
    throw std::out_of_range("Relaciones BPS: celda (" + std::to_string(column) + ", " + std::to_string(row) +
                            ") fuera de la tabla");
}

}  // namespace

const std::array<std::string, 7>& CodBpsItems() {
  static const std::array<std::string, 7> items = {
      "1-Monto Imponible Mensual", "2-Aguinaldo", "5-Adicional IRPF", "7-Partidas Gravadas Parcial",
      "8-Monto No Gravado IRPF",   "H-Haberes",   "D-Descuentos"};
  return items;
}

void RelationTable::Reset() {
  cells_[0] = kDefaultCodes;
  cells_[1] = kDefaultKel;
  extra_lines_.clear();
}

std::int32_t RelationTable::at(int column, int row) const {
  CheckCell(column, row);
  return cells_[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)];
}

void RelationTable::set(int column, int row, std::int32_t value) {
  CheckCell(column, row);
  cells_[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)] = value;
}

std::vector<std::string> RelationTable::Load(std::string_view relaciones) {
  Reset();
  std::vector<std::string> warnings;
  std::vector<std::string> lines = settings::SplitLines(relaciones);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i >= static_cast<std::size_t>(kRows)) {
      extra_lines_.push_back(lines[i]);
      continue;
    }
    bool overflow = false;
    std::int32_t v = base::ValInt32(lines[i], &overflow);
    if (overflow) {
      warnings.push_back("Relaciones: el valor '" + lines[i] + "' de la línea " + std::to_string(i + 1) +
                         " es demasiado grande; se usa 0");
      v = 0;
    }
    cells_[1][i] = v;
  }
  if (!extra_lines_.empty())
    warnings.push_back("Relaciones tiene " + std::to_string(lines.size()) +
                       " líneas y solo hay siete relaciones: se usan las siete primeras y las demás se conservan "
                       "sin usar en el archivo del formato");
  return warnings;
}

std::string RelationTable::Store() const {
  std::vector<std::string> lines;
  for (int r = 0; r < kRows; ++r) lines.push_back(std::to_string(cells_[1][static_cast<std::size_t>(r)]));
  lines.insert(lines.end(), extra_lines_.begin(), extra_lines_.end());
  return settings::JoinLines(lines, "\r\n");
}

std::vector<std::int32_t> RelationTable::KelIds() const {
  return std::vector<std::int32_t>(cells_[1].begin(), cells_[1].end());
}

std::string RelationTable::JoinKelIds() const {
  std::vector<std::string> ids;
  for (std::int32_t v : cells_[1]) ids.push_back(std::to_string(v));
  return settings::JoinLines(ids, ",");
}

std::string RelationText(std::int32_t code, std::int32_t kel) {
  std::string label = code >= 1 ? "BPS " + std::to_string(code) : code == -1 ? "HABE." : "DESC.";
  return label + " -> KEL " + std::to_string(kel);
}

void ListRelations(const RelationTable& table, RelationList& list) {
  for (int r = 0; r < RelationTable::kRows; ++r)
    if (table.kel(r) != -1) list.entries.push_back({RelationText(table.code(r), table.kel(r)), r});
}

bool AddRelation(RelationTable& table, RelationList& list, std::string_view combo_text, int combo_index,
                 std::string_view cod_kel) {
  double number = base::Val(combo_text);
  if (number == 0 || cod_kel.empty()) return false;
  table.set(1, combo_index, base::ValInt32(cod_kel));
  std::string label;
  if (number > 0) label = "BPS " + base::cstr_number(number);
  else if (!combo_text.empty() && (combo_text[0] == 'H' || combo_text[0] == 'h')) label = "HABE.";
  else label = "DESC.";
  list.entries.push_back({label + " -> KEL " + std::string(cod_kel), combo_index});
  return true;
}

std::string RemoveRelation(RelationTable& table, RelationList& list) {
  if (list.selected < 0 || list.selected >= static_cast<int>(list.entries.size()))
    return "Debe seleccionar la relación";
  auto it = list.entries.begin() + list.selected;
  table.set(0, it->row, -1);
  list.entries.erase(it);
  list.selected = -1;
  return {};
}

}  // namespace mapping
