// lookup/lookup_model.cpp — behaviour of the code-and-description lookup.
#include "lookup/lookup_model.h"

#include <algorithm>

#include "db/jet/collation.h"
#include "settings/strings.h"

namespace lookup {
namespace {

// True when `text` begins with `prefix` in Jet's text comparison: case does
// not count, accented capitals included ('ñ' finds "Ñandú"), accents do. A
// letter and its other case take the same bytes in UTF-8, so the prefix's
// length in bytes is the completed part's.
bool starts_with_ignoring_case(std::string_view text, std::string_view prefix) {
  return prefix.size() <= text.size() && db::jet::compare_text(text.substr(0, prefix.size()), prefix) == 0;
}

// Drops the last character of a UTF-8 text (all its bytes).
void drop_last_character(std::string& text) {
  while (!text.empty()) {
    const unsigned char c = static_cast<unsigned char>(text.back());
    text.pop_back();
    if ((c & 0xC0) != 0x80) break;  // not a continuation byte: the character's start
  }
}

}  // namespace

int FindRow(const std::vector<Row>& rows, int column, std::string_view value) {
  if (column < 0 || column > 2) return -1;
  const std::string wanted = settings::Trim(value);
  for (std::size_t r = 0; r < rows.size(); ++r)
    if (settings::IEquals(settings::Trim(rows[r][static_cast<std::size_t>(column)]), wanted)) return static_cast<int>(r);
  return -1;
}

LookupModel::LookupModel() : rows_(1) {}

void LookupModel::CargarDatos(const std::vector<std::vector<std::string>>& rows) {
  rows_.clear();
  list_.clear();
  selected_ = -1;
  for (const std::vector<std::string>& fields : rows) {
    Row row;
    if (fields.size() >= 3) {
      row = {fields[0], fields[1], fields[2]};
    } else if (fields.size() == 2) {
      row = {fields[0], fields[0], fields[1]};
    } else if (fields.size() == 1) {
      row = {fields[0], fields[0], ""};
    }
    list_.push_back(row[2]);
    rows_.push_back(std::move(row));
  }
  if (rows_.empty()) rows_.emplace_back();
}

void LookupModel::set_indSel(int index) {
  const int last = static_cast<int>(list_.size()) - 1;
  selected_ = (index > last || index < -1) ? -1 : index;
  pending_click_ = true;
  selection_pass();
}

void LookupModel::selection_pass() {
  pending_click_ = false;
  if (typing_guard_) return;
  if (selected_ >= 0) {
    codigo_ = rows_[static_cast<std::size_t>(selected_)][1];
    if (focus_ == Focus::kLista) {
      typing_guard_ = true;
      descripcion_ = list_[static_cast<std::size_t>(selected_)];
      sel_start_ = descripcion_.size();
      sel_length_ = 0;
      typing_guard_ = false;
    }
  } else {
    codigo_.clear();
    descripcion_.clear();
    sel_start_ = sel_length_ = 0;
  }
  std::int16_t index = static_cast<std::int16_t>(selected_);
  if (CambioSeleccion) CambioSeleccion(index);
}

std::string LookupModel::dato(int column) const {
  if (selected_ < 0) return "";
  return rows_[static_cast<std::size_t>(selected_)][static_cast<std::size_t>(column)];
}

void LookupModel::set_dato(int column, std::string value) {
  if (selected_ < 0) return;
  rows_[static_cast<std::size_t>(selected_)][static_cast<std::size_t>(column)] = std::move(value);
}

void LookupModel::set_Enabled(bool enabled) {
  enabled_ = enabled;
  if (!enabled) list_visible_ = false;
}

void LookupModel::set_TamCod(std::int32_t twips) {
  tam_cod_ = twips;
  ++layout_version_;
}

void LookupModel::list_click(int index) {
  if (!enabled_) return;
  focus_ = Focus::kLista;
  set_indSel(index);
}

void LookupModel::descripcion_changed(std::string text, std::size_t caret) {
  descripcion_ = std::move(text);
  sel_start_ = std::min(caret, descripcion_.size());
  sel_length_ = 0;
  if (focus_ != Focus::kDescripcion || typing_guard_ || !enabled_) return;
  typing_guard_ = true;
  int found = -1;
  // An empty box matches nothing: emptying it is how the user starts over.
  if (!descripcion_.empty()) {
    for (std::size_t i = 0; i < list_.size(); ++i) {
      if (starts_with_ignoring_case(list_[i], descripcion_)) {
        found = static_cast<int>(i);
        break;
      }
    }
  }
  // Selecting the item runs the list's click, which the guard stops at once:
  // typing raises no CambioSeleccion.
  selected_ = found;
  selection_pass();
  if (found >= 0) {
    const std::size_t p = sel_start_;
    descripcion_ = list_[static_cast<std::size_t>(found)];
    sel_start_ = std::min(p, descripcion_.size());
    sel_length_ = descripcion_.size() - sel_start_;
    MostrarLista();
  } else {
    codigo_.clear();
    list_visible_ = false;
  }
  typing_guard_ = false;
}

void LookupModel::descripcion_key_down(std::int16_t key, std::int16_t shift) {
  if (!enabled_) return;
  if (key == kKeyBackspace) {
    typing_guard_ = true;
    if (sel_length_ > 0) descripcion_.erase(sel_start_);
    if (!descripcion_.empty()) drop_last_character(descripcion_);
    sel_start_ = descripcion_.size();
    sel_length_ = 0;
    typing_guard_ = false;
  } else if (key == kKeyDown) {
    MostrarLista();
    focus_ = Focus::kLista;
  } else if ((key == kKeyEnter || key == kKeyTab) && shift != kShiftCtrl) {
    if (SalirDelControl) SalirDelControl();
  }
  if (KeyDown) KeyDown(key, shift);
}

void LookupModel::codigo_entered(std::string text) {
  codigo_ = std::move(text);
  if (!enabled_ || typing_guard_) return;
  const std::string code = settings::Trim(codigo_);
  if (code.empty()) return;
  const int row = list_.empty() ? -1 : FindRow(rows_, 1, code);
  if (row >= 0) {
    descripcion_ = rows_[static_cast<std::size_t>(row)][2];
    sel_start_ = descripcion_.size();
    sel_length_ = 0;
    // The found row is also selected, so that Dato1 follows the code typed.
    set_indSel(row);
  }
  list_visible_ = false;
  focus_ = Focus::kDescripcion;
}

void LookupModel::list_key_press(std::int16_t ascii) {
  if ((ascii == kKeyEscape || ascii == kKeyEnter) && selected_ >= 0 && enabled_) {
    codigo_ = rows_[static_cast<std::size_t>(selected_)][1];
    focus_ = Focus::kDescripcion;
    if (ascii == kKeyEnter && SalirDelControl) SalirDelControl();
  }
  if (KeyPress) KeyPress(ascii);
}

}  // namespace lookup
