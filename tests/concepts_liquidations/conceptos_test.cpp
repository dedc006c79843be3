// tests/concepts_liquidations/conceptos_test.cpp — the concepts and
// liquidation types step: what is created, under which ids and names, and
// what the Yes and No answers do.
#include "db/error.h"
#include "transfer/transfer_fixture.h"
#include "transfer/conceptos.h"

namespace transfer_test {
namespace {

// Staged concepts: 1 mapped onto KEL 1, 2 "No Importar", 3 and 5 unmapped,
// 4 with a code KEL already has, 6 mapped onto a KEL concept that is gone.
const char* const kStagedConcepts = R"SQL(
INSERT INTO Conceptos (id_Concepto, Codigo, NombreReducido, Nombre, id_ConsLiquidacion, TipoDato, TipoOperacion,
                       ModificaNominal, RedoCoef, RedoCant, id_Moneda, FCant, FCoef, VisibleEnRec) VALUES
  (1, 'SUE', 'Sueldo', 'Sueldo', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (2, 'NOI', 'No imp.', 'No importar', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (3, 'HEX', 'Hs. extra', 'Horas extra', NULL, 2, 'S', -1, 3, 1, 2, 'Suma(''A'')', ' [Valor]*2 ', 0),
  (4, 'DUP', 'Repetido', 'Código repetido', 7, 1, 'R', 0, 2, 2, 1, NULL, NULL, -1),
  (5, 'PRE', 'Premio', 'Premio', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (6, 'VIE', 'Viejo', 'Mapeado a uno borrado', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1);
INSERT INTO RelacConc (CodKEL, CodOS) VALUES (1, 1), (-1, 2), (999, 6);
)SQL";

struct ConceptCase {
  const char* name;
  const char* kel_rows;  // the KEL concepts besides 'SUE' (1) and 'DUP' (30)
  bool answer;           // to the question about 'DUP'
  Rows created;          // KEL concepts above 1 afterwards: id|Codigo
  Rows relac_conc;       // the staging mappings afterwards: CodKEL|CodOS
};

class ConceptSteps : public StepTest, public ::testing::WithParamInterface<ConceptCase> {};

TEST_P(ConceptSteps, CreatesTheUnmappedConceptsUnderTheCountedIds) {
  const ConceptCase& c = GetParam();
  kel_.execute_native(std::string("DELETE FROM Conceptos; INSERT INTO Conceptos (id_Concepto, Codigo, Nombre) VALUES "
                                  "(1, 'SUE', 'Sueldo'), (30, 'DUP', 'De KEL');") +
                      c.kel_rows);
  staging_.execute_native(kStagedConcepts);
  questions_.answers = {c.answer};
  transfer::StepContext ctx = context();

  const transfer::StepReport report = transfer::import_concepts(ctx);

  EXPECT_EQ(questions_.asked, (Rows{"Ya existe un concepto en KEL con el codigo 'DUP'\r\n¿Desea reemplazarlo?"}));
  EXPECT_EQ(rows(kel_, "SELECT id_Concepto, Codigo FROM Conceptos WHERE id_Concepto > 1 AND id_Concepto <> 40 "
                       "AND id_Concepto <> 250 ORDER BY 1"),
            c.created);
  EXPECT_EQ(rows(staging_, "SELECT CodKEL, CodOS FROM RelacConc ORDER BY CodOS, CodKEL"), c.relac_conc);
  EXPECT_EQ(report.statements_ignored, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Counters, ConceptSteps,
    ::testing::Values(
        // Highest 40: new ids start at 101. Yes replaces DUP under 30 and the
        // counter still advances, so 102 is skipped.
        ConceptCase{"Max40Yes", "INSERT INTO Conceptos (id_Concepto, Codigo) VALUES (40, 'X40');", true,
                    {"30|DUP", "101|HEX", "103|PRE", "104|VIE"},
                    {"1|1", "-1|2", "101|3", "30|4", "103|5", "104|6", "999|6"}},
        // No keeps KEL's DUP and creates DUP_1 under the next id.
        ConceptCase{"Max40No", "INSERT INTO Conceptos (id_Concepto, Codigo) VALUES (40, 'X40');", false,
                    {"30|DUP", "101|HEX", "102|DUP_1", "103|PRE", "104|VIE"},
                    {"1|1", "-1|2", "101|3", "102|4", "103|5", "104|6", "999|6"}},
        // Highest 250: new ids follow it.
        ConceptCase{"Max250No", "INSERT INTO Conceptos (id_Concepto, Codigo) VALUES (250, 'X250');", false,
                    {"30|DUP", "251|HEX", "252|DUP_1", "253|PRE", "254|VIE"},
                    {"1|1", "-1|2", "251|3", "252|4", "253|5", "254|6", "999|6"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(StepTest, CreatedConceptsHaveCleanFormulasCurrencyOneAndAreVisible) {
  staging_.execute_native(kStagedConcepts);
  transfer::StepContext ctx = context();
  transfer::import_concepts(ctx);
  // KEL's base concepts end at 100 and hold none of the staged codes.
  EXPECT_TRUE(questions_.asked.empty());
  // Quotes dropped from both formulas, FCoef trimmed, Null formulas empty,
  // the consolidation Null or its number, Yes/No as KEL keeps them.
  EXPECT_EQ(rows(kel_, "SELECT id_Concepto, Codigo, NombreReducido, Nombre, id_ConsLiquidacion, TipoDato, TipoOperacion, "
                       "ModificaNominal, RedoCoef, RedoCant, id_Moneda, FCant, FCoef, VisibleEnRec FROM Conceptos "
                       "WHERE Codigo IN ('HEX', 'DUP') ORDER BY 1"),
            (Rows{"101|HEX|Hs. extra|Horas extra|-|2|S|-1|3|1|1|Suma(A)|[Valor]*2|-1",
                  "102|DUP|Repetido|Código repetido|7|1|R|0|2|2|1|||-1"}));
}

TEST_F(StepTest, NoConceptToCreateOnlyReadsTheMaximum) {
  staging_.execute_native("INSERT INTO Conceptos (id_Concepto, Codigo) VALUES (1, 'SUE');"
                          "INSERT INTO RelacConc VALUES (1, 1);");
  const Rows before = rows(kel_, "SELECT * FROM Conceptos ORDER BY 1");
  transfer::StepContext ctx = context();
  const transfer::StepReport report = transfer::import_concepts(ctx);
  EXPECT_EQ(rows(kel_, "SELECT * FROM Conceptos ORDER BY 1"), before);
  EXPECT_TRUE(questions_.asked.empty());
  EXPECT_EQ(report.total("insertadas"), 0);
}

TEST_F(StepTest, AnEmptyKelConceptTableEndsTheStep) {
  staging_.execute_native("INSERT INTO Conceptos (id_Concepto, Codigo) VALUES (1, 'SUE');");
  kel_.execute_native("DELETE FROM Conceptos;");
  transfer::StepContext ctx = context();
  EXPECT_THROW(transfer::import_concepts(ctx), db::Error);
  EXPECT_TRUE(rows(kel_, "SELECT * FROM Conceptos").empty());
}

// A code holding a quote breaks its look-up, which is passed over (no
// question), and then its insert, which ends the step.
TEST_F(StepTest, AQuoteInACodeIsIgnoredInTheLookUpOnly) {
  staging_.execute_native("INSERT INTO Conceptos (id_Concepto, Codigo, Nombre) VALUES (1, 'O''K', 'Con comilla');");
  transfer::StepContext ctx = context();
  EXPECT_THROW(transfer::import_concepts(ctx), db::Error);
  EXPECT_TRUE(questions_.asked.empty());
}

// Staged types: 1 mapped onto KEL's Mensual, 2 unmapped salary type, 3 named
// like KEL's Licencia (5), 4 marked "No Importar" (created all the same).
const char* const kStagedTypes = R"SQL(
INSERT INTO TiposLiquidacion (id_TipoLiq, Nombre, Color, Salarial, Activa, ParaEmp, CodigoParaBPS) VALUES
  (1, 'Mensual', 0, -1, -1, 0, 1),
  (2, 'Especial', 5, -1, -1, 0, 3),
  (3, 'Licencia', 0, 0, 0, -1, 1),
  (4, 'Sin uso', 0, 0, -1, 0, 1);
INSERT INTO RelacTLiq (CodKEL, CodOS) VALUES (1, 1), (-1, 4);
)SQL";

TEST_F(StepTest, TypesYesReplacesTheKelTypeWithItsLiquidations) {
  staging_.execute_native(kStagedTypes);
  kel_.execute_native("INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES "
                      "(1, 5, '2024-01-01', 1), (2, 1, '2024-01-01', 1);");
  questions_.answers = {true};
  transfer::StepContext ctx = context();
  transfer::import_concepts(ctx);

  EXPECT_EQ(questions_.asked, (Rows{"Ya existe una Liquidacion en KEL con el nombre 'Licencia'\r\n¿Desea reemplazarla?"}));
  // KEL's highest type is 7: Especial 8, Licencia back under 5 (9 skipped), Sin uso 10.
  EXPECT_EQ(rows(kel_, "SELECT * FROM TiposLiquidacion WHERE id_TipoLiq IN (5, 8, 9, 10) ORDER BY 1"),
            (Rows{"5|Licencia|0|0|-1|-1|1", "8|Especial|0|-1|-1|0|1", "10|Sin uso|0|0|-1|0|1"}));
  EXPECT_EQ(rows(kel_, "SELECT id_Encabezado FROM Encabezados"), (Rows{"2"}));
  // Only the salary type takes type 1's contributions, VCM excepted.
  EXPECT_EQ(rows(kel_, "SELECT id_Aporte, Codigo FROM rAporPat_TipoLiq WHERE id_TipoLiq = 8 ORDER BY 1"),
            (Rows{"1|JUB", "2|FONASA", "3|FRL", "4|FGCL"}));
  EXPECT_EQ(rows(kel_, "SELECT COUNT(*) FROM rAporPat_TipoLiq WHERE id_TipoLiq IN (9, 10)"), (Rows{"0"}));
  EXPECT_EQ(rows(staging_, "SELECT CodKEL, CodOS FROM RelacTLiq ORDER BY CodOS, CodKEL"),
            (Rows{"1|1", "8|2", "5|3", "-1|4", "10|4"}));
}

TEST_F(StepTest, TypesNoCreatesTheNameWithTheKelId) {
  staging_.execute_native(kStagedTypes);
  kel_.execute_native("INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES "
                      "(1, 5, '2024-01-01', 1);");
  questions_.answers = {false};
  transfer::StepContext ctx = context();
  transfer::import_concepts(ctx);

  EXPECT_EQ(rows(kel_, "SELECT id_TipoLiq, Nombre FROM TiposLiquidacion WHERE id_TipoLiq >= 5 ORDER BY 1"),
            (Rows{"5|Licencia", "6|Licencia anticipada", "7|Salario vacacional", "8|Especial", "9|Licencia_5",
                  "10|Sin uso"}));
  EXPECT_EQ(rows(kel_, "SELECT id_Encabezado FROM Encabezados"), (Rows{"1"}));
  EXPECT_EQ(rows(staging_, "SELECT CodKEL, CodOS FROM RelacTLiq ORDER BY CodOS, CodKEL"),
            (Rows{"1|1", "8|2", "9|3", "-1|4", "10|4"}));
}

}  // namespace
}  // namespace transfer_test
