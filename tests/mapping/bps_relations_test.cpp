// Tests of the BPS totalisation relations: loading, listing, adding, removing
// and storing.
#include <gtest/gtest.h>

#include "mapping/bps_relations.h"

using namespace mapping;

namespace {

std::vector<std::string> Texts(const RelationList& list) {
  std::vector<std::string> t;
  for (const auto& e : list.entries) t.push_back(e.text);
  return t;
}

}  // namespace

TEST(BpsRelations, DefaultsListSevenEntries) {
  RelationTable t;
  EXPECT_TRUE(t.Load("").empty());
  RelationList list;
  ListRelations(t, list);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"BPS 1 -> KEL 17", "BPS 2 -> KEL 13", "BPS 5 -> KEL 45",
                                                   "BPS 7 -> KEL 12", "BPS 8 -> KEL 71", "HABE. -> KEL 53",
                                                   "DESC. -> KEL 4"}));
  EXPECT_EQ(list.entries[6].row, 6);
  EXPECT_EQ(t.JoinKelIds(), "17,13,45,12,71,53,4");
  EXPECT_EQ(t.Store(), "17\r\n13\r\n45\r\n12\r\n71\r\n53\r\n4");
  EXPECT_EQ(CodBpsItems()[5], "H-Haberes");
  EXPECT_THROW(t.at(0, 7), std::out_of_range);
  EXPECT_THROW(t.set(2, 0, 1), std::out_of_range);
}

TEST(BpsRelations, LoadReadsLeadingNumbersAndSkipsMinusOneInTheList) {
  RelationTable t;
  t.Load("20\r\n-1");
  RelationList list;
  ListRelations(t, list);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"BPS 1 -> KEL 20", "BPS 5 -> KEL 45", "BPS 7 -> KEL 12",
                                                   "BPS 8 -> KEL 71", "HABE. -> KEL 53", "DESC. -> KEL 4"}));
  EXPECT_EQ(t.KelIds(), (std::vector<std::int32_t>{20, -1, 45, 12, 71, 53, 4}));
  t.Load(" 30 KEL\r\nnada\r\n2.5\r\n3.5\r\n-7.6");
  EXPECT_EQ(t.KelIds(), (std::vector<std::int32_t>{30, 0, 2, 4, -8, 53, 4}));
  // Each load starts again from the defaults.
  t.Load("1");
  EXPECT_EQ(t.KelIds(), (std::vector<std::int32_t>{1, 13, 45, 12, 71, 53, 4}));
  auto warnings = t.Load("99999999999");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(t.kel(0), 0);
}

TEST(BpsRelations, MoreThanSevenLinesKeepsTheExtraLinesForStore) {
  RelationTable t;
  auto warnings = t.Load("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\nnueve");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("siete"), std::string::npos);
  EXPECT_EQ(t.KelIds(), (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(t.Store(), "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\nnueve");
  t.Reset();
  EXPECT_EQ(t.Store(), "17\r\n13\r\n45\r\n12\r\n71\r\n53\r\n4");
}

TEST(BpsRelations, AddFollowsTheComboRules) {
  RelationTable t;
  RelationList list;
  EXPECT_TRUE(AddRelation(t, list, "1-Monto Imponible Mensual", 0, "30"));
  EXPECT_EQ(t.kel(0), 30);
  ASSERT_EQ(list.entries.size(), 1u);
  EXPECT_EQ(list.entries[0].text, "BPS 1 -> KEL 30");
  EXPECT_EQ(list.entries[0].row, 0);
  // Changing the same row again adds a second entry.
  EXPECT_TRUE(AddRelation(t, list, "1-Monto Imponible Mensual", 0, " 31x"));
  EXPECT_EQ(t.kel(0), 31);
  EXPECT_EQ(list.entries[1].text, "BPS 1 -> KEL  31x");  // the text as typed
  // Haberes and Descuentos have no leading number: nothing happens.
  EXPECT_FALSE(AddRelation(t, list, "H-Haberes", 5, "99"));
  EXPECT_FALSE(AddRelation(t, list, "D-Descuentos", 6, "99"));
  EXPECT_FALSE(AddRelation(t, list, "2-Aguinaldo", 1, ""));
  EXPECT_EQ(t.kel(5), 53);
  EXPECT_EQ(list.entries.size(), 2u);
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
  EXPECT_EQ(list.entries.size(), 7u);
  list.selected = 1;
  EXPECT_EQ(RemoveRelation(t, list), "");
  EXPECT_EQ(list.entries.size(), 6u);
  EXPECT_EQ(list.selected, -1);
  EXPECT_EQ(t.code(1), -1);
  EXPECT_EQ(t.kel(1), 13);  // the placeholder and the stored key keep the id
  EXPECT_EQ(t.Store(), "17\r\n13\r\n45\r\n12\r\n71\r\n53\r\n4");
  // Listing again (a new format selection) adds below the old entries.
  t.Reset();
  ListRelations(t, list);
  EXPECT_EQ(list.entries.size(), 13u);
  EXPECT_EQ(list.entries[6].text, "BPS 1 -> KEL 17");
}
