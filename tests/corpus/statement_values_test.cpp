// tests/corpus/statement_values_test.cpp — how the statement units put values
// into their texts where they do more than concatenate.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "mapping/grid_sql.h"
#include "preview/preview_sql.h"
#include "transfer/conceptos_sql.h"
#include "transfer/liquidaciones_sql.h"
#include "transfer/personas_sql.h"

namespace {

bool contains(const std::string& text, const std::string& piece) { return text.find(piece) != std::string::npos; }

TEST(StatementValues, ConceptInsertBuildsItsValuesAsTheStepRequires) {
  transfer::sql::ConceptValues v;
  v.id_concepto = 101;
  v.codigo = "HEX_1";
  v.tipo_operacion = "S";
  v.modifica_nominal = true;
  v.fcant = "Horas('Extra')";
  v.fcoef = "  'Valor' * 2  ";
  const std::string text = transfer::sql::concept_insert(v);
  EXPECT_TRUE(contains(text, " ,Null as id_ConsLiquidacion")) << text;   // empty -> Null
  EXPECT_TRUE(contains(text, " , 0 as TipoDato")) << text;               // empty number -> 0
  EXPECT_TRUE(contains(text, " ,True as ModificaNominal,0 as RedoCoef,0 as RedoCant")) << text;
  EXPECT_TRUE(contains(text, "'Horas(Extra)' as FCant,'Valor * 2' as FCoef")) << text;  // quotes gone, trimmed
  v.id_cons_liquidacion = "3";
  v.modifica_nominal = false;
  v.tipo_dato = "1";
  const std::string again = transfer::sql::concept_insert(v);
  EXPECT_TRUE(contains(again, " ,3 as id_ConsLiquidacion , 1 as TipoDato")) << again;
  EXPECT_TRUE(contains(again, " ,False as ModificaNominal,")) << again;
}

TEST(StatementValues, RegistrationViewsAndContractMatchFollowTheirArguments) {
  EXPECT_TRUE(contains(transfer::sql::registration_attach(1, 5), "Con_Planilla_BSE"));
  EXPECT_TRUE(contains(transfer::sql::registration_attach(2, 5), "Con_Planilla_MTSS"));
  EXPECT_TRUE(contains(transfer::sql::registration_attach(3, 5), " 5 as idPlanilla From Contrato as C Where Not "
                                                                 "Exists(Select idContrato From Con_Planilla_BPS "));
  EXPECT_THROW(transfer::sql::registration_attach(4, 5), std::invalid_argument);
  EXPECT_TRUE(contains(transfer::sql::headers_insert(10, "p", true), " as C on C.id_Persona=B.id_Persona  and "));
  EXPECT_TRUE(contains(transfer::sql::headers_insert(10, "p", false), " as C on C.Numero=P.Numero and "));
  EXPECT_TRUE(contains(transfer::sql::park_personas(), "set id_Persona=1000000000+id_Persona where id_Persona<1000000000"));
}

TEST(StatementValues, SortsAndOptionalTailsOfGridStatements) {
  EXPECT_TRUE(contains(mapping::sql::concept_grid_select("k.db", ""), ") order by DescOS"));
  EXPECT_TRUE(contains(mapping::sql::concept_grid_select("k.db", "CodigoKEL Desc"), ") order by CodigoKEL Desc"));
  EXPECT_EQ(mapping::sql::type_relation_delete("4", 0), "Delete * From RelacTLiq Where  trim(CodOS)='4' ");
  EXPECT_EQ(mapping::sql::type_relation_delete("4", 2), "Delete * From RelacTLiq Where  trim(CodOS)='4'  and CodKEL=2");
  EXPECT_TRUE(contains(preview::sql::liquidation_headers_select(""), "order by id_Persona,MesDeLiq,id_TipoLiq,id_Contrato"));
  // Column 5 always sorts ascending by date; a click compares names ignoring case.
  EXPECT_EQ(preview::sql::liquidation_sort_text("cdate(strMesDeLiq)", "strMesDeLiq", 5), "cdate(strMesDeLiq)");
  EXPECT_EQ(preview::sql::liquidation_sort_text("NOMBRES", "Nombres", 4), "Nombres Desc");
  EXPECT_EQ(preview::sql::liquidation_sort_text("Nombres Desc", "Nombres", 4), "Nombres");
}

}  // namespace
