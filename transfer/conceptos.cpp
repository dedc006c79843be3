// transfer/conceptos.cpp — creating the unmapped concepts and liquidation
// types in KEL and completing the staging database's mappings.
#include "transfer/conceptos.h"

#include <cctype>
#include <cstdint>
#include <string>
#include <variant>

#include "db/error.h"
#include "db/recordset.h"
#include "db/sql_text.h"
#include "base/value.h"
#include "transfer/conceptos_sql.h"

namespace transfer {
namespace {

// The line break inside a question box's text.
constexpr const char* kLineBreak = "\r\n";

// The highest id of a KEL table. An empty table has no maximum: that ends the
// step, since there is nothing to number the new items from.
std::int64_t kel_maximum(StepReport& report, db::Connection& destination, const std::string& sql,
                         const char* what) {
  db::Recordset rs = run_query(report, destination, sql);
  if (rs.eof() || rs.field_count() == 0 || db::is_null(rs.field(0))) {
    throw db::Error(std::string("La tabla ") + what +
                        " de la empresa KEL está vacía: no hay un identificador desde el cual numerar los nuevos",
                    sql);
  }
  return db::as_int(rs.field(0));
}

// A Yes/No field as the staged row holds it: -1/0, another number, or a text
// such as "True" or "-1".
bool yes_no(const db::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    std::string lower;
    for (char c : *text) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "true" || lower == "verdadero" || lower == "yes" || lower == "si" || lower == "sí") return true;
  }
  return db::as_double(value) != 0;
}

// The new concept's values from the staged row (the statement text cleans the
// formulas and writes the empty consolidation as Null).
sql::ConceptValues concept_values(const db::Recordset& row, std::int64_t id, const std::string& codigo) {
  sql::ConceptValues v;
  v.id_concepto = id;
  v.codigo = codigo;
  v.nombre_reducido = db::as_text(row.field("NombreReducido"));
  v.nombre = db::as_text(row.field("Nombre"));
  v.id_cons_liquidacion = db::as_text(row.field("id_ConsLiquidacion"));
  v.tipo_dato = db::as_text(row.field("TipoDato"));
  v.tipo_operacion = db::as_text(row.field("TipoOperacion"));
  v.modifica_nominal = yes_no(row.field("ModificaNominal"));
  v.redo_coef = db::as_text(row.field("RedoCoef"));
  v.redo_cant = db::as_text(row.field("RedoCant"));
  v.fcant = db::as_text(row.field("FCant"));
  v.fcoef = db::as_text(row.field("FCoef"));
  return v;
}

void import_concept_rows(StepContext& ctx, StepReport& report, const std::string& destination_path) {
  db::Recordset rows = run_query(report, ctx.staging, sql::concepts_to_create(destination_path));
  const std::int64_t maximum = kel_maximum(report, ctx.destination, sql::concept_max_id(), "Conceptos");
  // Ids up to 100 are KEL's own: the import never hands them out.
  std::int64_t next_id = maximum >= 100 ? maximum + 1 : 101;

  for (; !rows.eof(); rows.move_next(), ++next_id) {
    std::string codigo = db::as_text(rows.field("Codigo"));
    // -1: no KEL concept with that code, or a code the database refused (one
    // holding a quote, say).
    const std::int64_t found = first_value_ignoring_errors(report, ctx.destination, sql::concept_by_code(codigo), -1);
    std::int64_t id = next_id;
    if (found != -1) {
      if (ctx.questions.ask_yes_no("Ya existe un concepto en KEL con el codigo '" + codigo + "'" + kLineBreak +
                                   "¿Desea reemplazarlo?")) {
        // Replaced under its own id; the counter still advances below.
        run_statement(report, ctx.destination, sql::concept_delete(found), "Conceptos", "borradas");
        id = found;
        report.notes.push_back("Concepto '" + codigo + "' reemplazado (id " + std::to_string(id) + ")");
      } else {
        codigo += "_1";
        report.notes.push_back("Concepto creado con el código '" + codigo + "' (id " + std::to_string(id) + ")");
      }
    }
    run_statement(report, ctx.destination, sql::concept_insert(concept_values(rows, id, codigo)), "Conceptos",
                  "insertadas");
    const std::int64_t cod_os = db::as_int(rows.field("id_Concepto"));
    run_statement(report, ctx.staging, sql::relac_conc_delete(id, cod_os), "RelacConc", "borradas");
    run_statement(report, ctx.staging, sql::relac_conc_insert(id, cod_os), "RelacConc", "insertadas");
  }
}

void import_type_rows(StepContext& ctx, StepReport& report, const std::string& destination_path) {
  db::Recordset rows = run_query(report, ctx.staging, sql::types_to_create(destination_path));
  std::int64_t next_id = kel_maximum(report, ctx.destination, sql::type_max_id(), "TiposLiquidacion") + 1;

  for (; !rows.eof(); rows.move_next(), ++next_id) {
    std::string nombre = db::as_text(rows.field("Nombre"));
    // -1: no KEL type with that name, or a name the database refused.
    const std::int64_t found = first_value_ignoring_errors(report, ctx.destination, sql::type_by_name(nombre), -1);
    std::int64_t id = next_id;
    if (found != -1) {
      if (ctx.questions.ask_yes_no("Ya existe una Liquidacion en KEL con el nombre '" + nombre + "'" + kLineBreak +
                                   "¿Desea reemplazarla?")) {
        // The type goes with every KEL liquidation of it.
        run_statement(report, ctx.destination, sql::headers_of_type_delete(found), "Encabezados", "borradas");
        run_statement(report, ctx.destination, sql::type_delete(found), "TiposLiquidacion", "borradas");
        id = found;
        report.notes.push_back("Tipo de liquidación '" + nombre + "' reemplazado (id " + std::to_string(id) + ")");
      } else {
        nombre += "_" + std::to_string(found);
        report.notes.push_back("Tipo de liquidación creado con el nombre '" + nombre + "' (id " +
                               std::to_string(id) + ")");
      }
    }
    const bool salarial = yes_no(rows.field("Salarial"));
    const bool para_emp = yes_no(rows.field("ParaEmp"));
    run_statement(report, ctx.destination, sql::type_insert(id, nombre, salarial, para_emp), "TiposLiquidacion",
                  "insertadas");
    if (salarial) {
      run_statement(report, ctx.destination, sql::contributions_delete(id), "rAporPat_TipoLiq", "borradas");
      run_statement(report, ctx.destination, sql::contributions_copy(id), "rAporPat_TipoLiq", "insertadas");
    }
    const std::int64_t cod_os = db::as_int(rows.field("id_TipoLiq"));
    run_statement(report, ctx.staging, sql::relac_tliq_delete(id, cod_os), "RelacTLiq", "borradas");
    run_statement(report, ctx.staging, sql::relac_tliq_insert(id, cod_os), "RelacTLiq", "insertadas");
  }
}

}  // namespace

StepReport import_concepts(StepContext& ctx) {
  StepReport report;
  report.step = kConceptosStepName;
  // The selections read KEL's tables by the destination's own file path.
  const std::string destination_path = db::jet_path_literal(ctx.destination.data_source_name());
  import_concept_rows(ctx, report, destination_path);
  repaint(ctx);
  import_type_rows(ctx, report, destination_path);
  return report;
}

}  // namespace transfer
