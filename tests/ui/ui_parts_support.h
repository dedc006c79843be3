// tests/ui/ui_parts_support.h — what the tests of the window's parts share:
// one QApplication for the process and answering modal dialogs from a timer.
#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

namespace ui_parts_test {

// The process's QApplication (made on first use when no other test made one).
inline QApplication& app() {
  if (auto* existing = qobject_cast<QApplication*>(QCoreApplication::instance())) return *existing;
  static int argc = 1;
  static char name[] = "test_ui";
  static char* argv[] = {name, nullptr};
  // Never destroyed: at exit Qt's own globals may already be gone, and a
  // QApplication torn down after them crashes the test process.
  static QApplication* application = new QApplication(argc, argv);
  return *application;
}

// A fixture's first base, so that the QApplication exists before the
// fixture's widgets are made.
struct WithApp {
  WithApp() { app(); }
};

// Calls `answer` with the first modal dialog that opens from now on (polled
// every 10 ms, for at most 5 s). The caller then runs the code that opens it;
// `answer` must close the dialog. Returns a flag that tells whether it ran.
inline std::shared_ptr<bool> answer_modal(std::function<void(QWidget*)> answer) {
  auto done = std::make_shared<bool>(false);
  auto* timer = new QTimer(&app());
  auto tries = std::make_shared<int>(0);
  timer->setInterval(10);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, done, tries, answer = std::move(answer)] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr && ++*tries < 500) return;
    timer->stop();
    timer->deleteLater();
    if (modal == nullptr) return;
    *done = true;
    answer(modal);
  });
  timer->start();
  return done;
}

}  // namespace ui_parts_test
