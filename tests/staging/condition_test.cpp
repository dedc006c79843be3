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

TEST(ConditionMatch, NameContentsPrecedenceAndNegation) {
  const std::string csv = "Legajo;Nombre;Ingreso\r\n1;Ana;01/02/2020\r\n";
  // "a file whose name is one of these and whose first line contains that"
  const std::string cond = "NOM(emp*.txt;per*.csv)*FL(Legajo)+NOM(todo.txt)";
  const std::string grouped = "NOM(*.txt)*(FL(Legajo)+FL(Ficha))-";
  struct Case {
    std::string cond, name, contents;
    bool expected;
  };
  const std::vector<Case> cases = {
      {"NOM(a.csv;b*.txt)", "B2024.TXT", "", true},
      {"NOM(a.csv;b*.txt)", "a.csv", "", true},
      {"NOM(a.csv;b*.txt)", "c.txt", "", false},
      {"NOM(A.CSV)/", "a.csv", "", false},  // "/" compares case exactly
      {"NOM(a.csv)-", "b.csv", "", true},
      {"emp?.txt", "EMP1.txt", "", true},  // a leaf without "(" is a name pattern
      {"=( Emp.txt )", "emp.TXT", "", true},
      {"IN(2024)", "liq2024.txt", "", true},
      {"L>(4)", "abcde", "", true},
      {"L>(5)", "abcde", "", false},
      {"L<(6)", "abcde", "", true},
      {"L<>(4)", "abcde", "", true},
      {"L(5)", "añoxx", "", true},  // characters, not bytes
      {"", "cualquiera", "", true},
      {"PASS=x;", "cualquiera", "", true},
      {"FL(nombre)", "e.csv", csv, true},
      {"FL(Ana)", "e.csv", csv, false},  // only the first line
      {"DINT(Ana)", "e.csv", csv, true},  // the whole contents
      {"FL(nombre)/", "e.csv", csv, false},
      {"FL(=legajo;nombre;ingreso)", "e.csv", csv, true},
      {"FL(=( LEGAJO;NOMBRE;INGRESO ))", "e.csv", csv, true},
      {"FL(=Legajo)", "e.csv", csv, false},
      {"FL(L(21))", "e.csv", csv, true},
      {"FL(IN(;Nombre;))", "e.csv", csv, true},
      {"DINT(L>(30))", "e.csv", csv, true},
      {"FL(x)", "e.csv", "", false},
      {cond, "emp1.txt", "Legajo;Nombre", true},
      {cond, "emp1.txt", "Codigo;Nombre", false},
      {cond, "otro.txt", "Legajo;Nombre", false},
      {cond, "todo.txt", "", true},  // the OR side alone
      {grouped, "a.txt", "Otra cosa", true},
      {grouped, "a.txt", "Ficha;x", false},
      {grouped, "a.csv", "Otra cosa", false},
  };
  for (const Case& c : cases) EXPECT_EQ(Matches(c.cond, c.name, c.contents), c.expected) << c.cond << " / " << c.name;
}

TEST(ConditionMatch, KnowsWhenContentsAreNeeded) {
  EXPECT_FALSE(NeedsContents(ParseCondition("NOM(a)+NOM(b)*PASS=x;").tree));
  EXPECT_TRUE(NeedsContents(ParseCondition("NOM(a)+(NOM(b)*FL(x))").tree));
  EXPECT_TRUE(NeedsContents(ParseCondition("DINT(x)-").tree));
  EXPECT_FALSE(NeedsContents(ParseCondition("").tree));
}
