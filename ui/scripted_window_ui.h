// ui/scripted_window_ui.h — scripted answers for a window that is really
// shown: the messages are answered and recorded as session::
// ScriptedUserInterface does, and repaint() runs the event loop once (without
// the user's input), as the real boxes' interface does. The window's tests
// and the screenshot mode use it, so no box waits for a click.
#pragma once

#include <QApplication>

#include "session/scripted_ui.h"

namespace ui {

class ScriptedWindowUi : public session::ScriptedUserInterface {
 public:
  void repaint() override {
    session::ScriptedUserInterface::repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
};

}  // namespace ui
