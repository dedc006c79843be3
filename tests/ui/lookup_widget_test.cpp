// Tests of the lookup widget: real key and mouse events on Qt's offscreen
// platform, checked against the lookup model's state and events.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "lookup/lookup_model.h"
#include "ui/lookup_widget.h"
#include "ui_parts_support.h"

namespace {

struct Events {
  std::vector<int> cambios;
  int salidas = 0;
  std::vector<std::pair<int, int>> key_downs;
  std::vector<int> key_presses;
};

class LookupWidgetTest : public ui_parts_test::WithApp, public testing::Test {
 protected:
  void SetUp() override {
    ui_parts_test::app();
    model_.CargarDatos({{"1", "A1", "Abono"}, {"2", "AG", "Aguinaldo"}, {"3", "HE", "Horas extra"},
                        {"4", "ÑA", "Ñandú"}});
    model_.CambioSeleccion = [this](std::int16_t& index) { events_.cambios.push_back(index); };
    model_.SalirDelControl = [this] { ++events_.salidas; };
    model_.KeyDown = [this](std::int16_t& key, std::int16_t& shift) { events_.key_downs.emplace_back(key, shift); };
    model_.KeyPress = [this](std::int16_t& ascii) { events_.key_presses.push_back(ascii); };
    window_.resize(420, 320);
    auto* layout = new QVBoxLayout(&window_);
    widget_ = new ui::LookupWidget(model_, &window_);
    other_ = new QLineEdit(&window_);
    other_->setObjectName("otro");
    layout->addWidget(widget_);
    layout->addWidget(other_);
    layout->addStretch();
    window_.show();
    window_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
    widget_->refresh();
  }

  QLineEdit* code() { return widget_->code_box(); }
  QLineEdit* description() { return widget_->description_box(); }
  void focus(QWidget* w) {
    w->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
  }

  lookup::LookupModel model_;
  Events events_;
  QWidget window_;
  ui::LookupWidget* widget_ = nullptr;
  QLineEdit* other_ = nullptr;
};

TEST_F(LookupWidgetTest, TypingCompletesTheDescriptionAndSelectsTheTail) {
  focus(description());
  QTest::keyClicks(description(), "ab");
  EXPECT_EQ(description()->text(), "Abono");
  EXPECT_EQ(description()->selectedText(), "ono");
  EXPECT_EQ(description()->selectionStart(), 2);
  EXPECT_EQ(model_.indSel(), 0);
  EXPECT_EQ(model_.Dato2(), "A1");
  // The type-ahead's own selection does not pass: the code box keeps what it had.
  EXPECT_EQ(code()->text(), QString::fromStdString(model_.txtCodigo()));
  EXPECT_TRUE(widget_->list_shown());
  EXPECT_EQ(widget_->list()->currentRow(), 0);
  EXPECT_TRUE(events_.cambios.empty()) << "typing raises no CambioSeleccion";

  // Typing over the selected tail goes on completing.
  QTest::keyClicks(description(), "o");
  EXPECT_EQ(description()->text(), "Abono");
  EXPECT_EQ(description()->selectedText(), "no");

  // Backspace cuts the completed tail and one more letter.
  QTest::keyClick(description(), Qt::Key_Backspace);
  EXPECT_EQ(model_.txtDescripcion(), "Ab");
  EXPECT_EQ(description()->text(), "Ab");
  EXPECT_FALSE(description()->hasSelectedText());

  QTest::keyClick(description(), Qt::Key_Backspace);
  QTest::keyClicks(description(), "g");
  EXPECT_EQ(description()->text(), "Aguinaldo");
  EXPECT_EQ(description()->selectedText(), "uinaldo");
  EXPECT_EQ(model_.indSel(), 1);
  EXPECT_EQ(model_.Dato1(), "2");
}

TEST_F(LookupWidgetTest, TypeAheadCountsCharactersNotBytes) {
  focus(description());
  // (The model compares letters without case only in ASCII: "Ñ" is typed as shown.)
  QTest::keyClicks(description(), QString::fromUtf8("Ñ"));
  EXPECT_EQ(description()->text(), QString::fromUtf8("Ñandú"));
  EXPECT_EQ(description()->selectedText(), QString::fromUtf8("andú"));
  EXPECT_EQ(model_.Dato2(), "ÑA");
}

TEST_F(LookupWidgetTest, EnteringACodeSelectsItsRow) {
  focus(code());
  QTest::keyClicks(code(), "ag ");
  QTest::keyClick(code(), Qt::Key_Return);
  EXPECT_EQ(model_.indSel(), 1);
  EXPECT_EQ(description()->text(), "Aguinaldo");
  EXPECT_EQ(events_.cambios, std::vector<int>{1});
  EXPECT_EQ(QApplication::focusWidget(), description());

  // Leaving the code box with Tab enters the code too.
  focus(code());
  code()->selectAll();
  QTest::keyClicks(code(), "he");
  QTest::keyClick(code(), Qt::Key_Tab);
  QApplication::processEvents();
  EXPECT_EQ(model_.Dato1(), "3");
  EXPECT_EQ(description()->text(), "Horas extra");
  EXPECT_EQ(QApplication::focusWidget(), description());
}

TEST_F(LookupWidgetTest, KeysOfTheDescriptionBoxRaiseTheModelsEvents) {
  struct Case {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    int salidas;
    std::pair<int, int> key_down;
  };
  const Case cases[] = {
      {Qt::Key_Return, Qt::NoModifier, 1, {13, 0}},
      {Qt::Key_Return, Qt::ControlModifier, 0, {13, 2}},
      {Qt::Key_Tab, Qt::NoModifier, 1, {9, 0}},
      {Qt::Key_Tab, Qt::ControlModifier, 0, {9, 2}},
      {Qt::Key_F2, Qt::ShiftModifier, 0, {113, 1}},
  };
  for (const Case& c : cases) {
    events_ = {};
    focus(description());
    QTest::keyClick(description(), c.key, c.modifiers);
    EXPECT_EQ(events_.salidas, c.salidas) << c.key_down.first << "/" << c.key_down.second;
    ASSERT_FALSE(events_.key_downs.empty());
    EXPECT_EQ(events_.key_downs.back(), c.key_down);  // after the modifier's own KeyDown
  }
}

TEST_F(LookupWidgetTest, DownOpensTheListAndItsKeysTakeTheRow) {
  focus(description());
  QTest::keyClicks(description(), "ag");
  events_ = {};
  QTest::keyClick(description(), Qt::Key_Down);
  EXPECT_TRUE(widget_->list_shown());
  EXPECT_EQ(QApplication::focusWidget(), widget_->list());
  EXPECT_EQ(model_.focus(), lookup::Focus::kLista);

  // Moving in the list is its click: the boxes follow the selection.
  QTest::keyClick(widget_->list(), Qt::Key_Down);
  EXPECT_EQ(model_.indSel(), 2);
  EXPECT_EQ(description()->text(), "Horas extra");
  EXPECT_EQ(events_.cambios, std::vector<int>{2});

  // Esc takes the row without leaving the control.
  QTest::keyClick(widget_->list(), Qt::Key_Escape);
  EXPECT_EQ(code()->text(), "HE");
  EXPECT_EQ(events_.key_presses, std::vector<int>{27});
  EXPECT_EQ(events_.salidas, 0);
  EXPECT_FALSE(widget_->list_shown());
  EXPECT_EQ(QApplication::focusWidget(), description());

  // Enter takes it and leaves.
  QTest::keyClick(description(), Qt::Key_Down);
  QTest::keyClick(widget_->list(), Qt::Key_Up);
  QTest::keyClick(widget_->list(), Qt::Key_Return);
  EXPECT_EQ(model_.Dato1(), "2");
  EXPECT_EQ(events_.salidas, 1);
  EXPECT_FALSE(widget_->list_shown());
}

TEST_F(LookupWidgetTest, ClickingAnItemTakesItAndClosesTheList) {
  QTest::mouseClick(widget_->drop_button(), Qt::LeftButton);
  ASSERT_TRUE(widget_->list_shown());
  QListWidget* list = widget_->list();
  const QRect item = list->visualItemRect(list->item(3));
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item.center());
  EXPECT_EQ(model_.indSel(), 3);
  EXPECT_EQ(events_.cambios, std::vector<int>{3});
  EXPECT_EQ(code()->text(), QString::fromUtf8("ÑA"));
  EXPECT_EQ(description()->text(), QString::fromUtf8("Ñandú"));
  EXPECT_FALSE(widget_->list_shown());
}

TEST_F(LookupWidgetTest, LeavingTheLookupClosesTheList) {
  focus(description());
  QTest::keyClicks(description(), "h");
  ASSERT_TRUE(widget_->list_shown());
  focus(other_);
  EXPECT_FALSE(widget_->list_shown());
  EXPECT_EQ(model_.focus(), lookup::Focus::kNone);
  EXPECT_EQ(model_.indSel(), 2) << "the row typed stays chosen";
}

TEST_F(LookupWidgetTest, DisabledLookupTakesNoInput) {
  focus(description());
  QTest::keyClicks(description(), "a");
  model_.set_Enabled(false);
  widget_->refresh();
  EXPECT_FALSE(code()->isEnabled());
  EXPECT_FALSE(description()->isEnabled());
  EXPECT_FALSE(widget_->list_shown());
  events_ = {};
  QTest::keyClicks(description(), "h");
  QTest::keyClick(description(), Qt::Key_Return);
  EXPECT_EQ(model_.txtDescripcion(), "Abono");
  EXPECT_EQ(events_.salidas, 0);
  EXPECT_TRUE(events_.key_downs.empty());

  model_.set_Enabled(true);
  widget_->refresh();
  EXPECT_TRUE(description()->isEnabled());
}

TEST_F(LookupWidgetTest, RefreshDrawsWhatTheProgramChanged) {
  model_.CargarDatos({{"10", "Mensual"}, {"20", "Jornalero"}});
  widget_->refresh();
  ASSERT_EQ(widget_->list()->count(), 2);
  EXPECT_EQ(widget_->list()->item(1)->text(), "Jornalero");
  EXPECT_EQ(code()->text(), "");

  model_.set_indSel(1);
  widget_->refresh();
  EXPECT_EQ(code()->text(), "20");
  EXPECT_EQ(widget_->list()->currentRow(), 1);
  EXPECT_EQ(events_.cambios, std::vector<int>{1}) << "drawing raises nothing more";

  const int narrow = code()->minimumWidth();
  model_.set_TamCod(1500);
  widget_->refresh();
  EXPECT_GT(code()->minimumWidth(), narrow);

  model_.set_indSel(-1);
  widget_->refresh();
  EXPECT_EQ(code()->text(), "");
  EXPECT_EQ(description()->text(), "");
}

}  // namespace
