// Tests of the BPS totalisation relations: loading, listing, adding, removing
// and storing.
#include <gtest/gtest.h>

#include "mapping/bps_relations.h"

using namespace mapping;
using Ids = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

namespace {
Texts Listed(const RelationTable& t, RelationList list = {}) {
  ListRelations(t, list);
  Texts texts;
  for (const auto& e : list.entries) texts.push_back(e.text);
  return texts;
}
const char* const kDefaults = "17\r\n13\r\n45\r\n12\r\n71\r\n53\r\n4";
}  // namespace

TEST(BpsRelations, DefaultsAndLoading) {
  RelationTable t;
  EXPECT_TRUE(t.Load("").empty());
  EXPECT_EQ(Listed(t), (Texts{"BPS 1 -> KEL 17", "BPS 2 -> KEL 13", "BPS 5 -> KEL 45", "BPS 7 -> KEL 12",
                              "BPS 8 -> KEL 71", "HABE. -> KEL 53", "DESC. -> KEL 4"}));
  EXPECT_EQ(t.JoinKelIds(), "17,13,45,12,71,53,4");
  EXPECT_EQ(t.Store(), kDefaults);
  EXPECT_THROW(t.at(0, 7), std::out_of_range);
  EXPECT_THROW(t.set(2, 0, 1), std::out_of_range);

  // Leading numbers are read (rounded half to even); -1 is left out of the
  // list; each load starts again from the defaults.
  const std::vector<std::pair<std::string, Ids>> loads = {
      {"20\r\n-1", {20, -1, 45, 12, 71, 53, 4}},
      {" 30 KEL\r\nnada\r\n2.5\r\n3.5\r\n-7.6", {30, 0, 2, 4, -8, 53, 4}},
      {"1", {1, 13, 45, 12, 71, 53, 4}}};
  for (const auto& [text, ids] : loads) {
    EXPECT_TRUE(t.Load(text).empty());
    EXPECT_EQ(t.KelIds(), ids) << text;
  }
  t.Load("20\r\n-1");
  EXPECT_EQ(Listed(t).size(), 6u);
  EXPECT_EQ(t.Load("99999999999").size(), 1u);  // out of range: warned, read as 0
  EXPECT_EQ(t.kel(0), 0);

  // More than seven lines: a warning, and the extra lines kept for storing.
  auto warnings = t.Load("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\nnueve");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("siete"), std::string::npos);
  EXPECT_EQ(t.KelIds(), (Ids{1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(t.Store(), "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\nnueve");
  t.Reset();
  EXPECT_EQ(t.Store(), kDefaults);
}

TEST(BpsRelations, AddFollowsTheComboRules) {
  RelationTable t;
  RelationList list;
  EXPECT_TRUE(AddRelation(t, list, "1-Monto Imponible Mensual", 0, "30"));
  EXPECT_TRUE(AddRelation(t, list, "1-Monto Imponible Mensual", 0, " 31x"));  // a second entry
  EXPECT_EQ(t.kel(0), 31);
  ASSERT_EQ(list.entries.size(), 2u);
  EXPECT_EQ(list.entries[0].row, 0);
  EXPECT_EQ(list.entries[1].text, "BPS 1 -> KEL  31x");  // the text as typed
  // Haberes and Descuentos have no leading number, an empty id is no id.
  EXPECT_FALSE(AddRelation(t, list, "H-Haberes", 5, "99"));
  EXPECT_FALSE(AddRelation(t, list, "D-Descuentos", 6, "99"));
  EXPECT_FALSE(AddRelation(t, list, "2-Aguinaldo", 1, ""));
  EXPECT_EQ(t.kel(5), 53);
  // A typed number that is not an item of the combo has index -1.
  EXPECT_THROW(AddRelation(t, list, "9-Otro", -1, "5"), std::out_of_range);
  EXPECT_EQ(list.entries.size(), 2u);
  // A negative leading number makes a "DESC." or "HABE." label.
  EXPECT_TRUE(AddRelation(t, list, "-3 Descuento", 6, "8"));
  EXPECT_EQ(list.entries.back().text, "DESC. -> KEL 8");
}

TEST(BpsRelations, RemoveTouchesOnlyTheListAndTheCode) {
  RelationTable t;
  RelationList list;
  ListRelations(t, list);
  EXPECT_EQ(RemoveRelation(t, list), "Debe seleccionar la relación");
  list.selected = 1;
  EXPECT_EQ(RemoveRelation(t, list), "");
  EXPECT_EQ(list.entries.size(), 6u);
  EXPECT_EQ(list.entries[6 - 1].row, 6);
  EXPECT_EQ(list.selected, -1);
  EXPECT_EQ(t.code(1), -1);
  EXPECT_EQ(t.kel(1), 13);  // the placeholder and the stored key keep the id
  EXPECT_EQ(t.Store(), kDefaults);
  // Listing again (a new format selection) adds below the old entries.
  t.Reset();
  EXPECT_EQ(Listed(t, list).size(), 13u);
}
