// Tests of statement template expansion.
#include <gtest/gtest.h>

#include "staging/template.h"

using namespace staging;

namespace {

TemplateValues Values() {
  TemplateValues v;
  v.password = "clave";
  v.ruta = "D:\\Datos\\Sueldos.mdb";
  v.destination = "/emp/E001/Empresa.mdb";
  v.relation_ids = {17, 13, 45, 12, 71, 53, -4};
  return v;
}

}  // namespace

TEST(Template, FixedPlaceholdersAndDateBounds) {
  struct Case {
    void (*change)(TemplateValues&);
    const char* text;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {nullptr, "From [Tabla] in '[BDOrigen]'", "From [Tabla] in 'D:\\Datos\\Sueldos.mdb'"},
      {nullptr, "[pass]|[bdorigen]|[AROrigen]|[BDDESTINO]",
       "clave|D:\\Datos\\Sueldos.mdb|D:\\Datos\\Sueldos.mdb|/emp/E001/Empresa.mdb"},
      {nullptr, "[BPS1],[BPS2],[BPS5],[BPS7],[BPS8],[Habe],[Desc],[bps1]", "17,13,45,12,71,53,-4,17"},
      {nullptr, "In ([ConcCrear])", "In (-1)"},
      {[](TemplateValues& v) { v.conc_crear = "Si"; }, "[ConcCrear]", "Si"},
      {[](TemplateValues& v) { v.password.clear(); }, "pwd='[PASS]'", "pwd=''"},
      {nullptr, "", ""},
      {nullptr, "Between [Desde] and [Hasta]", "Between #01/01/1900# and #03/25/2080#"},
      {[](TemplateValues& v) { v.hasta = {2024, 2, true}; }, "[Hasta]", "#02/29/2024#"},
      {[](TemplateValues& v) { v.hasta = {2024, 12, true}; }, "[hasta]", "#12/31/2024#"},
      {[](TemplateValues& v) { v.desde = {2023, 7, true}; }, "[Desde]", "#07/01/2023#"},
      {[](TemplateValues& v) { v.desde = {2023, 7, false}; }, "[DESDE]", "#01/01/1900#"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    TemplateValues v = Values();
    if (c.change) c.change(v);
    EXPECT_EQ(ExpandTemplate(c.text, {}, v), c.expected);
  }
}

TEST(Template, PairsRunFirstInOrderWithTrimmedCampo) {
  TemplateValues v = Values();
  std::vector<settings::ReplacementPair> pairs = {
      {"  [Empresa] ", "[BDOrigen]"},  // a pair may insert a placeholder that the fixed list fills
      {"[Uno]", "[Dos]"},
      {"[dos]", "2"},                  // pairs see the result of earlier pairs
      {"   ", "nunca"},                // an empty Campo replaces nothing
  };
  EXPECT_EQ(ExpandTemplate("From [EMPRESA] Where x=[Uno]", pairs, v), "From D:\\Datos\\Sueldos.mdb Where x=2");
  // A pair whose Valor empties the text stops the later pairs; the placeholders still run.
  EXPECT_EQ(ExpandTemplate("[Todo]", {{"[Todo]", ""}, {"", "x"}}, v), "");
  EXPECT_EQ(ExpandTemplate("", pairs, v), "");
  // A relation table shorter than the seven ids is an error, even for an empty text.
  v.relation_ids.resize(6);
  EXPECT_THROW(ExpandTemplate("Select 1", {}, v), std::out_of_range);
  v.relation_ids.clear();
  EXPECT_THROW(ExpandTemplate("", {}, v), std::out_of_range);
}
