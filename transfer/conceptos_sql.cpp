// transfer/conceptos_sql.cpp — texts of the concepts and liquidation types step.
#include "transfer/conceptos_sql.h"

#include <algorithm>

namespace transfer::sql {
namespace {

std::string n(std::int64_t value) { return std::to_string(value); }

std::string yes_no(bool value) { return value ? "True" : "False"; }

std::string without_quotes(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\''), text.end());
  return text;
}

std::string trim_blanks(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  const auto last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

std::string number_or_zero(const std::string& text) {
  const std::string trimmed = trim_blanks(text);
  return trimmed.empty() ? "0" : trimmed;
}

}  // namespace

std::string concepts_to_create(std::string_view destination_path) {
  return "SELECT OS.* FROM Conceptos AS OS Where Not Exists (Select * From RelacConc AS RR Inner JOIN "
         "(Select * From Conceptos in '" +
         std::string(destination_path) +
         "') as PP ON  (RR.CodKEL = PP.ID_Concepto or RR.CodKEL=-1) Where OS.id_Concepto=RR.CodOS and not "
         "isnull(RR.CodKEL) ) ";
}

std::string concept_max_id() { return "select Max(id_concepto) From Conceptos"; }

std::string concept_by_code(std::string_view codigo) {
  return "Select id_concepto From Conceptos where Codigo='" + std::string(codigo) + "'";
}

std::string concept_delete(std::int64_t id_concepto) {
  return "Delete * From conceptos Where id_Concepto=" + n(id_concepto);
}

std::string concept_insert(const ConceptValues& v) {
  const std::string cons = trim_blanks(v.id_cons_liquidacion).empty() ? "Null" : trim_blanks(v.id_cons_liquidacion);
  return "Insert into Conceptos Select " + n(v.id_concepto) + " as id_Concepto " + " ,'" + v.codigo + "' as Codigo" +
         " ,'" + v.nombre_reducido + "' as NombreReducido" + " ,'" + v.nombre + "' as Nombre" + " ," + cons +
         " as id_ConsLiquidacion" + " , " + number_or_zero(v.tipo_dato) + " as TipoDato ,'" + v.tipo_operacion +
         "' as TipoOperacion" + " ," + yes_no(v.modifica_nominal) + " as ModificaNominal," +
         number_or_zero(v.redo_coef) + " as RedoCoef," + number_or_zero(v.redo_cant) + " as RedoCant" +
         " ,1 as id_Moneda,'" + without_quotes(v.fcant) + "' as FCant,'" + trim_blanks(without_quotes(v.fcoef)) +
         "' as FCoef, True as VisibleEnRec";
}

std::string relac_conc_delete(std::int64_t cod_kel, std::int64_t cod_os) {
  return "Delete * From RelacConc  Where CodKEL=" + n(cod_kel) + " and CodOS=" + n(cod_os);
}

std::string relac_conc_insert(std::int64_t cod_kel, std::int64_t cod_os) {
  return "Insert into RelacConc Select " + n(cod_kel) + " as CodKEL," + n(cod_os) + " as CodOS";
}

std::string types_to_create(std::string_view destination_path) {
  return "SELECT OS.* FROM TiposLiquidacion AS OS Where Not exists (Select * From RelacTLiq AS RR INNER JOIN "
         "(Select * From TiposLiquidacion in '" +
         std::string(destination_path) + "') as PP ON  RR.CodKEL = PP.id_TipoLiq where OS.id_TipoLiq=RR.CodOS) ";
}

std::string type_max_id() { return "select Max(id_TipoLiq) From TiposLiquidacion"; }

std::string type_by_name(std::string_view nombre) {
  return "Select id_TipoLiq From TiposLiquidacion where Nombre='" + std::string(nombre) + "'";
}

std::string headers_of_type_delete(std::int64_t id_tipo_liq) {
  return "delete * from encabezados where id_TipoLiq=" + n(id_tipo_liq);
}

std::string type_delete(std::int64_t id_tipo_liq) {
  return "Delete * From TiposLiquidacion Where id_TipoLiq=" + n(id_tipo_liq);
}

std::string type_insert(std::int64_t id_tipo_liq, std::string_view nombre, bool salarial, bool para_emp) {
  return "Insert into TiposLiquidacion Select " + n(id_tipo_liq) + " as id_TipoLiq " + " ,'" + std::string(nombre) +
         "' as Nombre ,0 as Color " + " ," + yes_no(salarial) + " as Salarial" + ", True as Activa," +
         yes_no(para_emp) + " as ParaEmp, 1 as CodigoParaBPS";
}

std::string contributions_delete(std::int64_t id_tipo_liq) {
  return "Delete * From rAporPat_TipoLiq where id_TipoLiq=" + n(id_tipo_liq);
}

std::string contributions_copy(std::int64_t id_tipo_liq) {
  return "insert into rAporPat_TipoLiq Select A.id_Aporte as id_Aporte,a.Codigo as Codigo, " + n(id_tipo_liq) +
         " as id_TipoLiq  From rAporPat_TipoLiq as A where Codigo<>'VCM' And id_TipoLiq=1";
}

std::string relac_tliq_delete(std::int64_t cod_kel, std::int64_t cod_os) {
  return "Delete * From RelacTLiq  Where CodKEL=" + n(cod_kel) + " and CodOS=" + n(cod_os);
}

std::string relac_tliq_insert(std::int64_t cod_kel, std::int64_t cod_os) {
  return "Insert into RelacTLiq Select " + n(cod_kel) + " as CodKEL, " + n(cod_os) + " as CodOS ";
}

}  // namespace transfer::sql
