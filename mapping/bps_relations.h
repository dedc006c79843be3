// mapping/bps_relations.h — the totalisation relations for BPS codes: which KEL
// concept carries each total reported to BPS, and which concepts stand for the
// total earnings (Haberes) and deductions (Descuentos).
//
// The table has seven rows, one per item of cmbCodBPS, in this order:
// BPS 1, 2, 5, 7, 8, Haberes, Descuentos. Column 0 is the BPS code (-1 for
// Haberes, -2 for Descuentos, or -1 after the user removed the row from the
// list); column 1 is the KEL concept id (-1 for none). The format key
// "Relaciones" stores column 1, one line per row.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mapping {

// The items of cmbCodBPS, row k being item k.
const std::array<std::string, 7>& CodBpsItems();

class RelationTable {
 public:
  static constexpr int kRows = 7;

  RelationTable() { Reset(); }

  // Back to the system's defaults: 1->17, 2->13, 5->45, 7->12, 8->71,
  // -1 (Haberes)->53, -2 (Descuentos)->4; forgets kept extra lines.
  void Reset();

  // Cell (column 0..1, row 0..6); throws std::out_of_range outside.
  std::int32_t at(int column, int row) const;
  void set(int column, int row, std::int32_t value);
  std::int32_t code(int row) const { return at(0, row); }
  std::int32_t kel(int row) const { return at(1, row); }

  // Loads the "Relaciones" key after resetting: line i sets column 1 of row i
  // to its leading number, rounded (a line with no number gives 0). An empty
  // value keeps the defaults. Only seven rows exist: further lines are not
  // used, but they are kept as they stand and written back by Store(), so a
  // mistaken format loses nothing; a Spanish warning is returned for them (and
  // for a number that does not fit 32 bits, which leaves its row at 0).
  std::vector<std::string> Load(std::string_view relaciones);

  // The "Relaciones" text: the seven column-1 values in row order joined by
  // CR LF, followed by any extra lines Load() kept.
  std::string Store() const;

  // Column 1 of rows 0..6 (the placeholder values [BPS1] .. [Desc]).
  std::vector<std::int32_t> KelIds() const;

  // Column 1 of rows 0..6 joined by "," (the concept mapping's automatic links).
  std::string JoinKelIds() const;

 private:
  std::array<std::array<std::int32_t, kRows>, 2> cells_{};
  std::vector<std::string> extra_lines_;
};

// One entry of lstRelaciones: its text and its item data (the row number).
struct RelationEntry {
  std::string text;
  int row = -1;
};

// The list lstRelaciones with its selection (-1: nothing selected).
struct RelationList {
  std::vector<RelationEntry> entries;
  int selected = -1;
};

// The list text of a row: "BPS <code>", "HABE." (code -1) or "DESC." (other
// codes below 1), then " -> KEL " and the KEL id.
std::string RelationText(std::int32_t code, std::int32_t kel);

// Adds an entry for every row, 0 to 6, whose KEL id is not -1, below the
// entries already in the list (the list is not emptied first: each format
// selection adds its set).
void ListRelations(const RelationTable& table, RelationList& list);

// cmbMasMenos(0), add or replace. Does nothing (returns false) unless the
// leading number of `combo_text` is not 0 and `cod_kel` is not empty. Then sets
// column 1 of row `combo_index` to the whole-number value of `cod_kel` and adds
// the entry "BPS <number>" / "HABE." / "DESC." + " -> KEL " + cod_kel as typed,
// with the combo index as its row; earlier entries of the row stay. Throws
// std::out_of_range when `combo_index` is not a row (-1: text typed into the
// combo that is not one of its items).
bool AddRelation(RelationTable& table, RelationList& list, std::string_view combo_text, int combo_index,
                 std::string_view cod_kel);

// cmbMasMenos(1), remove. With no entry selected returns the warning
// "Debe seleccionar la relación" and changes nothing. Otherwise sets column 0
// of the entry's row to -1, removes the entry (the selection becomes -1) and
// returns "". Column 1 stays: the placeholder and the stored key keep the id.
std::string RemoveRelation(RelationTable& table, RelationList& list);

}  // namespace mapping
