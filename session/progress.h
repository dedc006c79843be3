// session/progress.h — the progress bar of the main window (ActuBarra).
//
// The bar keeps a percentage and a step increment, both in percentage points.
// Callers reset it with ActuBarra() (the sentinel -2), pass a fixed increment
// that also makes the first advance (ActuBarra(3)), and advance further with
// ActuBarra(-1), which keeps the increment. After every call the window is let
// repaint once through the yield callback.
#pragma once

#include <functional>
#include <string>

namespace session {

class ProgressBar {
 public:
  static constexpr float kReset = -2.0f;
  static constexpr float kKeepIncrement = -1.0f;

  // Called after every update so the window can repaint.
  std::function<void()> yield;

  // ActuBarra: an argument greater than -1 becomes the step increment; -2
  // (also the default) resets the bar, hiding it; any other value shows it.
  // The percentage then grows by the increment, capped at 100.
  void ActuBarra(float argument = kReset);

  // AF_GenImp: one step forward at the current increment.
  void AF_GenImp() { ActuBarra(kKeepIncrement); }

  float percentage() const { return percentage_; }
  float increment() const { return increment_; }
  bool visible() const { return visible_; }

  // lblPorc: the percentage rounded to a whole number, then "%".
  std::string lblPorc() const;

  // How much of the bar is filled, 0..1 (the filled shape grows upwards).
  float filled_fraction() const { return percentage_ / 100.0f; }

 private:
  float percentage_ = 0;
  float increment_ = 0;
  bool visible_ = false;
};

}  // namespace session
