// transfer/liquidaciones_sql.h — statements of the liquidations step.
//
// The step copies the staged liquidation headers and lines into the
// destination (types and concepts translated through RelacTLiq and
// RelacConc, contracts matched on person, start date and agreement), fills
// the liquidation calendar, derives leave from the leave concepts, copies
// exchange rates and recomputes each header's BPS totals from the
// destination's views. Statements run on the destination connection unless
// their comment says "staging". Texts run verbatim through the Jet translator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace transfer::sql {

// -- A. Preparing the staging database ----------------------------------------

// Staging: drops the character before the last of every number holding a
// dash (run twice).
std::string staged_numbers_drop_dash();
// Staging: removes the staged lines, then headers, of months before `desde`
// or after `hasta` (month texts that cdate reads).
std::string staged_lines_before(std::string_view desde);
std::string staged_headers_before(std::string_view desde);
std::string staged_lines_after(std::string_view hasta);
std::string staged_headers_after(std::string_view hasta);

// -- B. Headers and lines -----------------------------------------------------

// One above the highest destination header id / line id (1 when empty).
std::string header_base();
std::string line_base();

// The contract match: by person id when persons were imported in the same
// run (persons_imported), by document number otherwise.
std::string contract_match(bool persons_imported);

// Inserts the staged headers (grouped per contract, month and KEL type) that
// the destination does not have yet, with id header_base + staged id.
std::string headers_insert(std::int64_t header_base, std::string_view staging_path, bool persons_imported);
// Inserts the staged lines of mapped concepts under the matching destination
// headers, with id line_base + staged id.
std::string lines_insert(std::int64_t line_base, std::int64_t header_base, std::string_view staging_path,
                         bool persons_imported);

// -- Reads for the import report (they change nothing) ----------------------
// A staged line is left out for the first of these reasons that holds.

// On the staging database: lines whose concept is mapped only to -1 ("No
// Importar").
std::string staged_lines_not_imported_concept();
// On the staging database: lines whose concept has no mapping at all.
std::string staged_lines_unmapped_concept();
// On the staging database: lines of a mapped concept whose header's type has
// no mapping.
std::string staged_lines_unmapped_type();
// On the staging database: id_Encabezado and Lineas, the lines of each
// header that pass the three tests above.
std::string staged_candidate_lines_per_header();
// On the destination, after the headers insert: the staged header ids that
// find a destination header the way the lines insert looks for it (matching
// contract, same month and KEL type).
std::string staged_headers_found(std::string_view staging_path, bool persons_imported);

// -- C. Calendar --------------------------------------------------------------

// Headers of the types liquidated per employee.
std::string calendar_per_employee_select();
// One calendar entry for a contract, type and month ("MM/dd/yyyy").
std::string calendar_per_employee_insert(std::int64_t id_tipo_liq, std::string_view month_mdy,
                                         std::int64_t id_contrato);
// (type, month, remuneration type) of the types neither per employee nor
// salary, ordered by type, remuneration type and month.
std::string calendar_group_select();
// One calendar entry of a type and month for the contracts whose
// remuneration type is in `tipo_rem_list` (comma-separated).
std::string calendar_group_insert(std::int64_t id_tipo_liq, std::string_view month_mdy,
                                  std::string_view tipo_rem_list);

// -- D. Leave, worked days, exchange rates and totals --------------------------

// One day of leave per header of type 5, 6, 1 or 2 with a leave line.
std::string leave_insert();
// Links leave without links to the headers and leave lines of its month.
std::string leave_link_new();
// Links the further leave lines of leave already linked.
std::string leave_link_more();
// Copies the worked days of CDetaLiq_DiasTrab into the lines.
std::string worked_days_update();
// Deletes the exchange rates of currencies other than 1.
std::string cotizacion_delete_foreign();
// Appends all staged exchange rates.
std::string cotizacion_copy(std::string_view staging_path);
// Snapshot of cLiqTotBPS into AuxXX, update of the headers' totals from it,
// and drop of AuxXX.
std::string totals_snapshot();
std::string totals_update();
std::string totals_drop();

// Part D in the order it runs (AuxOtrosRep is emptied between the worked
// days and the exchange rates). Every statement runs with errors ignored.
std::vector<std::string> leave_and_totals(std::string_view staging_path);

}  // namespace transfer::sql
