// ui/lookup_widget.cpp — drawing the lookup model and feeding it Qt's input.
#include "ui/lookup_widget.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QToolButton>
#include <algorithm>

namespace ui {
namespace {

// Rows the drop-down list shows before it scrolls.
constexpr int kListRows = 8;

// Byte offsets of the model (UTF-8) to character offsets of a QString and back.
int to_chars(const std::string& text, std::size_t bytes) {
  return static_cast<int>(QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(bytes, text.size()))).size());
}
std::size_t to_bytes(const QString& text, int chars) {
  return static_cast<std::size_t>(text.left(chars).toUtf8().size());
}

// Twips (1440 an inch) to pixels of `widget`'s screen.
int twips_to_pixels(const QWidget* widget, std::int32_t twips) {
  return static_cast<int>(static_cast<long long>(twips) * widget->logicalDpiX() / 1440);
}

}  // namespace

LookupWidget::LookupWidget(lookup::LookupModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  code_ = new QLineEdit(this);
  code_->setObjectName("Codigo");
  description_ = new QLineEdit(this);
  description_->setObjectName("Descripcion");
  drop_ = new QToolButton(this);
  drop_->setObjectName("imgDesplegar");
  drop_->setArrowType(Qt::DownArrow);
  drop_->setFocusPolicy(Qt::NoFocus);
  drop_->setToolTip(QStringLiteral("Mostrar la lista"));
  list_ = new QListWidget(this);
  list_->setObjectName("lstDatos");
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setUniformItemSizes(true);  // long lists stay quick to fill
  list_->hide();

  layout_ = new QHBoxLayout(this);
  layout_->setContentsMargins(0, 0, 0, 0);
  layout_->setSpacing(2);
  layout_->addWidget(code_);
  layout_->addWidget(description_, 1);
  layout_->addWidget(drop_);
  setFocusProxy(code_);
  setTabOrder(code_, description_);

  for (QWidget* part : {static_cast<QWidget*>(code_), static_cast<QWidget*>(description_),
                        static_cast<QWidget*>(list_)}) {
    part->installEventFilter(this);
  }
  connect(description_, &QLineEdit::textEdited, this, &LookupWidget::description_edited);
  connect(code_, &QLineEdit::textEdited, this, [this] { code_edited_ = true; });
  connect(list_, &QListWidget::currentRowChanged, this, &LookupWidget::list_row_changed);
  connect(list_, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { list_item_clicked(list_->row(item)); });
  connect(drop_, &QToolButton::clicked, this, &LookupWidget::drop_button_clicked);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focus_changed(now); });
  refresh();
}

LookupWidget::~LookupWidget() {
  // The list may live in the window while it is shown; it is ours all the same.
  if (list_ && list_->parentWidget() != this) delete list_;
}

lookup::LookupModel& LookupWidget::model() { return model_; }
QLineEdit* LookupWidget::code_box() { return code_; }
QLineEdit* LookupWidget::description_box() { return description_; }
QListWidget* LookupWidget::list() { return list_; }
QToolButton* LookupWidget::drop_button() { return drop_; }
bool LookupWidget::list_shown() const { return list_->isVisible(); }

void LookupWidget::refresh() {
  drawing_ = true;
  const bool enabled = model_.Enabled();
  code_->setEnabled(enabled);
  description_->setEnabled(enabled);
  drop_->setEnabled(enabled);
  list_->setEnabled(enabled);
  if (drawn_layout_ != model_.layout_version()) apply_layout();

  const QString code = QString::fromStdString(model_.txtCodigo());
  if (code_->text() != code) code_->setText(code);
  const std::string& text = model_.txtDescripcion();
  const QString description = QString::fromStdString(text);
  if (description_->text() != description) description_->setText(description);
  const int start = to_chars(text, model_.sel_start());
  const int length = to_chars(text, model_.sel_start() + model_.sel_length()) - start;
  if (length > 0) {
    // The completed tail is selected with the caret left where the user typed.
    description_->setCursorPosition(description.size());
    description_->cursorBackward(true, length);
  } else if (description_->hasSelectedText() || description_->cursorPosition() != start) {
    description_->setCursorPosition(start);
  }

  draw_list_items();
  const int selected = model_.indSel();
  if (list_->currentRow() != selected) list_->setCurrentRow(selected);
  if (selected >= 0) list_->scrollToItem(list_->item(selected));
  const bool show = enabled && dropped_ && model_.list_visible() && isVisible();
  if (show) {
    place_list();
    list_->show();
    list_->raise();
  } else {
    list_->hide();
  }
  drawing_ = false;
}

void LookupWidget::draw_list_items() {
  if (drawn_items_ == model_.lista()) return;
  drawn_items_ = model_.lista();
  list_->clear();
  QStringList items;
  items.reserve(static_cast<qsizetype>(drawn_items_.size()));
  for (const std::string& item : drawn_items_) items.push_back(QString::fromStdString(item));
  list_->addItems(items);
}

void LookupWidget::apply_layout() {
  drawn_layout_ = model_.layout_version();
  code_->setFixedWidth(std::max(24, twips_to_pixels(this, model_.TamCod())));
  // TamText 0 lets the description box take the rest of the width.
  if (model_.TamText() > 0) {
    description_->setFixedWidth(twips_to_pixels(this, model_.TamText()));
  } else {
    description_->setMinimumWidth(0);
    description_->setMaximumWidth(QWIDGETSIZE_MAX);
  }
}

void LookupWidget::place_list() {
  QWidget* host = window();
  if (host == this) host = nullptr;
  if (host && list_->parentWidget() != host) {
    list_->setParent(host);
    list_->installEventFilter(this);
  }
  QWidget* frame = list_->parentWidget();
  const int row_height = std::max(list_->sizeHintForRow(0), fontMetrics().height() + 2);
  const int rows = std::clamp(list_->count(), 1, kListRows);
  int height = rows * row_height + 2 * list_->frameWidth();
  const QPoint below = mapTo(frame, QPoint(0, this->height()));
  int top = below.y();
  // Not enough room below: the list opens upwards, or fills what there is.
  if (top + height > frame->height()) {
    const int above = mapTo(frame, QPoint(0, 0)).y();
    if (above >= height) {
      top = above - height;
    } else {
      height = std::max(row_height, frame->height() - top);
    }
  }
  list_->setGeometry(below.x(), top, width(), height);
}

void LookupWidget::focus_from_model() {
  switch (model_.focus()) {
    case lookup::Focus::kDescripcion:
      description_->setFocus(Qt::OtherFocusReason);
      break;
    case lookup::Focus::kLista:
      if (list_->isVisible()) {
        list_->setFocus(Qt::OtherFocusReason);
        break;
      }
      description_->setFocus(Qt::OtherFocusReason);
      break;
    default:
      code_->setFocus(Qt::OtherFocusReason);
      break;
  }
}

void LookupWidget::follow_model_focus() {
  QWidget* focused = QApplication::focusWidget();
  if (focused == nullptr || !owns(focused)) return;
  if (model_.focus() == lookup::Focus::kNone) return;
  focus_from_model();
}

bool LookupWidget::owns(const QWidget* widget) const {
  return widget == code_ || widget == description_ || widget == list_ || widget == this;
}

// ---- Input -------------------------------------------------------------------

void LookupWidget::description_edited(const QString& text) {
  if (drawing_) return;
  // textEdited comes only from the user's typing into this box.
  model_.set_focus(lookup::Focus::kDescripcion);
  model_.descripcion_changed(text.toStdString(), to_bytes(text, description_->cursorPosition()));
  dropped_ = model_.list_visible();
  refresh();
}

void LookupWidget::enter_code() {
  code_edited_ = false;
  model_.codigo_entered(code_->text().toStdString());
  dropped_ = false;
  refresh();
  follow_model_focus();
}

void LookupWidget::list_row_changed(int row) {
  if (drawing_ || row < 0) return;
  // Moving through the list with the keys or the mouse is the list's click.
  model_.list_click(row);
  refresh();
}

void LookupWidget::list_item_clicked(int row) {
  if (drawing_ || row < 0) return;
  if (model_.indSel() != row) model_.list_click(row);
  // A click on an item takes it, as a combo box does: the list closes and
  // typing goes on in the description box.
  // The focus moves before the list hides, so that Qt does not pass it on.
  description_->setFocus(Qt::MouseFocusReason);
  model_.set_focus(lookup::Focus::kDescripcion);
  dropped_ = false;
  refresh();
}

void LookupWidget::drop_button_clicked() {
  if (!model_.Enabled()) return;
  if (list_->isVisible()) {
    description_->setFocus(Qt::MouseFocusReason);
    dropped_ = false;
    refresh();
    return;
  }
  model_.MostrarLista();
  model_.set_focus(lookup::Focus::kLista);
  dropped_ = true;
  refresh();
  list_->setFocus(Qt::MouseFocusReason);
}

bool LookupWidget::description_key(QKeyEvent* key) {
  const std::int16_t code = vb_key_code(key->key());
  const std::int16_t shift = vb_shift_state(key->modifiers());
  model_.set_focus(lookup::Focus::kDescripcion);
  model_.descripcion_key_down(code, shift);
  if (!model_.Enabled()) return false;
  switch (code) {
    case lookup::kKeyBackspace:
      // The model cuts the completed tail and one more character itself.
      refresh();
      return true;
    case lookup::kKeyDown:
      dropped_ = model_.list_visible();
      refresh();
      follow_model_focus();
      if (list_->isVisible() && list_->currentRow() < 0 && list_->count() > 0) list_->setCurrentRow(0);
      return true;
    case lookup::kKeyEnter:
      dropped_ = false;
      refresh();
      return true;
    case lookup::kKeyTab:
      dropped_ = false;
      refresh();
      return false;  // Tab still moves the focus on
    default:
      return false;  // the box types the key; textEdited runs the type-ahead
  }
}

bool LookupWidget::code_key(QKeyEvent* key) {
  if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
    enter_code();
    return true;
  }
  if (key->key() == Qt::Key_Down && model_.Enabled()) {
    description_->setFocus(Qt::TabFocusReason);
    return description_key(key);
  }
  return false;
}

bool LookupWidget::list_key(QKeyEvent* key) {
  std::int16_t ascii = 0;
  if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
    ascii = lookup::kKeyEnter;
  } else if (key->key() == Qt::Key_Escape) {
    ascii = lookup::kKeyEscape;
  } else if (key->key() == Qt::Key_Backspace) {
    ascii = lookup::kKeyBackspace;
  } else if (!key->text().isEmpty() && key->text().at(0).unicode() < 128) {
    ascii = static_cast<std::int16_t>(key->text().at(0).unicode());
  }
  if (ascii == 0) return false;
  model_.set_focus(lookup::Focus::kLista);
  model_.list_key_press(ascii);
  const bool taken = ascii == lookup::kKeyEnter || ascii == lookup::kKeyEscape;
  if (taken) {
    // Esc closes the list even with nothing selected.
    description_->setFocus(Qt::OtherFocusReason);
    if (model_.focus() == lookup::Focus::kLista) model_.set_focus(lookup::Focus::kDescripcion);
    dropped_ = false;
    refresh();
  }
  return taken;
}

bool LookupWidget::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    // A disabled lookup takes no keys (the model raises no events then).
    if (!model_.Enabled()) return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched == description_) return description_key(key);
    if (watched == code_) return code_key(key);
    if (watched == list_) return list_key(key);
  } else if (event->type() == QEvent::FocusOut && watched == code_ && code_edited_) {
    // Leaving the code box enters the code typed into it.
    code_edited_ = false;
    model_.codigo_entered(code_->text().toStdString());
    dropped_ = false;
    QMetaObject::invokeMethod(this, [this] {
      refresh();
      follow_model_focus();
    }, Qt::QueuedConnection);
  }
  return QWidget::eventFilter(watched, event);
}

void LookupWidget::focus_changed(QWidget* now) {
  if (now == code_) {
    model_.set_focus(lookup::Focus::kCodigo);
  } else if (now == description_) {
    model_.set_focus(lookup::Focus::kDescripcion);
  } else if (now == list_) {
    model_.set_focus(lookup::Focus::kLista);
  } else if (model_.focus() != lookup::Focus::kNone && now != nullptr) {
    // The focus left the lookup: the list closes.
    model_.set_focus(lookup::Focus::kNone);
    if (dropped_) {
      dropped_ = false;
      refresh();
    }
  }
}

void LookupWidget::hideEvent(QHideEvent* event) {
  list_->hide();
  QWidget::hideEvent(event);
}

std::int16_t LookupWidget::vb_key_code(int qt_key) {
  if ((qt_key >= Qt::Key_A && qt_key <= Qt::Key_Z) || (qt_key >= Qt::Key_0 && qt_key <= Qt::Key_9)) {
    return static_cast<std::int16_t>(qt_key);  // Qt's codes are the upper-case ASCII ones
  }
  if (qt_key >= Qt::Key_F1 && qt_key <= Qt::Key_F16) return static_cast<std::int16_t>(112 + (qt_key - Qt::Key_F1));
  switch (qt_key) {
    case Qt::Key_Backspace: return lookup::kKeyBackspace;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return lookup::kKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter: return lookup::kKeyEnter;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Escape: return lookup::kKeyEscape;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return lookup::kKeyDown;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    default: return 0;
  }
}

std::int16_t LookupWidget::vb_shift_state(Qt::KeyboardModifiers modifiers) {
  std::int16_t state = 0;
  if (modifiers & Qt::ShiftModifier) state |= 1;
  if (modifiers & Qt::ControlModifier) state |= lookup::kShiftCtrl;
  if (modifiers & Qt::AltModifier) state |= 4;
  return state;
}

}  // namespace ui
