// ui/statement_yield.cpp — SQLite's progress callback as the window's repaint.
#include "ui/statement_yield.h"

#include <sqlite3.h>

#include "db/sqlite_connection.h"

namespace ui {
namespace {

// SQLite calls back after this many virtual machine instructions of one
// statement: small enough that the many short statements of a run (each a
// commit of its own, waiting on the disk) reach the callback too; the clock
// test that follows is cheap.
constexpr int kInstructions = 500;

}  // namespace

namespace {

sqlite3* handle_of(StatementYield::Slot slot) {
  // Only SQLite files have such a callback; an ODBC source has none.
  auto* sqlite = dynamic_cast<db::SqliteConnection*>(slot->get());
  return sqlite ? sqlite->handle() : nullptr;
}

}  // namespace

StatementYield::StatementYield(std::vector<Slot> slots, std::function<void()> yield) : yield_(std::move(yield)) {
  since_.start();
  for (Slot slot : slots) {
    sqlite3* h = handle_of(slot);
    if (!h) continue;
    installed_.emplace_back(slot, h);
    sqlite3_progress_handler(h, kInstructions, &StatementYield::on_progress, this);
  }
}

StatementYield::~StatementYield() {
  // A connection closed or replaced meanwhile took its callback with it; only
  // the handles still open are touched.
  for (const auto& [slot, h] : installed_)
    if (handle_of(slot) == h) sqlite3_progress_handler(h, 0, nullptr, nullptr);
}

int StatementYield::on_progress(void* self) {
  auto* y = static_cast<StatementYield*>(self);
  // A repaint that reaches another statement of the same run must not
  // repaint again from inside itself.
  if (y->yielding_ || y->since_.elapsed() < kEveryMs) return 0;
  y->yielding_ = true;
  y->yield_();
  y->yielding_ = false;
  y->since_.restart();
  return 0;  // never interrupts the statement
}

}  // namespace ui
