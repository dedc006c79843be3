// transfer/catalogos.h — the catalogues step (group 1).
#pragma once

#include "transfer/step_context.h"

namespace transfer {

// Merges the staged positions, sectors, branches, working-time schemes, works
// and cost centres into the destination by id (rows on both sides are
// overwritten, except branches and schemes with id 0 or below; missing rows
// are added; nothing is deleted), then fills the empty position, health
// insurance and exemption of the destination's cost-centre assignments from
// their contracts. All on the destination connection; nothing is caught.
StepReport import_catalogues(StepContext& ctx);

}  // namespace transfer
