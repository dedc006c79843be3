// transfer/catalogos.cpp — the catalogues step: an update and an insert per
// catalogue, then the three cost-centre fix-ups, counted per table.
#include "transfer/catalogos.h"

#include <array>
#include <string>
#include <vector>

#include "transfer/catalogos_sql.h"

namespace transfer {

StepReport import_catalogues(StepContext& ctx) {
  StepReport report;
  report.step = "Cargos, Sectores, Regimenes Horarios y Sucursales";
  // catalogos_merge gives an update then an insert for each of these, in
  // this order.
  static constexpr std::array<const char*, 6> kTables = {"Cargos",      "Sectores", "Sucursales",
                                                        "TRegHorario", "Obras",    "CentroCosto"};
  const std::vector<std::string> merge = sql::catalogos_merge(ctx.staging_path);
  for (std::size_t i = 0; i < merge.size(); ++i)
    run_statement(report, ctx.destination, merge[i], kTables[(i / 2) % kTables.size()],
                  i % 2 == 0 ? "actualizadas" : "insertadas");
  for (const std::string& fixup : sql::catalogos_cost_centre_fixups())
    run_statement(report, ctx.destination, fixup, "rCC_Cont", "actualizadas");
  return report;
}

}  // namespace transfer
