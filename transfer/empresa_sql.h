// transfer/empresa_sql.h — statements of the company and registrations step.
//
// The step replaces the destination's company record and payroll
// registrations with the staged ones. Every statement runs on the destination
// connection; the staging database is read through `in '<staging path>'`.
// The texts are the system's own and run verbatim through the Jet translator.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace transfer::sql {

// Empties the destination's company table.
std::string empresa_delete();

// Copies every staged company row into the destination with IdEmpresa 1.
std::string empresa_copy(std::string_view staging_path);

// Empties the destination's payroll registrations.
std::string planillas_delete();

// Creates the neutral registration 0 when the destination has a company row
// and no registration 0 yet.
std::string planillas_neutral_insert();

// Copies all staged registrations with their own ids.
std::string planillas_copy(std::string_view staging_path);

// The whole step, in the order it runs.
std::vector<std::string> empresa_step(std::string_view staging_path);

}  // namespace transfer::sql
