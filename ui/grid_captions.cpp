// ui/grid_captions.cpp — the preview grids' headings and shown fields.
#include "ui/grid_captions.h"

namespace ui {

const std::map<std::string, QString>& FieldCaptions() {
  static const std::map<std::string, QString> captions = {
      {"id", "Código"},
      {"Nombre", "Nombre"},
      {"NUMERO_ALTERNATIVO", "Nº funcionario"},
      {"Nombres", "Nombres"},
      {"Apellidos", "Apellidos"},
      {"TipoRemDesc", "Remuneración"},
      {"SueldoCobraX", "Sueldo"},
      {"CarNombre", "Cargo"},
      {"SecNombre", "Sector"},
      {"NUMERO", "Documento"},
      {"FECHA_INICIO", "Ingreso"},
      {"FECHA_FIN", "Egreso"},
      {"id_Contrato", "Contrato"},
      {"strMesDeLiq", "Mes"},
      {"DescTipoLiq", "Tipo de liquidación"},
      {"FechaDeLiq", "Fecha de liquidación"},
      {"Impreso", "Impresa"},
      {"Terminado", "Terminada"},
      {"DescripRubro", "Rubro"},
      {"DescTipoDeduccion", "Tipo de deducción"},
      {"DescCausaDeduc", "Causa"},
      {"DescRelaFil", "Relación"},
      {"NombresRela", "Nombres del familiar"},
      {"ApellidosRela", "Apellidos del familiar"},
      {"NDocRela", "Documento del familiar"},
      {"strFecNacRela", "Nacimiento"},
      {"strDesde", "Desde"},
      {"strHasta", "Hasta"},
      {"strFechaDeclaracion", "Declarada"},
      {"Porc", "%"},
      {"Monto", "Monto"},
      {"DescCausalBaja", "Causal de baja"},
  };
  return captions;
}

const std::set<std::string>& LiquidationFieldsShown() {
  static const std::set<std::string> shown = {"id_Contrato", "NUMERO_ALTERNATIVO", "Nombres",  "strMesDeLiq",
                                              "DescTipoLiq", "FechaDeLiq",         "Impreso", "Terminado"};
  return shown;
}

const std::set<std::string>& DeclarationFieldsShown() {
  static const std::set<std::string> shown = {
      "Nombres",     "Apellidos",   "DescripRubro", "DescTipoDeduccion", "DescCausaDeduc",      "DescRelaFil",
      "NombresRela", "ApellidosRela", "NDocRela",   "strFecNacRela",     "strDesde",            "strHasta",
      "Porc",        "Monto",       "strFechaDeclaracion", "DescCausalBaja"};
  return shown;
}

}  // namespace ui
