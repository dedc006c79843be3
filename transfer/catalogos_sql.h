// transfer/catalogos_sql.h — statements of the catalogues step.
//
// The step merges the staged positions, sectors, branches, working-time
// schemes, works and cost centres into the destination by id (update the
// rows on both sides, insert the missing ones, delete nothing), then fills
// the empty position, health insurance and exemption of the destination's
// cost-centre assignments from their contracts. All statements run on the
// destination connection.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace transfer::sql {

// The twelve merge statements, update then insert for Cargos, Sectores,
// Sucursales, TRegHorario, Obras and CentroCosto, in that order.
std::vector<std::string> catalogos_merge(std::string_view staging_path);

// The three fix-ups of rCC_Cont (position, health insurance, exemption),
// in order. They read no staging table.
std::vector<std::string> catalogos_cost_centre_fixups();

// The whole step, in the order it runs.
std::vector<std::string> catalogos_step(std::string_view staging_path);

}  // namespace transfer::sql
