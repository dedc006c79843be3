// transfer/liquidaciones.h — the liquidations step: headers and lines,
// calendar, leave, worked days, exchange rates and BPS totals.
//
// The last transfer step. It copies the staged liquidations into the KEL
// company (types and concepts through the staging database's RelacTLiq and
// RelacConc, contracts by person, start date and agreement), fills the
// liquidation calendar, derives leave from the leave concepts, copies the
// exchange rates and recomputes every header's totals from KEL's own view.
#pragma once

#include <string>

#include "transfer/step_context.h"

namespace transfer {

// The caption of the step, as the option box names it.
inline constexpr const char* kLiquidacionesStepName = "Liquidaciones";

// Runs the step.
//  - `desde` / `hasta`: the first and last month of the range as texts CDate
//    reads ("yyyy-MM-01"), or "" when that bound is not ticked. Staged
//    liquidations outside the range are deleted from the staging database
//    for good before anything is copied.
//  - `persons_imported`: the persons step runs in this same import, so persons
//    carry the same ids on both sides and contracts are matched by person id;
//    otherwise they are matched by document number.
// The staging preparation (document numbers, month range), the headers and
// lines and the calendar raise db::Error on a refused statement, ending the
// step with what ran before applied (the document-number transaction is
// undone as a whole). The two id reads and everything from the leave on
// ignore refused statements; each refused statement changes nothing.
StepReport import_liquidations(StepContext& ctx, const std::string& desde, const std::string& hasta,
                               bool persons_imported);

}  // namespace transfer
