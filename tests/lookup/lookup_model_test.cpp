// Tests of the lookup model: loading, selection and its events, type-ahead,
// code entry and keys.
#include <gtest/gtest.h>

#include "lookup/lookup_model.h"

namespace {

using lookup::Focus;
using lookup::LookupModel;
using Log = std::vector<std::string>;

// A loaded lookup that records its events.
struct Recorded {
  LookupModel m;
  Log events;
  Recorded() {
    m.CargarDatos({{"10", "AB", "Abono"}, {"11", "AG", "Aguinaldo"}, {"12", "SU", "Sueldo"}});
    m.CambioSeleccion = [this](std::int16_t& i) { events.push_back("cambio " + std::to_string(i)); };
    m.SalirDelControl = [this] { events.push_back("salir"); };
    m.KeyDown = [this](std::int16_t& k, std::int16_t& s) {
      events.push_back("keydown " + std::to_string(k) + "/" + std::to_string(s));
    };
    m.KeyPress = [this](std::int16_t& k) { events.push_back("keypress " + std::to_string(k)); };
  }
};

TEST(LookupModel, EmptyAndLoaded) {
  LookupModel m;
  ASSERT_EQ(m.Datos().size(), 1u);  // one empty row, an empty list
  EXPECT_EQ(m.Datos()[0], (lookup::Row{"", "", ""}));
  EXPECT_TRUE(m.lista().empty());
  EXPECT_TRUE(m.Enabled());

  // Two fields are (key, description); the key is also the code.
  m.CargarDatos({{"1", "Mensual"}, {"2", "Aguinaldo"}});
  EXPECT_EQ(m.Datos(), (std::vector<lookup::Row>{{"1", "1", "Mensual"}, {"2", "2", "Aguinaldo"}}));
  EXPECT_EQ(m.lista(), (Log{"Mensual", "Aguinaldo"}));
  m.set_indSel(1);
  m.CargarDatos({});
  EXPECT_EQ(m.indSel(), -1);
  EXPECT_EQ(m.Datos().size(), 1u);
}

TEST(LookupModel, EveryIndSelWriteRaisesOneSelectionChange) {
  Recorded r;
  EXPECT_EQ(r.m.Dato1(), "");  // nothing selected
  struct Step {
    int write;
    int selected;
    std::string dato1, codigo;
  };
  const std::vector<Step> steps = {
      {1, 1, "11", "AG"}, {1, 1, "11", "AG"},  // the same index again still raises the event
      {3, -1, "", ""},                         // past the end: none
      {2, 2, "12", "SU"}, {-1, -1, "", ""},
  };
  for (const Step& s : steps) {
    r.events.clear();
    r.m.set_indSel(s.write);
    EXPECT_EQ(r.events, Log{"cambio " + std::to_string(s.selected)}) << s.write;
    EXPECT_EQ(r.m.indSel(), s.selected);
    EXPECT_EQ(r.m.Dato1(), s.dato1);
    EXPECT_EQ(r.m.txtCodigo(), s.codigo);
  }
  // Writing a cell needs a selection.
  r.m.set_Dato3("x");
  r.m.set_indSel(0);
  r.m.set_Dato3("Abono nuevo");
  EXPECT_EQ(r.m.Datos()[0][2], "Abono nuevo");
  EXPECT_EQ(r.m.Dato2(), "AB");
}

TEST(LookupModel, TypeAheadCompletesTheFirstMatchAndSelectsTheTail) {
  Recorded r;
  r.m.set_focus(Focus::kDescripcion);
  r.events.clear();
  r.m.descripcion_changed("ab", 2);
  EXPECT_EQ(r.m.txtDescripcion(), "Abono");
  EXPECT_EQ(r.m.sel_start(), 2u);
  EXPECT_EQ(r.m.sel_length(), 3u);
  EXPECT_EQ(r.m.indSel(), 0);
  EXPECT_TRUE(r.m.list_visible());
  EXPECT_EQ(r.events, Log{});  // typing raises no selection change

  r.m.descripcion_changed("AGU", 3);
  EXPECT_EQ(r.m.txtDescripcion(), "Aguinaldo");
  EXPECT_EQ(r.m.indSel(), 1);

  // Backspace cuts the completed tail and one more character.
  r.m.descripcion_key_down(lookup::kKeyBackspace, 0);
  EXPECT_EQ(r.m.txtDescripcion(), "Ag");
  EXPECT_EQ(r.m.sel_start(), 2u);

  r.m.descripcion_changed("x", 1);
  EXPECT_EQ(r.m.txtDescripcion(), "x");
  EXPECT_EQ(r.m.txtCodigo(), "");
  EXPECT_EQ(r.m.indSel(), -1);
  EXPECT_FALSE(r.m.list_visible());

  // Accented capitals fold like plain ones; accents themselves still count.
  LookupModel accented;
  accented.CargarDatos({{"1", "AN", "Ánimo"}, {"2", "NA", "Ñandú"}, {"3", "NO", "Nómina"}});
  accented.set_focus(Focus::kDescripcion);
  accented.descripcion_changed("ñ", 2);
  EXPECT_EQ(accented.txtDescripcion(), "Ñandú");
  EXPECT_EQ(accented.sel_start(), 2u);
  accented.descripcion_changed("nÓ", 3);
  EXPECT_EQ(accented.indSel(), 2);
  accented.descripcion_changed("an", 2);
  EXPECT_EQ(accented.indSel(), -1);

  // Without the focus (the lookup's own changes) there is no type-ahead.
  r.m.set_focus(Focus::kCodigo);
  r.m.descripcion_changed("su", 2);
  EXPECT_EQ(r.m.txtDescripcion(), "su");
  EXPECT_EQ(r.m.indSel(), -1);
}

TEST(LookupModel, CodeEntrySelectsTheRowAndMovesOn) {
  Recorded r;
  r.m.MostrarLista();
  r.events.clear();
  r.m.codigo_entered(" su ");
  EXPECT_EQ(r.m.txtDescripcion(), "Sueldo");
  EXPECT_EQ(r.m.indSel(), 2);
  EXPECT_EQ(r.m.Dato1(), "12");
  EXPECT_EQ(r.m.focus(), Focus::kDescripcion);
  EXPECT_FALSE(r.m.list_visible());
  EXPECT_EQ(r.events, Log{"cambio 2"});

  // An unknown code changes nothing but the box; an empty one not even the focus.
  r.m.codigo_entered("ZZ");
  EXPECT_EQ(r.m.indSel(), 2);
  EXPECT_EQ(r.m.txtDescripcion(), "Sueldo");
  r.m.set_focus(Focus::kCodigo);
  r.m.codigo_entered("  ");
  EXPECT_EQ(r.m.focus(), Focus::kCodigo);

  // Disabled: nothing happens, and the list is hidden.
  r.m.MostrarLista();
  r.m.set_Enabled(false);
  EXPECT_FALSE(r.m.list_visible());
  r.m.codigo_entered("AB");
  EXPECT_EQ(r.m.indSel(), 2);
}

TEST(LookupModel, KeysInTheDescriptionAndTheList) {
  struct Case {
    bool in_list;
    std::int16_t key, shift;
    int selected;
    Log events;
    Focus focus;
  };
  const std::vector<Case> cases = {
      {false, lookup::kKeyEnter, 0, -1, {"salir", "keydown 13/0"}, Focus::kDescripcion},
      {false, lookup::kKeyTab, 1, -1, {"salir", "keydown 9/1"}, Focus::kDescripcion},
      {false, lookup::kKeyEnter, lookup::kShiftCtrl, -1, {"keydown 13/2"}, Focus::kDescripcion},
      {false, lookup::kKeyDown, 0, -1, {"keydown 40/0"}, Focus::kLista},
      {false, 65, 0, -1, {"keydown 65/0"}, Focus::kDescripcion},
      {true, lookup::kKeyEnter, 0, 1, {"salir", "keypress 13"}, Focus::kDescripcion},
      {true, lookup::kKeyEscape, 0, 1, {"keypress 27"}, Focus::kDescripcion},
      {true, lookup::kKeyEnter, 0, -1, {"keypress 13"}, Focus::kLista},  // nothing selected
      {true, 97, 0, 1, {"keypress 97"}, Focus::kLista},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const Case& c = cases[i];
    Recorded r;
    if (c.in_list) {
      r.m.list_click(c.selected);
      r.events.clear();
      r.m.list_key_press(c.key);
    } else {
      r.m.set_focus(Focus::kDescripcion);
      r.events.clear();
      r.m.descripcion_key_down(c.key, c.shift);
    }
    EXPECT_EQ(r.events, c.events) << "case " << i;
    EXPECT_EQ(r.m.focus(), c.focus) << "case " << i;
    if (c.in_list && c.selected >= 0) {
      EXPECT_EQ(r.m.txtCodigo(), "AG") << "case " << i;
    }
  }
}

TEST(LookupModel, ListClickFillsBothBoxes) {
  Recorded r;
  r.m.set_focus(Focus::kDescripcion);
  r.m.descripcion_changed("Sue", 3);
  r.events.clear();
  r.m.list_click(0);
  EXPECT_EQ(r.events, Log{"cambio 0"});
  EXPECT_EQ(r.m.txtCodigo(), "AB");
  EXPECT_EQ(r.m.txtDescripcion(), "Abono");
  EXPECT_EQ(r.m.focus(), Focus::kLista);
}

}  // namespace
