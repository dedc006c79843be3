// session/progress.cpp — ActuBarra's arithmetic.
#include "session/progress.h"

#include <algorithm>
#include <cmath>

namespace session {

void ProgressBar::ActuBarra(float argument) {
  if (argument > kKeepIncrement) increment_ = argument;
  if (argument == kReset) {
    visible_ = false;
    percentage_ = 0;
    increment_ = 0;
  } else {
    visible_ = true;
  }
  percentage_ = std::min(100.0f, percentage_ + increment_);
  if (yield) yield();
}

std::string ProgressBar::lblPorc() const {
  return std::to_string(static_cast<int>(std::lround(percentage_))) + "%";
}

}  // namespace session
