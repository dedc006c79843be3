// Tests of ConfIMP.ini lines, the formats table and the password item.
#include <gtest/gtest.h>

#include "settings/cond_tree.h"
#include "settings/formats_table.h"

using namespace settings;

TEST(FormatsTable, ParseLineFillsRowsAfterThePlaceholderAndFindRowIgnoresCase) {
  FormatsTable t;
  EXPECT_EQ(t.cell(0, 0) + t.cell(0, 1), "-1-1");
  EXPECT_EQ(FindRow(t, 0, "-1"), -1);  // the placeholder is not a format
  for (const char* skipped : {"", "   ", "; comentario", "# comentario"})
    EXPECT_FALSE(ParseLine(skipped, t)) << skipped;
  EXPECT_TRUE(t.empty());
  EXPECT_TRUE(ParseLine(" Sistema XYZ (archivos) | xyz.fmt ", t));
  EXPECT_TRUE(ParseLine("Otro=otro\\formato.fmt", t));
  EXPECT_TRUE(ParseLine("A=b|c.fmt", t));  // "|" wins over "="
  EXPECT_TRUE(ParseLine("SoloNombre", t));
  ASSERT_EQ(t.size(), 4u);
  EXPECT_EQ(t.cell(0, 0), "Sistema XYZ (archivos)");
  EXPECT_EQ(t.cell(0, 1), "xyz.fmt");
  EXPECT_EQ(t.cell(1, 1), "otro\\formato.fmt");
  EXPECT_EQ(t.cell(2, 0), "A=b");
  EXPECT_EQ(t.cell(3, 1), "");
  EXPECT_THROW(t.cell(4, 0), std::out_of_range);
  EXPECT_THROW(t.cell(0, 2), std::out_of_range);
  EXPECT_EQ(FindRow(t, 0, "otro"), 1);
  EXPECT_EQ(FindRow(t, 1, "  XYZ.FMT "), 0);
  EXPECT_EQ(FindRow(t, 0, "Tres"), -1);
}

namespace {
CondNode ListOf(std::vector<CondNode> items, char op = '*') {
  CondNode l = CondNode::List(op);
  l.items = std::move(items);
  return l;
}
}  // namespace

// The password is the item's text from its sixth character, less the last one;
// the first nested collection that has one ends the search.
TEST(DevPass, KeepsTheSkippedFifthAndDroppedLastCharacterAndNestedOrder) {
  using L = CondNode;
  const CondNode nested = ListOf({L::Leaf("NOM(b)"), L::Leaf("PASS=interna;")}, '+');
  const CondNode without = ListOf({L::Leaf("NOM(b)")});
  const std::vector<std::pair<CondNode, std::string>> rows = {
      {ListOf({L::Leaf("PASS=abc;")}), "abc"},
      {ListOf({L::Leaf("pass:abc;")}), "abc"},
      {ListOf({L::Leaf("PASS")}), ""},
      {ListOf({L::Leaf("PASS=")}), ""},
      {ListOf({L::Leaf("PASS=x;")}), "x"},
      {ListOf({L::Leaf("NOM(a.mdb)"), L::Leaf("Pass=se*cr;")}), "se*cr"},
      {ListOf({L::Leaf("NOM(a.mdb)")}), ""},
      {ListOf({}), ""},
      {ListOf({L::Leaf("NOM(a)"), nested, L::Leaf("PASS=externa;")}), "interna"},
      {ListOf({without, L::Leaf("PASS=externa;")}), "externa"},
      {ListOf({L::Leaf("PASS=primera;"), nested}), "primera"},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(DevPass(rows[i].first), rows[i].second) << i;
}
