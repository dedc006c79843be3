// ui/freeze_meter.cpp — the longest gap between ticks of a short timer.
#include "ui/freeze_meter.h"

#include <algorithm>

namespace ui {

FreezeMeter::FreezeMeter(QObject* parent) : QObject(parent) {
  timer_.setInterval(kIntervalMs);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &FreezeMeter::tick);
}

void FreezeMeter::restart() {
  longest_ = 0;
  since_tick_.start();
  timer_.start();
}

void FreezeMeter::tick() {
  longest_ = std::max(longest_, since_tick_.restart() - kIntervalMs);
}

void FreezeMeter::finish() {
  if (!timer_.isActive()) return;
  tick();
  timer_.stop();
}

}  // namespace ui
