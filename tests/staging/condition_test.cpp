// Tests of the condition parser and of matching a file against a condition.
#include <gtest/gtest.h>

#include "staging/condition.h"

using settings::CondNode;
using staging::CoincideConCond;
using staging::NeedsContents;
using staging::ParseCondition;

namespace {

// The tree written back as text: lists in brackets with their operator,
// marks after the node.
std::string Shape(const CondNode& n) {
  std::string s;
  if (n.is_list) {
    s = "[";
    for (std::size_t i = 0; i < n.items.size(); ++i) {
      if (i) s += n.op;
      s += Shape(n.items[i]);
    }
    s += "]";
  } else {
    s = n.text;
  }
  if (n.negate) s += "-";
  if (n.case_sensitive) s += "/";
  return s;
}

std::string ShapeOf(const std::string& text) {
  staging::ConditionParse p = ParseCondition(text);
  return p.ok() ? Shape(p.tree) : "ERROR";
}

bool Matches(const std::string& cond, const std::string& name, const std::string& contents = "") {
  staging::ConditionParse p = ParseCondition(cond);
  EXPECT_TRUE(p.ok()) << cond << ": " << p.error;
  return CoincideConCond(p.tree, name, contents);
}

}  // namespace

TEST(ConditionParser, AndBindsTighterThanOrAndParenthesesStayWhole) {
  EXPECT_EQ(ShapeOf("NOM(1)*FL(2)+DINT(3)"), "[[NOM(1)*FL(2)]+DINT(3)]");
  EXPECT_EQ(ShapeOf("NOM(1)+FL(2)*DINT(3)"), "[NOM(1)+[FL(2)*DINT(3)]]");
  EXPECT_EQ(ShapeOf("NOM(1)*(FL(2)+DINT(3))"), "[NOM(1)*[FL(2)+DINT(3)]]");
  EXPECT_EQ(ShapeOf("NOM(emp*.txt;a+b.csv)"), "[NOM(emp*.txt;a+b.csv)]");
  EXPECT_EQ(ShapeOf(" NOM(a) * FL(x) "), "[NOM(a)*FL(x)]");
  EXPECT_EQ(ShapeOf("((NOM(a)))"), "[NOM(a)]");
  EXPECT_EQ(ShapeOf("(NOM(a)+NOM(b))-*FL(x)/"), "[[NOM(a)+NOM(b)]-*FL(x)/]");
  EXPECT_EQ(ShapeOf("NOM(a)-/"), "[NOM(a)-/]");
  EXPECT_EQ(ShapeOf("(NOM(a)+NOM(b))-"), "[[NOM(a)+NOM(b)]-]");
  EXPECT_EQ(ShapeOf("NOM(x)*PASS=ab-;"), "[NOM(x)*PASS=ab-;]");  // the password item is kept as written
  EXPECT_EQ(ShapeOf(""), "[]");
}

TEST(ConditionParser, ReportsBadTextsInSpanish) {
  for (const char* bad : {"NOM(a", "NOM(a))", ")NOM(a)(", "NOM(a)**FL(b)", "NOM(a)+", "*NOM(a)",
                          "XYZ(a)", "NOM(a)x", "-", "NOM(a)*()"}) {
    staging::ConditionParse p = ParseCondition(bad);
    EXPECT_FALSE(p.ok()) << bad;
    EXPECT_TRUE(p.tree.items.empty()) << bad;
  }
  EXPECT_NE(ParseCondition("NOM(a").error.find("sin cerrar"), std::string::npos);
  EXPECT_NE(ParseCondition("NOM(a))").error.find("no se abrió"), std::string::npos);
  EXPECT_NE(ParseCondition("XYZ(a)").error.find("desconocida"), std::string::npos);
}

TEST(ConditionMatch, NameTests) {
  EXPECT_TRUE(Matches("NOM(a.csv;b*.txt)", "B2024.TXT"));
  EXPECT_TRUE(Matches("NOM(a.csv;b*.txt)", "a.csv"));
  EXPECT_FALSE(Matches("NOM(a.csv;b*.txt)", "c.txt"));
  EXPECT_FALSE(Matches("NOM(A.CSV)/", "a.csv"));  // "/" compares case exactly
  EXPECT_TRUE(Matches("NOM(a.csv)-", "b.csv"));
  EXPECT_TRUE(Matches("emp?.txt", "EMP1.txt"));   // a leaf without "(" is a name pattern
  EXPECT_TRUE(Matches("=( Emp.txt )", "emp.TXT"));
  EXPECT_TRUE(Matches("IN(2024)", "liq2024.txt"));
  EXPECT_TRUE(Matches("L>(4)", "abcde"));
  EXPECT_FALSE(Matches("L>(5)", "abcde"));
  EXPECT_TRUE(Matches("L<(6)", "abcde"));
  EXPECT_TRUE(Matches("L<>(4)", "abcde"));
  EXPECT_TRUE(Matches("L(5)", "añoxx"));  // characters, not bytes
  EXPECT_TRUE(Matches("", "cualquiera"));
  EXPECT_TRUE(Matches("PASS=x;", "cualquiera"));
}

TEST(ConditionMatch, ContentTests) {
  const std::string csv = "Legajo;Nombre;Ingreso\r\n1;Ana;01/02/2020\r\n";
  EXPECT_TRUE(Matches("FL(nombre)", "e.csv", csv));
  EXPECT_FALSE(Matches("FL(Ana)", "e.csv", csv));       // only the first line
  EXPECT_TRUE(Matches("DINT(Ana)", "e.csv", csv));      // the whole contents
  EXPECT_FALSE(Matches("FL(nombre)/", "e.csv", csv));   // exact case
  EXPECT_TRUE(Matches("FL(=legajo;nombre;ingreso)", "e.csv", csv));
  EXPECT_TRUE(Matches("FL(=( LEGAJO;NOMBRE;INGRESO ))", "e.csv", csv));
  EXPECT_FALSE(Matches("FL(=Legajo)", "e.csv", csv));
  EXPECT_TRUE(Matches("FL(L(21))", "e.csv", csv));
  EXPECT_TRUE(Matches("FL(IN(;Nombre;))", "e.csv", csv));
  EXPECT_TRUE(Matches("DINT(L>(30))", "e.csv", csv));
  EXPECT_FALSE(Matches("FL(x)", "e.csv", ""));
}

TEST(ConditionMatch, PrecedenceAndNegationCombine) {
  // "a file whose name is one of these and whose first line contains that"
  const std::string cond = "NOM(emp*.txt;per*.csv)*FL(Legajo)+NOM(todo.txt)";
  EXPECT_TRUE(Matches(cond, "emp1.txt", "Legajo;Nombre"));
  EXPECT_FALSE(Matches(cond, "emp1.txt", "Codigo;Nombre"));
  EXPECT_FALSE(Matches(cond, "otro.txt", "Legajo;Nombre"));
  EXPECT_TRUE(Matches(cond, "todo.txt", ""));  // the OR side alone
  const std::string grouped = "NOM(*.txt)*(FL(Legajo)+FL(Ficha))-";
  EXPECT_TRUE(Matches(grouped, "a.txt", "Otra cosa"));
  EXPECT_FALSE(Matches(grouped, "a.txt", "Ficha;x"));
  EXPECT_FALSE(Matches(grouped, "a.csv", "Otra cosa"));
}

TEST(ConditionMatch, KnowsWhenContentsAreNeeded) {
  EXPECT_FALSE(NeedsContents(ParseCondition("NOM(a)+NOM(b)*PASS=x;").tree));
  EXPECT_TRUE(NeedsContents(ParseCondition("NOM(a)+(NOM(b)*FL(x))").tree));
  EXPECT_TRUE(NeedsContents(ParseCondition("DINT(x)-").tree));
  EXPECT_FALSE(NeedsContents(ParseCondition("").tree));
}

TEST(ConditionMatch, PasswordIsFoundInAParsedTree) {
  EXPECT_EQ(settings::DevPass(ParseCondition("NOM(s.mdb)*PASS=clave;").tree), "clave");
  EXPECT_EQ(settings::DevPass(ParseCondition("(NOM(a)*PASS=dentro;)+PASS=fuera;").tree), "dentro");
  EXPECT_EQ(settings::DevPass(ParseCondition("NOM(a)").tree), "");
}
