// preview/preview_sql.h — statements of the staged data preview and the
// liquidation browser.
//
// Statements run on the staging connection unless their comment says
// "destination". Texts run verbatim through the Jet translator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace preview::sql {

// -- Staged data preview ---------------------------------------------------------

// The three tidy-ups of staged numbers, in order: trim document numbers, drop
// the hyphen before a check digit, drop the "_n" suffix of the contract
// number of a person with a single contract.
std::vector<std::string> staging_tidy();

// The company with its BPS registration number (NBPS).
std::string company_select();

// Catalogue grids, read through the list query helper with kCatalogueFields.
inline constexpr const char* kCatalogueFields = "id,Nombre";
std::string cargos_grid();
std::string sectores_grid();
std::string sucursales_grid();
std::string horarios_grid();

// The contracts grid, read through the list query helper with kContractFields.
inline constexpr const char* kContractFields =
    "NUMERO_ALTERNATIVO,Nombres,Apellidos,TipoRemDesc,SueldoCobraX,CarNombre,SecNombre,NUMERO,FECHA_INICIO,FECHA_FIN";
std::string contracts_grid();

// The declarations overlapping the month range: starting by `hasta` and
// ending (or open) from `desde`. Month texts that cdate reads.
std::string declarations_select(std::string_view hasta, std::string_view desde);

// Destination: KEL concepts and liquidation types for the lookups.
std::string kel_concepts_lookup();
std::string kel_types_lookup();
// Staged liquidation types and concepts for the lookups.
std::string staged_types_lookup();
std::string staged_concepts_lookup();

// Deletes the staged concepts no liquidation line uses, then the mappings of
// concepts no longer staged ("import only the concepts in use").
std::string unused_concepts_delete();
std::string unused_relations_delete();

// -- Liquidation browser -------------------------------------------------------

// The grid column whose values are month texts, sorted by their date value.
inline constexpr int kMonthColumn = 5;

// The new sort text after a click on the heading of column `column_index`
// named `column_name`: the key (cdate(<name>) for the month column, the name
// otherwise), followed by " Desc" when the old sort text equals the name
// (case ignored). The month column therefore always sorts ascending.
std::string liquidation_sort_text(std::string_view old_sort, std::string_view column_name, int column_index);

// The staged liquidation headers in the order of `sort` (id_Persona when
// empty), then month, type and contract.
std::string liquidation_headers_select(std::string_view sort);

// The lines of header `id_encabezado` with their display texts (Cant, Coef,
// strMonto), additions first.
std::string liquidation_lines_select(std::int64_t id_encabezado);

}  // namespace preview::sql
