// transfer/importer.h — the five transfer steps as one service, by group.
//
// The import run ticks groups 0..4 (company, catalogues, persons, concepts,
// liquidations) and runs the step of each ticked group in that order. The
// controller receives a StepRunner when it is built, so a session without a
// transfer cannot exist; the program's runner is Importer, and tests that
// only check the run's order and gating give a recording runner instead.
#pragma once

#include <string>

#include "transfer/step_context.h"

namespace transfer {

inline constexpr int kGroupCount = 5;

// The caption of group `group` (0..4), as its box shows it; "" outside.
const char* group_caption(int group);

// What a run gives the steps beyond the context.
struct RunInputs {
  std::string desde;              // liquidations from this month ("yyyy-MM-01"), or "" for no bound
  std::string hasta;              // liquidations up to this month, or ""
  bool persons_imported = false;  // group 2 is ticked in the same run
};

// Runs the transfer step of one group.
class StepRunner {
 public:
  virtual ~StepRunner() = default;
  // Runs the step of `group` (0..4) with `ctx` and, for the liquidations,
  // `inputs`. Throws std::out_of_range for another group, and whatever the
  // step throws (db::Error for a statement that is refused where the step does
  // not ignore errors); the work done before stays applied.
  virtual StepReport run_step(int group, StepContext& ctx, const RunInputs& inputs) = 0;
};

// The program's transfer: the steps of empresa, catalogos, personas,
// conceptos and liquidaciones.
class Importer final : public StepRunner {
 public:
  StepReport run_step(int group, StepContext& ctx, const RunInputs& inputs) override;
};

}  // namespace transfer
