// transfer/conceptos_sql.h — statements of the concepts and liquidation types step.
//
// Every staged concept and liquidation type without a mapping onto an
// existing KEL one is created in the destination under a new id, and the
// mapping tables of the staging database are completed. The selections of
// what to create run on the staging connection (reading the destination
// through `in '<destination path>'`), the creations on the destination, the
// mapping rows on the staging connection. Texts run verbatim through the Jet
// translator; text values are written between single quotes as they are.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace transfer::sql {

// -- Concepts -----------------------------------------------------------------

// Staging: the staged concepts with no mapping row naming an existing KEL
// concept or -1.
std::string concepts_to_create(std::string_view destination_path);
// Highest destination concept id.
std::string concept_max_id();
// Destination concept with the given code.
std::string concept_by_code(std::string_view codigo);
// Deletes a destination concept (replaced under its own id).
std::string concept_delete(std::int64_t id_concepto);

// The values of a concept to create, as read from the staged row.
struct ConceptValues {
  std::int64_t id_concepto = 0;   // the KEL id to use
  std::string codigo;             // the code (with "_1" appended when not replacing)
  std::string nombre_reducido;
  std::string nombre;
  std::string id_cons_liquidacion;  // digits, or empty
  std::string tipo_dato;            // number as text
  std::string tipo_operacion;
  bool modifica_nominal = false;
  std::string redo_coef;            // number as text
  std::string redo_cant;            // number as text
  std::string fcant;                // formula texts
  std::string fcoef;
};

// Creates a concept in currency 1, visible on pay slips. Builds the values as
// the step requires: an empty id_ConsLiquidacion becomes Null, ModificaNominal
// True or False, the formulas lose every single quote and FCoef is trimmed.
// Empty numeric texts are written as 0 so that the statement stays valid.
std::string concept_insert(const ConceptValues& values);

// Staging: replaces the mapping of source concept `cod_os` onto `cod_kel`.
std::string relac_conc_delete(std::int64_t cod_kel, std::int64_t cod_os);
std::string relac_conc_insert(std::int64_t cod_kel, std::int64_t cod_os);

// -- Liquidation types ---------------------------------------------------------

// Staging: the staged types with no mapping row naming an existing KEL type.
std::string types_to_create(std::string_view destination_path);
// Highest destination liquidation type id.
std::string type_max_id();
// Destination type with the given name.
std::string type_by_name(std::string_view nombre);
// Deletes the destination's liquidations of a type, then the type itself.
std::string headers_of_type_delete(std::int64_t id_tipo_liq);
std::string type_delete(std::int64_t id_tipo_liq);
// Creates an active liquidation type.
std::string type_insert(std::int64_t id_tipo_liq, std::string_view nombre, bool salarial, bool para_emp);
// Gives a salary type the employer contributions of type 1 except 'VCM'.
std::string contributions_delete(std::int64_t id_tipo_liq);
std::string contributions_copy(std::int64_t id_tipo_liq);
// Staging: replaces the mapping of source type `cod_os` onto `cod_kel`.
std::string relac_tliq_delete(std::int64_t cod_kel, std::int64_t cod_os);
std::string relac_tliq_insert(std::int64_t cod_kel, std::int64_t cod_os);

}  // namespace transfer::sql
