// transfer/personas.h — the persons and contracts step (group 2).
#pragma once

#include "transfer/step_context.h"

namespace transfer {

// Tidies the staged document numbers (staging connection), parks the
// destination's person ids at +1000000000, moves destination persons whose
// document number matches a staged person onto the staged id, copies persons,
// related persons, declarations and contact data, appends the new staged
// contracts under ids above the destination's highest, attaches contracts to
// the first registration of each type, returns the parked persons to their
// old id when free (otherwise above the highest staged id), removes one
// duplicate per group of equal contracts and gives each contract its
// start-of-employment file entry.
//
// Errors are ignored only in the parking of contact rows and in the
// registrations block; there a refused statement changes nothing. Any other
// refused statement throws db::Error with the work done so far applied (an
// open transaction of the return of parked persons is left to the caller,
// whose connection rolls it back on close). A staging database without
// persons ends the step with an error once the destination's are parked.
StepReport import_persons(StepContext& ctx);

}  // namespace transfer
