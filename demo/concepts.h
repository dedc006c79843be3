// demo/concepts.h — the source system's payroll concepts and liquidation types.
//
// The ids below are the source system's own (id_Concepto, id_TipoLiq of the
// staged tables); the liquidation generator names concepts by them. Each
// concept also says how the source wrote its lines: as a quantity times a
// unit value, as a percentage of a base, or as a plain amount.
#pragma once

#include <span>

namespace demo {

// Source concept ids.
enum Concepto : int {
  // Earnings.
  kSueldo = 1, kJornales, kHorasExtra, kHorasExtraFeriado, kAntiguedad, kPresentismo, kNocturnidad,
  kFeriadoPago, kLicencia, kSalarioVacacional, kAguinaldo, kViaticos, kProductividad, kQuebrantoCaja,
  kTicketAlimentacion, kEnfermedad, kIndemnizacion, kLicenciaNoGozada, kAdelanto, kDiferenciaSalarial,
  // Deductions.
  kMontepio = 21, kFonasa, kFrl, kIrpf, kDescAdelanto, kCuotaSindical, kRetencionJudicial, kPrestamo,
  kSeguroVida, kFaltas, kLlegadasTarde,
  // Informative lines and totals.
  kDiasTrabajados = 32, kHorasTrabajadas, kSueldoNominal, kValorHora, kMontoImponible, kBaseIrpf,
  kDeduccionesIrpf, kTotalAportes, kTotalHaberes, kTotalDescuentos, kRedondeo, kLiquido,
  // Employer contributions.
  kAportePatronal = 44, kFonasaPatronal, kFrlPatronal, kFgcl, kCostoEmpresa,
  // Concepts the source defines but no line uses.
  kDescUniforme = 49, kCuotaAnda, kPrimaMatrimonio, kHogarConstituido,
};

// Source liquidation type ids.
enum TipoLiq : int {
  kMensual = 1, kAguinaldoTipo, kAdelantoQuincenal, kLicenciaTipo, kEgreso, kVacacional, kComplementaria,
  kRetroactivo,
};

struct ConceptDef {
  int id;
  const char* codigo;
  const char* nombre_reducido;
  const char* nombre;
  char operacion;      // 'S' adds, 'R' subtracts
  int tipo_dato;       // 1 percentage, 0 otherwise
  bool modifica_nominal;
  const char* fcant;   // formula texts of the source, may be empty
  const char* fcoef;
};

struct TipoLiqDef {
  int id;
  const char* nombre;
  bool salarial;
  bool para_emp;
};

std::span<const ConceptDef> concept_defs();
std::span<const TipoLiqDef> tipo_liq_defs();

// The mappings a format fills in while staging: source id -> KEL id, or -1
// for "No Importar". Only a few; the user maps the rest.
struct Mapping {
  int cod_os;
  int cod_kel;
};
std::span<const Mapping> concept_mappings();
std::span<const Mapping> tipo_liq_mappings();

// The concepts that hold a total the interchange forms mark in
// Conceptos.TotalBPS ('1', '2', '5', '7', '8' the BPS totals, 'H' total
// earnings, 'D' total deductions), from which the shipped formats link them
// to KEL's concepts for those totals. A marked concept the demo also maps in
// concept_mappings() is mapped there to the same KEL concept the format
// relates to its total.
struct TotalMark {
  int concepto;
  char total_bps;
};
std::span<const TotalMark> total_bps_marks();

// The mark of one source concept, or '\0' when it holds no total.
char total_bps(int concepto);

}  // namespace demo
