// transfer/empresa.h — the company and payroll registrations step (group 0).
#pragma once

#include "transfer/step_context.h"

namespace transfer {

// Replaces the destination's company record (as IdEmpresa 1) and payroll
// registrations with the staged ones, creating the neutral registration 0
// when the destination then holds a company. Every statement runs on the
// destination connection and reads the staging database through
// ctx.staging_path. Nothing is caught: a refused statement throws db::Error
// and the statements already run stay applied (the destination may be left
// without a company or without registrations).
StepReport import_company(StepContext& ctx);

}  // namespace transfer
