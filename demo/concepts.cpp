// demo/concepts.cpp — the source system's concept and liquidation-type lists.
//
// Codes are the source's own three-digit codes, except one that happens to
// equal a KEL code ("72"), as happens when a company numbered its concepts
// the way KEL does: creating it in KEL asks whether to replace KEL's.
#include "demo/concepts.h"

namespace demo {

namespace {

const ConceptDef kConcepts[] = {
    {kSueldo, "001", "Sueldo", "Sueldo básico", 'S', 0, true, "[DiasTrab]", "[Sueldo]/30"},
    {kJornales, "002", "Jornales", "Jornales trabajados", 'S', 0, true, "[DiasTrab]", "[Jornal]"},
    {kHorasExtra, "003", "Hs. extra", "Horas extra comunes", 'S', 0, true, "", "[ValorHora]*2"},
    {kHorasExtraFeriado, "004", "Hs. ext. fer.", "Horas extra en feriado", 'S', 0, true, "", "[ValorHora]*2.5"},
    {kAntiguedad, "005", "Antigüedad", "Prima por antigüedad", 'S', 1, true, "[AniosAntig]", "[Sueldo]"},
    {kPresentismo, "006", "Presentismo", "Prima por presentismo", 'S', 1, true, "5", "[Sueldo]"},
    {kNocturnidad, "007", "Nocturnidad", "Horas nocturnas", 'S', 0, true, "", "[ValorHora]*0.2"},
    {kFeriadoPago, "008", "Feriado pago", "Feriado pago trabajado", 'S', 0, true, "1", "[Jornal]*2"},
    {kLicencia, "009", "Licencia", "Licencia gozada", 'S', 0, false, "[DiasLic]", "[Jornal]"},
    {kSalarioVacacional, "010", "Sal. vacac.", "Salario vacacional", 'S', 0, false, "[DiasLic]", "[Jornal]"},
    {kAguinaldo, "011", "Aguinaldo", "Sueldo anual complementario", 'S', 0, false, "1", "[Gravado6M]/12"},
    {kViaticos, "012", "Viáticos", "Viáticos", 'S', 0, false, "", ""},
    {kProductividad, "013", "Productiv.", "Prima por productividad", 'S', 0, true, "", ""},
    {kQuebrantoCaja, "014", "Quebranto", "Quebranto de caja", 'S', 0, true, "", ""},
    {kTicketAlimentacion, "015", "Ticket alim.", "Ticket alimentación", 'S', 0, false, "", ""},
    {kEnfermedad, "72", "Enfermedad", "Complemento por enfermedad", 'S', 0, false, "[DiasEnf]", "[Jornal]*0.3"},
    {kIndemnizacion, "017", "Despido", "Indemnización por despido", 'S', 0, false, "[MesesAntig]", "[Sueldo]"},
    {kLicenciaNoGozada, "018", "Lic. no goz.", "Licencia no gozada", 'S', 0, false, "[DiasLicPend]", "[Jornal]"},
    {kAdelanto, "019", "Adelanto", "Adelanto quincenal", 'S', 0, false, "1", "[Sueldo]*0.4"},
    {kDiferenciaSalarial, "020", "Dif. salarial", "Diferencia salarial por convenio", 'S', 0, true, "", ""},
    {kMontepio, "101", "Montepío", "Aporte jubilatorio BPS", 'R', 1, false, "15", "[Gravado]"},
    {kFonasa, "102", "FONASA", "Aporte FONASA", 'R', 1, false, "[PorcFonasa]", "[Gravado]"},
    {kFrl, "103", "FRL", "Fondo de reconversión laboral", 'R', 1, false, "0.1", "[Gravado]"},
    {kIrpf, "104", "IRPF", "Retención IRPF", 'R', 0, false, "", ""},
    {kDescAdelanto, "105", "Desc. adel.", "Descuento adelanto quincenal", 'R', 0, false, "1", "[Adelanto]"},
    {kCuotaSindical, "106", "Sindicato", "Cuota sindical", 'R', 1, false, "1", "[Sueldo]"},
    {kRetencionJudicial, "107", "Ret. judicial", "Retención judicial (pensión alimenticia)", 'R', 1, false, "20", "[Liquido]"},
    {kPrestamo, "108", "Préstamo", "Cuota préstamo", 'R', 0, false, "", ""},
    {kSeguroVida, "109", "Seguro vida", "Seguro de vida", 'R', 0, false, "1", "350"},
    {kFaltas, "110", "Faltas", "Faltas injustificadas", 'R', 0, false, "[DiasFalta]", "[Jornal]"},
    {kLlegadasTarde, "111", "Llegadas tarde", "Llegadas tarde", 'R', 0, false, "[HorasTarde]", "[ValorHora]"},
    {kDiasTrabajados, "201", "Días trab.", "Días trabajados", 'S', 0, false, "[DiasTrab]", ""},
    {kHorasTrabajadas, "202", "Horas trab.", "Horas trabajadas", 'S', 0, false, "[HorasTrab]", ""},
    {kSueldoNominal, "203", "Nominal", "Sueldo nominal", 'S', 0, false, "1", "[Sueldo]"},
    {kValorHora, "204", "Valor hora", "Valor hora", 'S', 0, false, "1", "[Sueldo]/200"},
    {kMontoImponible, "205", "Imponible", "Monto imponible", 'S', 0, false, "1", "[Gravado]"},
    {kBaseIrpf, "206", "Base IRPF", "Base de cálculo IRPF", 'S', 0, false, "1", "[Gravado]*1.06"},
    {kDeduccionesIrpf, "207", "Deduc. IRPF", "Deducciones IRPF", 'S', 0, false, "1", ""},
    {kTotalAportes, "208", "Tot. aportes", "Total aportes personales", 'S', 0, false, "1", ""},
    {kTotalHaberes, "209", "Tot. haberes", "Total haberes", 'S', 0, false, "1", ""},
    {kTotalDescuentos, "210", "Tot. desc.", "Total descuentos", 'R', 0, false, "1", ""},
    {kRedondeo, "211", "Redondeo", "Redondeo", 'S', 0, false, "1", ""},
    {kLiquido, "212", "Líquido", "Líquido a cobrar", 'S', 0, false, "1", ""},
    {kAportePatronal, "301", "Ap. patronal", "Aporte patronal BPS", 'S', 1, false, "7.5", "[Gravado]"},
    {kFonasaPatronal, "302", "FONASA pat.", "FONASA patronal", 'S', 1, false, "5", "[Gravado]"},
    {kFrlPatronal, "303", "FRL pat.", "FRL patronal", 'S', 1, false, "0.125", "[Gravado]"},
    {kFgcl, "304", "FGCL", "Fondo de garantía de créditos laborales", 'S', 1, false, "0.025", "[Gravado]"},
    {kCostoEmpresa, "305", "Costo", "Costo total empresa", 'S', 0, false, "1", ""},
    // Formulas with quotes, as some sources write them: the importer strips them.
    {kDescUniforme, "112", "Uniforme", "Descuento uniforme", 'R', 0, false, "1", "Tabla('Uniformes')"},
    {kCuotaAnda, "113", "ANDA", "Cuota ANDA", 'R', 0, false, "1", ""},
    {kPrimaMatrimonio, "021", "Prima matrim.", "Prima por matrimonio", 'S', 0, false, "1", ""},
    {kHogarConstituido, "022", "Hogar const.", "Prima por hogar constituido", 'S', 0, false, "1", " [BPC]*0.5 "},
};

const TipoLiqDef kTipos[] = {
    {kMensual, "Mensual", true, false},
    {kAguinaldoTipo, "Aguinaldo", false, false},
    {kAdelantoQuincenal, "Adelanto quincenal", true, false},
    {kLicenciaTipo, "Licencia", true, true},
    {kEgreso, "Egreso", true, true},
    {kVacacional, "Salario vacacional", false, true},
    {kComplementaria, "Complementaria", true, true},
    {kRetroactivo, "Retroactivo convenio", true, false},
};

// What the format links while staging (the BPS totals and the main concepts)
// and what the user marked "No Importar" (informative lines KEL computes).
// The rest is for the user to map, or to be created in KEL.
const Mapping kConceptMappings[] = {
    {kMontoImponible, 17}, {kAguinaldo, 13},  {kTotalHaberes, 53}, {kTotalDescuentos, 4},
    {kSueldo, 1},          {kJornales, 2},    {kDiasTrabajados, 3}, {kMontepio, 5},
    {kFonasa, 6},          {kFrl, 7},         {kIrpf, 8},          {kHorasExtra, 9},
    {kPresentismo, 10},    {kNocturnidad, 11}, {kLicencia, 20},    {kLicenciaNoGozada, 22},
    {kSalarioVacacional, 15}, {kDescAdelanto, 18}, {kLiquido, 100},
    {kRedondeo, -1},       {kHorasTrabajadas, -1}, {kValorHora, -1}, {kSueldoNominal, -1},
    {kCostoEmpresa, -1},
};

// Mensual, Aguinaldo, Licencia and Salario vacacional have their KEL
// namesakes; Egreso is left unmapped although KEL has a type of that name,
// and the unused type is marked not to be imported.
const Mapping kTipoMappings[] = {
    {kMensual, 1}, {kAguinaldoTipo, 3}, {kLicenciaTipo, 5}, {kVacacional, 7}, {kRetroactivo, -1},
};

// The totals the source marks. Ticket alimentación is the source's only
// partially taxed item and viáticos its only earning outside the IRPF base,
// so each stands for its total; the source has no additional IRPF concept,
// so '5' marks nothing. These two are not in kConceptMappings: staged on
// their own, they are linked by the format alone.
const TotalMark kTotalMarks[] = {
    {kMontoImponible, '1'}, {kAguinaldo, '2'},    {kTicketAlimentacion, '7'},
    {kViaticos, '8'},       {kTotalHaberes, 'H'}, {kTotalDescuentos, 'D'},
};

}  // namespace

std::span<const ConceptDef> concept_defs() { return kConcepts; }
std::span<const TipoLiqDef> tipo_liq_defs() { return kTipos; }
std::span<const Mapping> concept_mappings() { return kConceptMappings; }
std::span<const Mapping> tipo_liq_mappings() { return kTipoMappings; }
std::span<const TotalMark> total_bps_marks() { return kTotalMarks; }

char total_bps(int concepto) {
  for (const TotalMark& m : kTotalMarks) {
    if (m.concepto == concepto) return m.total_bps;
  }
  return '\0';
}

}  // namespace demo
