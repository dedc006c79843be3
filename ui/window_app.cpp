// ui/window_app.cpp — the program's window mode.
#include "ui/window_app.h"

#include <QApplication>
#include <QPixmap>
#include <QStatusBar>
#include <QTimer>
#include <iostream>

#include "ui/main_window.h"
#include "ui/qt_user_interface.h"
#include "ui/unattended_ui.h"

namespace ui {

WindowSession::WindowSession(const std::filesystem::path& program_folder, session::UserInterface& ui)
    : controller(program_folder, ui, importer, preview, mapping) {}

namespace {

constexpr int kExitError = 2;

// Screenshot mode: the window is drawn once the source is staged, saved, and
// the program ends; the longest freeze of the staging is told on stderr.
int run_screenshot(const std::filesystem::path& program_folder, const WindowOptions& options) {
  UnattendedUi unattended;
  WindowSession session(program_folder, unattended);
  MainWindow window(session.controller, unattended);
  int status = 0;
  QObject::connect(&window, &MainWindow::activated, &window, [&] {
    std::cerr << "Mayor congelamiento de la ventana al cargar: " << window.last_longest_freeze_ms() << " ms\n";
    // A moment for the last layout and paint after the grids were filled.
    QTimer::singleShot(500, &window, [&] {
      if (!window.grab().save(QString::fromStdString(options.screenshot), "PNG")) {
        std::cerr << "No se pudo guardar la captura en " << options.screenshot << "\n";
        status = kExitError;
      }
      window.close();
    });
  });
  window.start(options.command_line);
  if (window.aborted() || session.controller.ended()) return kExitError;
  window.show();
  QApplication::exec();
  return window.aborted() ? kExitError : status;
}

}  // namespace

int RunWindow(int& argc, char** argv, const std::filesystem::path& program_folder, const WindowOptions& options) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("kelimport");
  if (!options.screenshot.empty()) return run_screenshot(program_folder, options);

  QtUserInterface boxes;
  WindowSession session(program_folder, boxes);
  MainWindow window(session.controller, boxes);
  boxes.set_window(&window);
  boxes.on_waiting = [&window](const QString& text) { window.statusBar()->showMessage(text, 5000); };
  window.start(options.command_line);
  if (window.aborted() || session.controller.ended()) return window.aborted() ? kExitError : 0;
  window.show();
  QApplication::exec();
  return window.aborted() ? kExitError : 0;
}

}  // namespace ui
