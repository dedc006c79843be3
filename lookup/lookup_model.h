// lookup/lookup_model.h — the code-and-description lookup (objDespleg) as a
// model: its rows, selection, boxes, list and keys, without any widget.
//
// The window draws a LookupModel (a code box, a description box with
// type-ahead, a drop-down list) and forwards the user's typing, clicks and
// keys to it; the mapping panels read its selection (Dato1, indSel). Events
// are plain callbacks; an unset callback is not called.
//
// Row table: three text columns per row — 0 the key (an id), 1 the code shown
// in the code box, 2 the description shown in the list and the description
// box. List item i is row i. An empty lookup holds one empty row and an empty
// list, so Datos() is never empty.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace lookup {

using Row = std::array<std::string, 3>;

// Key codes the lookup reacts to.
inline constexpr std::int16_t kKeyBackspace = 8;
inline constexpr std::int16_t kKeyTab = 9;
inline constexpr std::int16_t kKeyEnter = 13;
inline constexpr std::int16_t kKeyEscape = 27;
inline constexpr std::int16_t kKeyDown = 40;
// The shift-state argument that means Ctrl.
inline constexpr std::int16_t kShiftCtrl = 2;

// Which part of the lookup has the focus (kNone: something else has it).
enum class Focus { kNone, kCodigo, kDescripcion, kLista };

// The first row whose `column`, trimmed, equals `value` trimmed, compared
// without regard to case; -1 when none (the settings' FindRow rules).
int FindRow(const std::vector<Row>& rows, int column, std::string_view value);

class LookupModel {
 public:
  LookupModel();

  // ---- Events ---------------------------------------------------------------
  std::function<void(std::int16_t& key, std::int16_t& shift)> KeyDown;
  std::function<void(std::int16_t& ascii)> KeyPress;
  std::function<void(std::int16_t& index)> CambioSeleccion;
  std::function<void()> SalirDelControl;

  // ---- Data -----------------------------------------------------------------
  // CargarDatos: empties the table and the list, then copies fields 0, 1 and 2
  // of every row (one vector of field texts per row). A row of two fields is
  // (key, description): its key also stands as the code, so a lookup over
  // "id,Nombre" is searched and shown by id. An empty argument leaves the
  // lookup empty. The selection becomes -1 without a selection pass.
  void CargarDatos(const std::vector<std::vector<std::string>>& rows);
  // The row table (one empty row while nothing is loaded).
  const std::vector<Row>& Datos() const { return rows_; }
  // The list items (the descriptions, row by row).
  const std::vector<std::string>& lista() const { return list_; }

  // ---- Selection --------------------------------------------------------------
  int indSel() const { return selected_; }
  // Selects list item `index`; an index past the last item (or below -1)
  // selects -1. Always ends with one selection pass, also when the index did
  // not change.
  void set_indSel(int index);
  // Columns 0, 1, 2 of the selected row; "" when nothing is selected.
  std::string Dato1() const { return dato(0); }
  std::string Dato2() const { return dato(1); }
  std::string Dato3() const { return dato(2); }
  // Writes a cell of the selected row; nothing when nothing is selected.
  void set_Dato1(std::string value) { set_dato(0, std::move(value)); }
  void set_Dato2(std::string value) { set_dato(1, std::move(value)); }
  void set_Dato3(std::string value) { set_dato(2, std::move(value)); }

  // ---- Appearance -------------------------------------------------------------
  bool Enabled() const { return enabled_; }
  // Enables or disables the whole lookup; disabling also hides the list.
  void set_Enabled(bool enabled);
  std::int32_t TamCod() const { return tam_cod_; }
  // Writing TamCod asks the window for a new layout (layout_version grows).
  void set_TamCod(std::int32_t twips);
  std::int32_t TamText() const { return tam_text_; }
  void set_TamText(std::int32_t twips) { tam_text_ = twips; }
  int layout_version() const { return layout_version_; }

  // ---- What the window shows ----------------------------------------------------
  const std::string& txtCodigo() const { return codigo_; }
  const std::string& txtDescripcion() const { return descripcion_; }
  // The selected part of the description box: [start, start + length).
  std::size_t sel_start() const { return sel_start_; }
  std::size_t sel_length() const { return sel_length_; }
  bool list_visible() const { return list_visible_; }
  Focus focus() const { return focus_; }

  // MostrarLista: shows the drop-down list.
  void MostrarLista() { list_visible_ = true; }
  // SetFocus: the focus goes to the code box.
  void SetFocus() { focus_ = Focus::kCodigo; }
  // The focus moved elsewhere (or into a part of the lookup).
  void set_focus(Focus f) { focus_ = f; }

  // ---- User input -------------------------------------------------------------
  // A click on list item `index`: the list takes the focus, the item is
  // selected and the selection pass copies it into both boxes.
  void list_click(int index);
  // The description box's text became `text` by typing, with the caret at
  // `caret` (in bytes): the type-ahead, when the box has the focus and the
  // lookup is not changing its own text.
  void descripcion_changed(std::string text, std::size_t caret);
  // A key went down in the description box.
  void descripcion_key_down(std::int16_t key, std::int16_t shift);
  // The code `text` was entered in the code box: the row with that code (the
  // trimmed text) is selected and its description shown, and the focus goes
  // to the description box. An unknown code changes nothing else.
  void codigo_entered(std::string text);
  // A key was pressed in the list (Esc and Enter take the selected row).
  void list_key_press(std::int16_t ascii);

 private:
  std::string dato(int column) const;
  void set_dato(int column, std::string value);
  // The list's click: the boxes follow the selection, then CambioSeleccion.
  void selection_pass();

  std::vector<Row> rows_;
  std::vector<std::string> list_;
  int selected_ = -1;
  std::string codigo_;
  std::string descripcion_;
  std::size_t sel_start_ = 0;
  std::size_t sel_length_ = 0;
  bool list_visible_ = false;
  Focus focus_ = Focus::kNone;
  bool enabled_ = true;
  std::int32_t tam_cod_ = 750;
  std::int32_t tam_text_ = 0;
  int layout_version_ = 0;
  bool typing_guard_ = false;   // the lookup is changing its own text
  bool pending_click_ = false;  // a selection written by indSel, not yet passed
};

}  // namespace lookup
