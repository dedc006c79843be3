// staging/template.h — expansion of a statement template before it runs.
//
// A statement file's statements are templates: the file's own replacement
// pairs are applied first, then the fixed placeholders in this order:
// [PASS], [BDOrigen], [AROrigen], [BDDestino], [BPS1], [BPS2], [BPS5], [BPS7],
// [BPS8], [Habe], [Desc], [ConcCrear], [Desde], [Hasta]. Every replacement is a
// replace-all from the first character that ignores letter case; nothing is
// quoted or escaped, so a template writes its own quotes: in '[BDOrigen]'.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/month.h"
#include "settings/statement_file.h"

namespace staging {

using base::MonthBound;

// The session values the placeholders take.
struct TemplateValues {
  std::string password;     // DevPass of the entry's conditions
  std::string ruta;         // the entry's Ruta ([BDOrigen] and [AROrigen])
  std::string destination;  // path of the KEL company database ([BDDestino])
  // Column 1 (KEL concept id) of the BPS relation table, rows 0..6 in order:
  // BPS 1, 2, 5, 7, 8, Haberes, Descuentos.
  std::vector<std::int32_t> relation_ids;
  std::string conc_crear;  // the format's ConcCrear ("-1" is used when empty)
  MonthBound desde;
  MonthBound hasta;
};

// "#MM/dd/yyyy#" of the lower bound: the first day of Desde when its box is
// ticked, otherwise #01/01/1900#.
std::string LowerBoundLiteral(const MonthBound& desde);
// "#MM/dd/yyyy#" of the upper bound: the last day of Hasta's month when its box
// is ticked, otherwise #03/25/2080#.
std::string UpperBoundLiteral(const MonthBound& hasta);

// Expands one template: pairs in order (each with its Campo trimmed; skipped
// while the text is empty or when the trimmed Campo is empty), then the fixed
// placeholders. Throws std::out_of_range when relation_ids has fewer than seven
// values, whether or not the template uses them.
std::string ExpandTemplate(std::string_view text, const std::vector<settings::ReplacementPair>& pairs,
                           const TemplateValues& values);

}  // namespace staging
