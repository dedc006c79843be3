// ui/statement_yield.cpp — the engine's progress callback as the window's repaint.
#include "ui/statement_yield.h"

namespace ui {
namespace {

// The engine calls back after this many virtual machine instructions of one
// statement: small enough that the many short statements of a run (each a
// commit of its own, waiting on the disk) reach the callback too; the clock
// test that follows is cheap.
constexpr int kInstructions = 500;

}  // namespace

StatementYield::StatementYield(std::vector<Slot> slots, std::function<void()> yield) : yield_(std::move(yield)) {
  since_.start();
  for (Slot slot : slots) {
    db::Connection* connection = slot->get();
    if (!connection || !connection->is_open()) continue;
    if (connection->set_progress_handler(kInstructions, [this] { on_progress(); }))
      installed_.emplace_back(slot, connection);
  }
}

StatementYield::~StatementYield() {
  // A connection closed or replaced meanwhile took its callback with it; only
  // the connections still in their slot are touched.
  for (const auto& [slot, connection] : installed_)
    if (slot->get() == connection && connection->is_open()) connection->set_progress_handler(0, {});
}

void StatementYield::on_progress() {
  // A repaint that reaches another statement of the same run must not
  // repaint again from inside itself.
  if (yielding_ || since_.elapsed() < kEveryMs) return;
  yielding_ = true;
  yield_();
  yielding_ = false;
  since_.restart();
}

}  // namespace ui
