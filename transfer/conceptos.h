// transfer/conceptos.h — the concepts and liquidation types step.
//
// Every staged concept and liquidation type that the user did not map onto
// an existing KEL one is created in the KEL company under a new id, and the
// staging database's RelacConc / RelacTLiq gain the row that maps it onto that
// id, which the liquidations step then follows. Where KEL already holds a
// concept with the same code, or a type with the same name, the user is
// asked whether the new one replaces it.
#pragma once

#include "transfer/step_context.h"

namespace transfer {

// The caption of the step, as the option box names it.
inline constexpr const char* kConceptosStepName = "Conceptos y Tipos de Liquidaciones";

// Runs the step. Concepts first, then liquidation types:
//  - the items to create are chosen on the staging connection, which reads
//    the KEL tables by the destination's path;
//  - concept ids count from the KEL maximum + 1 but never below 101; type ids
//    from the KEL maximum + 1; the counter advances on every row, also when
//    an existing id is reused (ids are then skipped);
//  - a code or name already in KEL asks ctx.questions: Yes deletes the KEL
//    item (a type together with its liquidation headers) and reuses its id;
//    No renames the new one (code + "_1", name + "_" + the KEL id);
//  - a created salary type receives type 1's employer contributions, 'VCM'
//    excepted.
// Only the look-ups by code and by name ignore the database's errors. Any
// other refused statement raises db::Error and ends the step with the earlier
// statements applied; so does an empty KEL Conceptos or TiposLiquidacion,
// which leaves no maximum to count from.
StepReport import_concepts(StepContext& ctx);

}  // namespace transfer
