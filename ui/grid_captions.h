// ui/grid_captions.h — how the preview grids show their fields: Spanish
// headings instead of field names, and for the grids whose query brings many
// internal fields (the liquidation headers, the declarations) which fields
// are shown at all. The grids' models keep every field: a heading click still
// sorts by the query's own column index.
#pragma once

#include <QString>
#include <map>
#include <set>
#include <string>

namespace ui {

// Headings by field name, for every preview grid.
const std::map<std::string, QString>& FieldCaptions();

// The fields GridLiq shows (the others are ids and raw dates).
const std::set<std::string>& LiquidationFieldsShown();

// The fields GridDeduc shows (the others are ids and the raw forms of the
// texts shown).
const std::set<std::string>& DeclarationFieldsShown();

}  // namespace ui
