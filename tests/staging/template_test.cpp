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

TEST(Template, FixedPlaceholders) {
  TemplateValues v = Values();
  EXPECT_EQ(ExpandTemplate("Select * From [Tabla] in '[BDOrigen]'", {}, v),
            "Select * From [Tabla] in 'D:\\Datos\\Sueldos.mdb'");
  EXPECT_EQ(ExpandTemplate("[pass]|[bdorigen]|[AROrigen]|[BDDESTINO]", {}, v),
            "clave|D:\\Datos\\Sueldos.mdb|D:\\Datos\\Sueldos.mdb|/emp/E001/Empresa.mdb");
  EXPECT_EQ(ExpandTemplate("[BPS1],[BPS2],[BPS5],[BPS7],[BPS8],[Habe],[Desc],[bps1]", {}, v),
            "17,13,45,12,71,53,-4,17");
  EXPECT_EQ(ExpandTemplate("In ([ConcCrear])", {}, v), "In (-1)");
  v.conc_crear = "Si";
  EXPECT_EQ(ExpandTemplate("[ConcCrear]", {}, v), "Si");
  v.password.clear();
  EXPECT_EQ(ExpandTemplate("pwd='[PASS]'", {}, v), "pwd=''");
  EXPECT_EQ(ExpandTemplate("", {}, v), "");
}

TEST(Template, DateBounds) {
  TemplateValues v = Values();
  EXPECT_EQ(ExpandTemplate("Where Fecha Between [Desde] and [Hasta]", {}, v),
            "Where Fecha Between #01/01/1900# and #03/25/2080#");
  v.hasta = {2024, 2, true};
  EXPECT_EQ(ExpandTemplate("[Hasta]", {}, v), "#02/29/2024#");
  v.hasta = {2023, 2, true};
  EXPECT_EQ(ExpandTemplate("[Hasta]", {}, v), "#02/28/2023#");
  v.hasta = {1900, 2, true};
  EXPECT_EQ(ExpandTemplate("[Hasta]", {}, v), "#02/28/1900#");
  v.hasta = {2024, 12, true};
  EXPECT_EQ(ExpandTemplate("[hasta]", {}, v), "#12/31/2024#");
  v.desde = {2023, 7, true};
  EXPECT_EQ(ExpandTemplate("[Desde]", {}, v), "#07/01/2023#");
  v.desde.checked = false;
  EXPECT_EQ(ExpandTemplate("[DESDE]", {}, v), "#01/01/1900#");
}

TEST(Template, PairsRunFirstInOrderWithTrimmedCampo) {
  TemplateValues v = Values();
  std::vector<settings::ReplacementPair> pairs = {
      {"  [Empresa] ", "[BDOrigen]"},  // a pair may insert a placeholder that the fixed list fills
      {"[Uno]", "[Dos]"},
      {"[dos]", "2"},                  // pairs see the result of earlier pairs
      {"   ", "nunca"},                // an empty Campo replaces nothing
  };
  EXPECT_EQ(ExpandTemplate("From [EMPRESA] Where x=[Uno]", pairs, v),
            "From D:\\Datos\\Sueldos.mdb Where x=2");
  // A pair whose Valor empties the text stops the later pairs; the placeholders still run.
  EXPECT_EQ(ExpandTemplate("[Todo]", {{"[Todo]", ""}, {"", "x"}}, v), "");
  EXPECT_EQ(ExpandTemplate("", pairs, v), "");
}

TEST(Template, ShortRelationTableIsAnError) {
  TemplateValues v = Values();
  v.relation_ids.resize(6);
  EXPECT_THROW(ExpandTemplate("Select 1", {}, v), std::out_of_range);
  v.relation_ids.clear();
  EXPECT_THROW(ExpandTemplate("", {}, v), std::out_of_range);
}
