// demo/source_codes.cpp — concepts, liquidation types, mappings and exchange
// rates of the demo source company.
#include <cmath>
#include <string>
#include <vector>

#include "demo/concepts.h"
#include "demo/prng.h"
#include "demo/source_company.h"

namespace demo {

namespace {
constexpr std::uint64_t kRatesStream = 12;
}  // namespace

void write_source_codes(const DemoOptions& options, const Staff& staff, RowSink& sink, SourceForm form) {
  RowBuilder row;
  const bool interchange = form == SourceForm::Interchange;
  std::vector<std::string> concept_columns = {"id_Concepto", "Codigo", "NombreReducido", "Nombre",
                                              "id_ConsLiquidacion", "TipoDato", "TipoOperacion", "ModificaNominal",
                                              "RedoCoef", "RedoCant", "id_Moneda", "FCant", "FCoef", "VisibleEnRec"};
  if (interchange) concept_columns.emplace_back("TotalBPS");
  const int conceptos = sink.declare_table("Conceptos", concept_columns);
  for (const ConceptDef& c : concept_defs()) {
    row.reset().i(c.id).t(c.codigo).t(c.nombre_reducido).t(c.nombre).null().i(c.tipo_dato)
        .t(std::string(1, c.operacion)).yes_no(c.modifica_nominal).i(2).i(2).i(1);
    // Empty formulas are kept as the source had them: Null.
    if (*c.fcant) row.t(c.fcant); else row.null();
    if (*c.fcoef) row.t(c.fcoef); else row.null();
    row.yes_no(c.id < kDiasTrabajados || c.id == kLiquido);
    if (interchange) {
      if (const char mark = total_bps(c.id)) row.t(std::string(1, mark)); else row.null();
    }
    sink.add_row(conceptos, row.values());
  }

  const int tipos = sink.declare_table(
      "TiposLiquidacion", {"id_TipoLiq", "Nombre", "Color", "Salarial", "Activa", "ParaEmp", "CodigoParaBPS"});
  for (const TipoLiqDef& t : tipo_liq_defs()) {
    row.reset().i(t.id).t(t.nombre).i(0).yes_no(t.salarial).yes_no(t.id != kRetroactivo).yes_no(t.para_emp)
        .i(t.id == kAguinaldoTipo ? 2 : 1);
    sink.add_row(tipos, row.values());
  }

  const int relac_conc = sink.declare_table("RelacConc", {"CodKEL", "CodOS"});
  for (const Mapping& m : concept_mappings()) sink.add_row(relac_conc, row.reset().i(m.cod_kel).i(m.cod_os).values());
  const int relac_tliq = sink.declare_table("RelacTLiq", {"CodKEL", "CodOS"});
  for (const Mapping& m : tipo_liq_mappings()) sink.add_row(relac_tliq, row.reset().i(m.cod_kel).i(m.cod_os).values());

  // The dollar, once a month, as a slow random walk around 40 pesos.
  const int cotizacion = sink.declare_table("Cotizacion", {"id_Moneda", "Fecha", "Valor"});
  Prng rng = Prng::stream(options.seed, kRatesStream);
  double rate = 38.0 + 4.0 * rng.unit();
  for (int m = staff.first_month; m <= staff.last_month; ++m) {
    rate = std::round((rate * (0.985 + 0.03 * rng.unit())) * 1000.0) / 1000.0;
    sink.add_row(cotizacion, row.reset().i(2).t(first_of_month(m).iso()).r(rate).values());
  }
}

}  // namespace demo
