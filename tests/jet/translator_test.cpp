// tests/jet/translator_test.cpp — translate(): statement kinds, what it asks
// of the context, error positions, and robustness on truncated input.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "db/error.h"
#include "fake_context.h"

namespace {

using db::jet::StatementKind;
using db::jet::TranslateError;
using db::jet::Translation;
using kel_test::FakeContext;

FakeContext MakeContext() {
  FakeContext context;
  context.AddTable("T", {"id", "Nombre", "Monto"});
  context.AddTable("RelacConc", {"CodKEL", "CodOS"});
  return context;
}

std::string Repeat(const std::string& piece, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += piece;
  return out;
}

TEST(JetTranslate, KindAndSchemaChangeFollowTheStatement) {
  FakeContext context = MakeContext();
  Translation select = db::jet::translate("Select * From T", context);
  EXPECT_EQ(select.kind, StatementKind::kQuery);
  EXPECT_FALSE(select.changes_schema);

  Translation into = db::jet::translate("Select * Into X From T", context);
  EXPECT_EQ(into.kind, StatementKind::kCommand);
  EXPECT_TRUE(into.changes_schema);

  Translation drop = db::jet::translate("Drop Table X", context);
  EXPECT_EQ(drop.kind, StatementKind::kCommand);
  EXPECT_TRUE(drop.changes_schema);

  for (const char* command : {"Insert Into T (id) Values (1)", "Update T Set id=1",
                              "Delete * From T", "Insert into RelacConc Select 1 as CodKEL"}) {
    Translation t = db::jet::translate(command, context);
    EXPECT_EQ(t.kind, StatementKind::kCommand) << command;
    EXPECT_FALSE(t.changes_schema) << command;
    EXPECT_EQ(t.statements.size(), 1u) << command;
  }
}

TEST(JetTranslate, InsertAsksForTheTargetColumnsAndTheSelectNames) {
  FakeContext context = MakeContext();
  context.select_answer = {"codos", "CODKEL"};
  Translation t = db::jet::translate(
      "Insert into RelacConc Select * From (Select CodOS, CodKEL From T) as A", context);
  ASSERT_EQ(context.select_requests.size(), 1u);
  EXPECT_EQ(context.select_requests[0],
            "SELECT * FROM (SELECT CodOS, CodKEL FROM T) AS A");
  ASSERT_EQ(context.table_requests.size(), 1u);
  EXPECT_EQ(context.table_requests[0], "main.RelacConc");
  // The target's spelling, in the select's order.
  EXPECT_EQ(t.statements[0],
            "INSERT INTO RelacConc (CodOS, CodKEL) SELECT * FROM (SELECT CodOS, CodKEL FROM T) AS A");

  // Without a star the names come from the statement: no select_columns call.
  FakeContext plain = MakeContext();
  db::jet::translate("Insert into RelacConc Select 1 as CodKEL", plain);
  EXPECT_TRUE(plain.select_requests.empty());

  // A target in another database is looked up in that database's schema.
  FakeContext other = MakeContext();
  db::jet::translate("Insert into T in '/x/p.db' Select 1 as id", other);
  ASSERT_EQ(other.table_requests.size(), 1u);
  EXPECT_EQ(other.table_requests[0], "jet1.T");
}

TEST(JetTranslate, EachPathIsAttachedOncePerStatementAndAttachErrorsPassThrough) {
  FakeContext context = MakeContext();
  Translation t = db::jet::translate(
      "Select A.id From (Select * From T in '/p/a.db') as A inner join (Select * From T in "
      "'/p/a.db') as B on A.id=B.id inner join (Select * From T in '/p/b.db') as C on C.id=A.id",
      context);
  ASSERT_EQ(context.attached.size(), 2u);
  EXPECT_EQ(context.attached[0], "/p/a.db");
  EXPECT_EQ(context.attached[1], "/p/b.db");
  EXPECT_NE(t.statements[0].find("(SELECT * FROM jet2.T) AS C"), std::string::npos);

  struct Refusing : FakeContext {
    std::string attach(const std::string& path) override {
      throw db::Error("No se puede leer la base " + path);
    }
  } refusing;
  EXPECT_THROW(db::jet::translate("Select * From T in '/nope.db'", refusing), db::Error);
}

// The error's position is a byte offset; the message counts characters from 1.
TEST(JetTranslate, ErrorsCarryTheByteOffsetAndSayWhatWasExpected) {
  struct Case {
    std::string jet;
    std::size_t position;
    std::string message;  // the whole message, or "" to check the position only
  };
  const Case cases[] = {
      {"Select id From T Where (id = 1", 30, ""},
      {"Select id From T Frm X", 21, ""},  // Frm is an alias
      {"Update T as A inner join RelacConc as R on A.id=R.CodOS Set Z.x=1", 60, ""},
      {"Insert into RelacConc Select 1 as CodKEL, 2 as Otro", 47, ""},
      // "ñ" is two bytes but one character.
      {"Select 'ñ' as a, Foo(1) as b From T", 18, "Función desconocida 'Foo' (posición 18)"},
      {"Select id Frm T", 10,
       "Error de sintaxis en la posición 11: se esperaba el final de la instrucción, pero se "
       "encontró 'Frm'"},
      {"Delete * Where id=1", 9,
       "Error de sintaxis en la posición 10: se esperaba FROM, pero se encontró 'Where'"},
      {"", 0,
       "Error de sintaxis en la posición 1: se esperaba SELECT, INSERT, UPDATE, DELETE o DROP, "
       "pero terminó la instrucción"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.jet);
    FakeContext context = MakeContext();
    try {
      db::jet::translate(c.jet, context);
      ADD_FAILURE() << "no error";
    } catch (const TranslateError& e) {
      EXPECT_EQ(e.position(), c.position);
      if (!c.message.empty()) {
        EXPECT_EQ(e.what(), c.message);
      }
    }
  }
  FakeContext context = MakeContext();
  EXPECT_NO_THROW(db::jet::translate("Select id From T", context));
}

TEST(JetTranslate, DeepNestingIsRefusedNotOverflowed) {
  FakeContext context = MakeContext();
  std::string ok = "Select " + std::string(50, '(') + "1" + std::string(50, ')') + " as x";
  EXPECT_EQ(db::jet::translate(ok, context).statements[0], "SELECT 1 AS x");
  EXPECT_NO_THROW(db::jet::translate("Select 1" + Repeat("+1", 400) + " as x", context));

  for (const std::string& deep :
       {"Select " + std::string(100000, '(') + "1" + std::string(100000, ')') + " as x",
        "Select " + std::string(100000, '-') + "1 as x",
        "Select * From T Where " + Repeat("Not ", 50000) + "id=1",
        "Select * From " + std::string(100000, '(') + "T",
        // Chains are parsed in loops: their height is what is limited.
        "Select 1" + Repeat("+1", 100000) + " as x", "Select x" + Repeat(" Is Null", 100000) + " as x"}) {
    try {
      db::jet::translate(deep, context);
      ADD_FAILURE() << "no error";
    } catch (const TranslateError& e) {
      EXPECT_NE(std::string(e.what()).find("demasiados niveles anidados"), std::string::npos);
    }
  }
}

// The height limit cannot restart inside a call, a subquery or a join: each
// of these statements once overflowed the stack.
TEST(JetTranslate, NestingThroughCallsSubqueriesAndJoinsIsRefused) {
  FakeContext context = MakeContext();
  std::string calls = "1";
  for (int i = 0; i < 67; ++i) calls = "Abs(" + calls + Repeat("+1", 490) + ")";
  std::string subqueries = "1";
  for (int i = 0; i < 80; ++i) subqueries = "(Select " + subqueries + Repeat("+1", 10) + " From T)";
  std::string exists = "1=1";
  for (int i = 0; i < 300; ++i) exists = "Exists (Select 1 From T Where " + exists + ")";
  std::string in_select = "1";
  for (int i = 0; i < 300; ++i) in_select = "id In (Select id From T Where " + in_select + ")";
  const struct {
    std::string statement;
    std::string message;
  } cases[] = {
      {"Select " + calls + " From T;", "demasiados niveles anidados"},
      {"Select " + subqueries + " as x From T", "demasiados niveles anidados"},
      {"Select 1 From T Where " + exists, "demasiados niveles anidados"},
      {"Select 1 From T Where " + in_select, "demasiados niveles anidados"},
      {"Select 1 From T" + Repeat(" inner join T on 1=1", 37500) + ";",
       "La cláusula FROM une más de 64 tablas (posición 1288)"},
      {"Select 1 From T" + Repeat(", T", 100), "más de 64 tablas"},
      {"Delete A.* From T As A" + Repeat(" inner join T on 1=1", 64), "más de 64 tablas"},
  };
  for (const auto& c : cases) {
    try {
      db::jet::translate(c.statement, context);
      ADD_FAILURE() << "no error for " << c.statement.substr(0, 60);
    } catch (const TranslateError& e) {
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
  }
  // Up to the limit, joins and qualified names translate; each subquery has its own 64.
  std::string joins = "Select A0.id From T As A0";
  for (int i = 1; i < 64; ++i) {
    joins += " inner join T As A" + std::to_string(i) + " on A" + std::to_string(i) + ".id = A" +
             std::to_string(i - 1) + ".id";
  }
  EXPECT_NO_THROW(db::jet::translate(joins, context));
  EXPECT_NO_THROW(db::jet::translate(
      "Select 1 From (Select 1 From T" + Repeat(", T", 40) + ")" + Repeat(", T", 40), context));
}

// Bad input is refused with a TranslateError, never anything worse: every
// prefix of real statements either translates or is refused cleanly.
TEST(JetTranslate, EveryPrefixOfARealStatementTranslatesOrIsRefused) {
  const std::string statements[] = {
      "Insert into Legajo Select D.UltLeg+id as id_Legajo, cstr(C.Nombre) as strAValor,Date() as "
      "Fecha From (Select iif(isnull(Max(id)),0,Max(id)) as UltLeg From T) as D, T as C where "
      "not Exists(Select id From T as L where L.id=C.id and L.Monto=1)",
      "Update T as D inner join (Select * From T in '/p/a.db') as A on (D.id=A.id and "
      "A.Monto<>-1) Set D.Nombre=A.Nombre & '_' & Right(A.Nombre,1), Monto=#05/01/2023# Where "
      "D.id Between 1 And 2 Or D.Nombre Not Like 'x*' Or D.id Not In (1,2) Order",
      "Delete DL.* From (T as DL inner join T as E on E.id=DL.id) left join T as F on F.id=E.id "
      "Where Not E.Nombre Is Null and 2^-1 Mod 3 \\ 4 = [Monto Total];"};
  for (const std::string& full : statements) {
    for (std::size_t n = 0; n <= full.size(); ++n) {
      FakeContext context = MakeContext();
      context.AddTable("Legajo", {"id_Legajo", "strAValor", "Fecha"});
      const std::string jet = full.substr(0, n);
      try {
        db::jet::translate(jet, context);
      } catch (const TranslateError& e) {
        EXPECT_LE(e.position(), jet.size()) << jet;
        EXPECT_NE(std::string(e.what()).find("posición"), std::string::npos) << jet;
      } catch (const std::exception& e) {
        ADD_FAILURE() << "unexpected exception for [" << jet << "]: " << e.what();
      }
    }
  }
}

// Random token soup: whatever comes in, the answer is a translation or a
// TranslateError with a position inside the text.
TEST(JetTranslate, RandomTokenSequencesNeverEscapeAsOtherErrors) {
  const char* const kPieces[] = {
      "Select ", "Insert Into ", "Update ", "Delete ", "Drop Table ", "From ", "Where ",
      "Group By ", "Having ", "Order By ", "Union ", "Top 2 ", "Distinct ", "Into X ",
      "Set ", "Values ", "As ", "Inner Join ", "Left Join ", "Right Join ", "On ", "In ",
      "And ", "Or ", "Not ", "Is ", "Null ", "Like ", "Between ", "Exists ", "Mod ", "Xor ",
      "T ", "RelacConc ", "A ", "A.", "id ", "Nombre ", "CodKEL ", "*", ", ", "(", ")", "=",
      "<>", "<", "+", "-", "&", "/", "\\", "^", ";", "1 ", "2.5 ", "'x' ", "\"y\" ",
      "#01/02/2024# ", "[a b] ", "IIf(", "IsNull(", "Max(", "Val(", "Count(*) ", "Foo(",
      "True ", "False ", " in '/p/a.db' ", "Select * From T "};
  std::mt19937 random(20240229);
  std::uniform_int_distribution<std::size_t> piece(0, std::size(kPieces) - 1);
  std::uniform_int_distribution<int> length(1, 24);
  for (int i = 0; i < 20000; ++i) {
    std::string jet;
    for (int n = length(random); n > 0; --n) jet += kPieces[piece(random)];
    if (i % 3 == 0) jet = "Select " + jet;
    FakeContext context = MakeContext();
    context.select_answer = {"CodKEL"};
    try {
      db::jet::translate(jet, context);
    } catch (const TranslateError& e) {
      ASSERT_LE(e.position(), jet.size()) << jet;
    } catch (const std::exception& e) {
      FAIL() << "unexpected exception for [" << jet << "]: " << e.what();
    }
  }
}

}  // namespace
