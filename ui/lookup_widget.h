// ui/lookup_widget.h — the code-and-description lookup (objDespleg) as a
// widget: a code box, a description box with type-ahead, a drop-down button
// and a drop-down list.
//
// All behaviour is the lookup::LookupModel's: the widget turns Qt's typing,
// keys, clicks and focus changes into the model's calls and draws the model's
// state back (the boxes' texts, the completed tail selected in the description
// box, the list's items, selection and visibility, Enabled, the code box's
// width). The model's events (CambioSeleccion, SalirDelControl, KeyDown,
// KeyPress) are raised by the model itself; the widget never sets them, so the
// mapping panel that owns the model keeps its own handlers.
//
// The drop-down list floats over the window: it is a child of the top-level
// window while it is shown, placed under the boxes, so it can overlap the
// controls below the lookup like a combo box's list does.
#pragma once

#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

#include "lookup/lookup_model.h"

class QLineEdit;
class QListWidget;
class QToolButton;
class QHBoxLayout;

namespace ui {

class LookupWidget : public QWidget {
  Q_OBJECT

 public:
  // Draws `model` (must outlive the widget) and forwards typing, clicks and
  // keys to it.
  explicit LookupWidget(lookup::LookupModel& model, QWidget* parent = nullptr);
  ~LookupWidget() override;

  // Redraws the boxes and the list from the model (after CargarDatos, indSel
  // set by code, Enabled ...). Never moves the keyboard focus.
  void refresh();
  lookup::LookupModel& model();
  QLineEdit* code_box();         // objectName "Codigo"
  QLineEdit* description_box();  // objectName "Descripcion"
  QListWidget* list();           // objectName "lstDatos"
  QToolButton* drop_button();    // objectName "imgDesplegar"

  // Gives the keyboard focus to the part of the lookup the model names
  // (model().focus(); the code box when it names none), e.g. after a mapping
  // panel called SetFocus on the model.
  void focus_from_model();

  // True while the drop-down list is drawn.
  bool list_shown() const;

  // The VB key code and shift state (1 Shift, 2 Ctrl, 4 Alt) of a Qt key
  // event, as the model's KeyDown carries them; 0 for keys without one.
  static std::int16_t vb_key_code(int qt_key);
  static std::int16_t vb_shift_state(Qt::KeyboardModifiers modifiers);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void description_edited(const QString& text);
  void code_edited();
  void list_row_changed(int row);
  void list_item_clicked(int row);
  void drop_button_clicked();
  bool description_key(QKeyEvent* key);
  bool code_key(QKeyEvent* key);
  bool list_key(QKeyEvent* key);
  void enter_code();
  // Focus went somewhere: updates the model's focus and closes the list when
  // it left the lookup altogether.
  void focus_changed(QWidget* now);
  bool owns(const QWidget* widget) const;
  void draw_list_items();
  void place_list();
  void apply_layout();
  // After a call made from the user's input: the keyboard focus follows the
  // model when it is inside the lookup.
  void follow_model_focus();

  lookup::LookupModel& model_;
  QHBoxLayout* layout_ = nullptr;
  QLineEdit* code_ = nullptr;
  QLineEdit* description_ = nullptr;
  QToolButton* drop_ = nullptr;
  QListWidget* list_ = nullptr;
  std::vector<std::string> drawn_items_;
  int drawn_layout_ = -1;
  bool drawing_ = false;     // the widget is writing its own controls
  bool dropped_ = false;     // the user opened the list (the model's list_visible is also needed)
  bool code_edited_ = false;  // the code box was typed into since it was last entered
};

}  // namespace ui
