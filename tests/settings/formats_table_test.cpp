// Tests of ConfIMP.ini lines, the formats table and the password item.
#include <gtest/gtest.h>

#include "settings/cond_tree.h"
#include "settings/formats_table.h"

using namespace settings;

TEST(FormatsTable, ParseLineFillsRowsAfterThePlaceholder) {
  FormatsTable t;
  EXPECT_TRUE(t.empty());
  EXPECT_EQ(t.cell(0, 0), "-1");
  EXPECT_EQ(t.cell(0, 1), "-1");
  EXPECT_FALSE(ParseLine("", t));
  EXPECT_FALSE(ParseLine("   ", t));
  EXPECT_FALSE(ParseLine("; comentario", t));
  EXPECT_FALSE(ParseLine("# comentario", t));
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
}

TEST(FormatsTable, FindRowTrimsAndIgnoresCase) {
  FormatsTable t;
  EXPECT_EQ(FindRow(t, 0, "-1"), -1);  // the placeholder is not a format
  ParseLine("Uno|uno.fmt", t);
  ParseLine("Dos|DOS.fmt", t);
  EXPECT_EQ(FindRow(t, 0, "dos"), 1);
  EXPECT_EQ(FindRow(t, 1, "  dos.FMT "), 1);
  EXPECT_EQ(FindRow(t, 0, "Tres"), -1);
}

namespace {
CondNode ListOf(std::vector<CondNode> items) {
  CondNode l = CondNode::List('*');
  l.items = std::move(items);
  return l;
}
}  // namespace

TEST(DevPass, KeepsTheSkippedFifthAndDroppedLastCharacter) {
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("PASS=abc;")})), "abc");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("pass:abc;")})), "abc");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("PASS")})), "");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("PASS=")})), "");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("PASS=x;")})), "x");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("NOM(a.mdb)"), CondNode::Leaf("Pass=se*cr;")})), "se*cr");
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("NOM(a.mdb)")})), "");
  EXPECT_EQ(DevPass(ListOf({})), "");
}

TEST(DevPass, NestedCollectionFoundFirstEndsTheSearch) {
  CondNode nested = CondNode::List('+');
  nested.items = {CondNode::Leaf("NOM(b)"), CondNode::Leaf("PASS=interna;")};
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("NOM(a)"), nested, CondNode::Leaf("PASS=externa;")})), "interna");
  // A nested collection without a password lets the search go on.
  CondNode empty = CondNode::List('*');
  empty.items = {CondNode::Leaf("NOM(b)")};
  EXPECT_EQ(DevPass(ListOf({empty, CondNode::Leaf("PASS=externa;")})), "externa");
  // A top-level item before the collection wins over it.
  EXPECT_EQ(DevPass(ListOf({CondNode::Leaf("PASS=primera;"), nested})), "primera");
}
