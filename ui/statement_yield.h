// ui/statement_yield.h — lets the window repaint while one long statement
// runs. The controller yields between progress steps; a single statement of
// the transfer (a liquidation history of ten years copied in one INSERT ...
// SELECT) can still run for seconds. While a StatementYield lives, the
// engine calls back every few hundred instructions on the given connections,
// and at most every kEveryMs the callback runs `yield` (the window's repaint,
// which leaves out the user's input).
//
// `yield` must not use these connections: SQLite forbids touching a
// connection from inside its own progress callback. The window's repaint
// only draws what its models hold (the grids fetch no rows during a run).
#pragma once

#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "db/connection.h"

namespace ui {

class StatementYield {
 public:
  static constexpr int kEveryMs = 40;

  using Slot = const std::unique_ptr<db::Connection>*;

  // Installs the callback on the open connections held in `slots` whose
  // engine has one (others are left alone). The slots (the controller's
  // connection members) must outlive this object; a connection they hold may
  // be closed or replaced meanwhile.
  StatementYield(std::vector<Slot> slots, std::function<void()> yield);
  ~StatementYield();
  StatementYield(const StatementYield&) = delete;
  StatementYield& operator=(const StatementYield&) = delete;

 private:
  void on_progress();

  // Each slot with the connection the callback was installed on.
  std::vector<std::pair<Slot, db::Connection*>> installed_;
  std::function<void()> yield_;
  QElapsedTimer since_;
  bool yielding_ = false;
};

}  // namespace ui
