// transfer/personas_sql.h — statements of the persons and contracts step.
//
// The step keeps person ids consistent between the staging and the
// destination database: the destination's person ids are parked at
// +kParkingOffset, destination persons are matched to staged ones by document
// number and take the staged id, staged persons and their declarations and
// contact data are copied, staged contracts are appended under new ids, and
// the parked persons return to their old id when it is still free or to a new
// one above the staged ids. Duplicate contracts are removed and every
// contract gets a start-of-employment file entry.
//
// Statements run on the destination connection unless their comment says
// "staging". Texts run verbatim through the Jet translator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace transfer::sql {

// A destination person id at or above this value is parked.
inline constexpr std::int64_t kParkingOffset = 1000000000;

// -- A. Document numbers (staging) ------------------------------------------

// The five tidy-ups of staged document numbers, in order: trim, drop the
// separator before a check digit after '-', '_', '-' again, '.'.
std::vector<std::string> staged_document_numbers_tidy();

// -- B. Parking ---------------------------------------------------------------

// Moves every destination person below the offset up by the offset.
std::string park_personas();
// Moves contracts with their persons and rebuilds their numbers.
std::string park_contratos();
// Moves every contact row (no condition). Run with errors ignored.
std::string park_contact_data();
// Moves declarations, and their related person when it works in the company.
std::string park_declaraciones();

// -- C. Matching by document number -------------------------------------------

// Empties the scratch table AuxOtrosRep (also used by the liquidation step).
std::string aux_clear();
// Fills AuxOtrosRep with (destination id C1, staged id C2) of persons whose
// document numbers have the same numeric value.
std::string aux_match_by_document(std::string_view staging_path);
// Moves the matched persons and what refers to them onto the staged ids:
// Personas, Contrato, contact data, declarations' related person (when it is
// the person itself), declarations' person; in that order.
std::vector<std::string> apply_match_map();

// -- D. Persons, related persons, declarations, contact data ------------------

// Refreshes destination persons from the staged person of same id and number.
std::string refresh_personas(std::string_view staging_path);
// Inserts the staged persons whose id the destination does not have.
std::string insert_new_personas(std::string_view staging_path);
// Staging: probe whether any related person is staged.
std::string staged_personas_rela_probe();
// Empties the destination's related persons.
std::string personas_rela_delete();
// Copies all staged related persons.
std::string personas_rela_copy(std::string_view staging_path);
// Staging: probe whether any declaration is staged.
std::string staged_declaraciones_probe();
// Empties the destination's declarations.
std::string declaraciones_delete();
// Copies all staged declarations.
std::string declaraciones_copy(std::string_view staging_path);
// Adds the staged contact rows the destination does not have.
std::string contact_data_copy(std::string_view staging_path);

// -- E. Contracts -------------------------------------------------------------

// Highest destination contract id, 0 for none.
std::string contract_max_id();
// Appends the staged contracts that are new, with id contract_base + staged id.
std::string contract_insert(std::int64_t contract_base, std::string_view staging_path);
// Refreshes destination contracts from the staged contract of same number
// and agreement.
std::string contract_update(std::string_view staging_path);
// First registration (other than 0) of registration type 1 (BSE), 2 (MTSS)
// or 3 (BPS).
std::string registration_first(int registration_type);
// Attaches every contract without a registration of that type to
// `planilla_id`. registration_type is 1, 2 or 3.
std::string registration_attach(int registration_type, std::int64_t planilla_id);
// The three contract defaults (contract type, pay unit of daily-paid, hours).
std::vector<std::string> contract_defaults();

// -- F. Returning parked persons ---------------------------------------------

// Highest person id below the offset (MaxP).
std::string max_unparked_person();
// Map of parked persons whose old id is free back to it.
std::string aux_return_to_free_ids();
// Map of parked persons whose old id is taken to max_p + 1.
std::string aux_move_above(std::int64_t max_p);
// Highest new id in the map (MaxID), 0 for none.
std::string aux_max_new_id();
// Lifts every new id above max_p to max_id.
std::string aux_lift(std::int64_t max_id, std::int64_t max_p);
// Lowest row number of the map (MinID), 0 for none.
std::string aux_min_row();
// Spreads the new ids above max_p by their row number.
std::string aux_spread(std::int64_t min_id, std::int64_t max_p);
// Applies the return map: Personas, Contrato, contact data (only where the
// target row is free), the two declaration updates; in that order.
std::vector<std::string> apply_return_map();

// -- G. Duplicates and personnel file -----------------------------------------

// Lists in AuxOtrosRep the highest contract of each group of duplicates.
std::string aux_duplicate_contracts();
// Deletes the liquidation headers of the listed contracts.
std::string delete_duplicate_headers();
// Deletes the listed contracts.
std::string delete_duplicate_contracts();
// Gives every contract without one a start-of-employment file entry.
std::string legajo_start_entries();

// -- Reads for the import report (they change nothing) ----------------------

// The person map in AuxOtrosRep: old (parked) id, new id, in row order.
std::string aux_person_map();
// How many rows AuxOtrosRep holds.
std::string aux_row_count();

}  // namespace transfer::sql
