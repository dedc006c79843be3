// ui/freeze_meter.h — measures how long the window went without running its
// event loop: a timer ticks every few milliseconds, and the longest gap
// between two ticks (less the interval) is the longest freeze. A long load
// or import that lets the window repaint keeps the figure small.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace ui {

class FreezeMeter : public QObject {
  Q_OBJECT

 public:
  static constexpr int kIntervalMs = 10;

  explicit FreezeMeter(QObject* parent = nullptr);

  // Starts a new measure (the longest freeze goes back to 0).
  void restart();
  // Ends the measure: the time since the last tick counts as a gap too.
  void finish();
  // The longest freeze since restart(), in milliseconds.
  qint64 longest_ms() const { return longest_; }

 private:
  void tick();

  QTimer timer_;
  QElapsedTimer since_tick_;
  qint64 longest_ = 0;
};

}  // namespace ui
