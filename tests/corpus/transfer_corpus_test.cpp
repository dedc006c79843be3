// tests/corpus/transfer_corpus_test.cpp — every statement of the five transfer
// steps runs on demo-like databases without being refused.
//
// The statements are run in the order and on the connection of the steps,
// with the values a step would compute. A few counts check that the texts do
// what they are for; the steps' own tests check their behaviour in depth.
#include <stdexcept>
#include <string>

#include "corpus_fixture.h"
#include "base/value.h"
#include "transfer/catalogos_sql.h"
#include "transfer/conceptos_sql.h"
#include "transfer/empresa_sql.h"
#include "transfer/liquidaciones_sql.h"
#include "transfer/personas_sql.h"

namespace corpus_test {
namespace {

namespace sql = transfer::sql;

TEST_F(CorpusTest, CompanyAndCatalogueStatementsRun) {
  run_all(kel_, sql::empresa_step(staging_path_));
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Empresa WHERE IdEmpresa = 1 AND Nombre = 'Demo S.A.'"), 1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Planillas"), 4);  // the neutral one and three staged

  run_all(kel_, sql::catalogos_step(staging_path_));
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Cargos"), 2);
  // Branch 0 keeps the destination's name; branch 1 is added.
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Sucursales WHERE id_Sucursal = 0 AND Nombre = 'Sin sucursal'"), 1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Sucursales"), 2);
  // Empty assignment values are taken from the contract; set ones are kept.
  EXPECT_EQ(count(kel_, "SELECT id_Cargo * 100 + id_Seguro_Sal * 10 + id_Exonera FROM rCC_Cont WHERE id_Contrato = 3"),
            133);
  // Running the merge again changes nothing.
  run_all(kel_, sql::catalogos_merge(staging_path_));
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Obras"), 1);
}

TEST_F(CorpusTest, PersonAndContractStatementsRun) {
  run_all(kel_, sql::empresa_step(staging_path_));
  run_persons_step();
  // No person is left parked; the matched person took the staged id 1.
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Personas WHERE id_Persona >= 1000000000"), 0);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Personas WHERE id_Persona = 1 AND NUMERO = '12345678'"), 1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Personas"), 5);
  // Destination contract 1 now belongs to person 1; staged contract 1 equals it and is not added.
  EXPECT_EQ(count(kel_, "SELECT Id_Persona FROM Contrato WHERE Id_Contrato = 1"), 1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Contrato"), 6);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Contrato c WHERE NOT EXISTS "
                        "(SELECT 1 FROM Legajo l WHERE l.id_Contrato = c.Id_Contrato AND l.id_TMLegajo = 1)"),
            0);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Contrato WHERE HORAS IS NULL OR HORAS = 0"), 0);
  EXPECT_EQ(count(kel_, "SELECT COUNT(DISTINCT idContrato) FROM rPlanillas"), 6);
  EXPECT_THROW(sql::registration_attach(4, 5), std::invalid_argument);  // only the three registration kinds
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Declaraciones"), 2);
}

TEST_F(CorpusTest, ConceptAndLiquidationTypeStatementsRun) {
  // Concepts to create, read on the staging connection.
  db::Recordset to_create = query(staging_, sql::concepts_to_create(kel_path_));
  EXPECT_EQ(to_create.row_count(), 2u);  // 7 and 8 have no mapping
  std::int64_t next = scalar(kel_, sql::concept_max_id()) + 1;
  EXPECT_EQ(next, 101);
  bool replaced = false;
  for (; !to_create.eof(); to_create.move_next(), ++next) {
    sql::ConceptValues v;
    v.id_concepto = next;
    v.codigo = db::as_text(to_create.field("Codigo"));
    db::Recordset found = query(kel_, sql::concept_by_code(v.codigo));
    if (!found.eof()) {
      // Answer Yes for the first clash: the KEL concept is replaced under its id.
      v.id_concepto = db::as_int(found.field(0));
      run(kel_, sql::concept_delete(v.id_concepto));
      replaced = true;
    }
    v.nombre_reducido = db::as_text(to_create.field("NombreReducido"));
    v.nombre = db::as_text(to_create.field("Nombre"));
    v.id_cons_liquidacion = db::as_text(to_create.field("id_ConsLiquidacion"));
    v.tipo_dato = db::as_text(to_create.field("TipoDato"));
    v.tipo_operacion = db::as_text(to_create.field("TipoOperacion"));
    v.modifica_nominal = db::as_int(to_create.field("ModificaNominal")) != 0;
    v.redo_coef = db::as_text(to_create.field("RedoCoef"));
    v.redo_cant = db::as_text(to_create.field("RedoCant"));
    v.fcant = db::as_text(to_create.field("FCant"));
    v.fcoef = db::as_text(to_create.field("FCoef"));
    run(kel_, sql::concept_insert(v));
    const std::int64_t cod_os = db::as_int(to_create.field("id_Concepto"));
    run(staging_, sql::relac_conc_delete(v.id_concepto, cod_os));
    run(staging_, sql::relac_conc_insert(v.id_concepto, cod_os));
  }
  EXPECT_TRUE(replaced);
  // Formula quotes are dropped and blanks trimmed; an empty value goes in as Null; Yes/No as written.
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Conceptos WHERE id_Concepto = 17 AND FCant = 'Suma(A)' AND FCoef = 'Base' "
                        "AND id_ConsLiquidacion IS NULL AND ModificaNominal = 0"),
            1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Conceptos WHERE id_Concepto = 102 AND id_ConsLiquidacion = 3 "
                        "AND ModificaNominal <> 0"),
            1);

  // Liquidation types to create.
  db::Recordset types = query(staging_, sql::types_to_create(kel_path_));
  EXPECT_EQ(types.row_count(), 1u);  // "Especial"
  std::int64_t next_type = scalar(kel_, sql::type_max_id()) + 1;
  for (; !types.eof(); types.move_next(), ++next_type) {
    std::int64_t id = next_type;
    const std::string name = db::as_text(types.field("Nombre"));
    db::Recordset found = query(kel_, sql::type_by_name(name));
    if (!found.eof()) {
      id = db::as_int(found.field(0));
      run(kel_, sql::headers_of_type_delete(id));
      run(kel_, sql::type_delete(id));
    }
    run(kel_, sql::type_insert(id, name, true, false));
    run(kel_, sql::contributions_delete(id));
    run(kel_, sql::contributions_copy(id));
    const std::int64_t cod_os = db::as_int(types.field("id_TipoLiq"));
    run(staging_, sql::relac_tliq_delete(id, cod_os));
    run(staging_, sql::relac_tliq_insert(id, cod_os));
  }
  // A replacement by name also runs (Yes to "Mensual").
  run(kel_, sql::headers_of_type_delete(1));
  run(kel_, sql::type_delete(1));
  run(kel_, sql::type_insert(1, "Mensual", true, false));
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM rAporPat_TipoLiq WHERE id_TipoLiq = 8"), 4);
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM RelacTLiq WHERE CodKEL = 8 AND CodOS = 4"), 1);
}

TEST_F(CorpusTest, LiquidationStatementsRun) {
  run_all(kel_, sql::empresa_step(staging_path_));
  run_persons_step();

  // A. The staging database: numbers and the month range.
  staging_.begin_transaction();
  run(staging_, sql::staged_numbers_drop_dash());
  run(staging_, sql::staged_numbers_drop_dash());
  staging_.commit_transaction();
  const std::string desde = "2022-01-01";
  const std::string hasta = "2024-12-01";
  run(staging_, sql::staged_lines_before(desde));
  run(staging_, sql::staged_headers_before(desde));
  run(staging_, sql::staged_lines_after(hasta));
  run(staging_, sql::staged_headers_after(hasta));
  EXPECT_EQ(count(staging_, "SELECT COUNT(*) FROM Encabezados"), 7);  // 2021 is gone

  // B. Headers and lines, matching contracts by person id.
  std::int64_t header_base = scalar(kel_, sql::header_base());
  std::int64_t line_base = scalar(kel_, sql::line_base());
  EXPECT_EQ(header_base, 2);
  run(kel_, sql::headers_insert(header_base, staging_path_, true));
  run(kel_, sql::lines_insert(line_base, header_base, staging_path_, true));
  const std::int64_t headers = count(kel_, "SELECT COUNT(*) FROM Encabezados");
  const std::int64_t lines = count(kel_, "SELECT COUNT(*) FROM Datos_Liquidacion");
  EXPECT_GE(headers, 6);
  EXPECT_GE(lines, 8);
  // The same by document number: headers exist already, lines come again.
  header_base = scalar(kel_, sql::header_base());
  line_base = scalar(kel_, sql::line_base());
  run(kel_, sql::headers_insert(header_base, staging_path_, false));
  run(kel_, sql::lines_insert(line_base, header_base, staging_path_, false));
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Encabezados"), headers);

  // C. Calendar.
  auto month_mdy = [](const db::Value& iso) {
    const std::string text = db::as_text(iso);  // yyyy-MM-dd
    return text.substr(5, 2) + "/" + text.substr(8, 2) + "/" + text.substr(0, 4);
  };
  db::Recordset per_employee = query(kel_, sql::calendar_per_employee_select());
  EXPECT_FALSE(per_employee.eof());
  for (; !per_employee.eof(); per_employee.move_next()) {
    run(kel_, sql::calendar_per_employee_insert(db::as_int(per_employee.field("id_TipoLiq")),
                                                month_mdy(per_employee.field("MesDeLiq")),
                                                db::as_int(per_employee.field("id_Contrato"))));
  }
  db::Recordset groups = query(kel_, sql::calendar_group_select());
  EXPECT_FALSE(groups.eof());
  for (; !groups.eof(); groups.move_next()) {
    run(kel_, sql::calendar_group_insert(db::as_int(groups.field("id_TipoLiq")), month_mdy(groups.field("MesDeLiq")),
                                         db::as_text(groups.field("id_TipoRem")) + ",2"));
  }
  EXPECT_GT(count(kel_, "SELECT COUNT(*) FROM Calendario_liq WHERE CondCalLiq LIKE 'id_TipoRem in (%'"), 0);

  // D. Leave, worked days, exchange rates and totals.
  run_all(kel_, sql::leave_and_totals(staging_path_));
  EXPECT_GT(count(kel_, "SELECT COUNT(*) FROM licencias"), 0);
  EXPECT_GT(count(kel_, "SELECT COUNT(*) FROM rLic_Enc"), 0);
  EXPECT_GT(count(kel_, "SELECT COUNT(*) FROM Datos_Liquidacion WHERE DTE = 22"), 0);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Cotizacion WHERE id_Moneda = 2"), 2);
  // Totals were recomputed from the lines (which the second pass doubled).
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Encabezados WHERE Aporte = 9000 AND Liquido = 0 AND Cod1 = 0"), 1);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM Encabezados E WHERE Aporte <> (SELECT COALESCE(SUM(Monto), 0) FROM "
                        "Datos_Liquidacion DL WHERE DL.id_Encabezado = E.id_Encabezado AND id_Concepto IN (5, 6, 7))"),
            0);
  EXPECT_EQ(count(kel_, "SELECT COUNT(*) FROM sqlite_master WHERE name = 'AuxXX'"), 0);
}

}  // namespace
}  // namespace corpus_test
