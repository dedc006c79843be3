// mapping/grid_sql.h — statements of the concept and liquidation-type mapping grids.
//
// The mappings live in the staging tables RelacConc and RelacTLiq; every
// statement here runs on the staging connection, reading the destination's
// concepts or types through `in '<destination path>'`. Texts run verbatim
// through the Jet translator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mapping::sql {

// -- Concepts (RelacConc) -----------------------------------------------------

// The concept grid rows (CodigoOS, DescOS, CodigoKEL, DescKEL, Totalizar,
// ConcCrear) ordered by `sort`, or by DescOS when `sort` is empty.
std::string concept_grid_select(std::string_view destination_path, std::string_view sort);
// Deletes the mapping of a source concept before a new one is added.
std::string concept_relation_delete(std::string_view cod_os);
// Adds a mapping; `cod_kel` is "-1", "Null" or the KEL concept id.
std::string concept_relation_insert(std::string_view cod_kel, std::string_view cod_os);
// Removes the mapping of `cod_os` onto `cod_kel` (0 when the KEL side is empty).
std::string concept_relation_remove(std::int64_t cod_kel, std::string_view cod_os);
// Deletes the automatic links: the mappings onto the KEL concepts of the BPS
// totalisation relations, `kel_ids` joined by ",".
std::string automatic_links_delete(std::string_view kel_ids);

// -- Liquidation types (RelacTLiq) --------------------------------------------

// The type grid rows (CodigoOS, DescOS, CodigoKEL, DescKEL) in the order of
// the source type's number.
std::string type_grid_select(std::string_view destination_path);
// Adds a mapping (no earlier row is deleted).
std::string type_relation_insert(std::string_view cod_kel, std::string_view cod_os);
// Removes the mappings of a source type (its trimmed code); only the one onto
// `cod_kel` when that is not 0.
std::string type_relation_delete(std::string_view cod_os_trimmed, std::int64_t cod_kel);

}  // namespace mapping::sql
