// tests/ui/window_fixture.h — the main window over a throw-away copy of the
// built program folder and the demo company, answered by a script, on Qt's
// offscreen platform.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <filesystem>
#include <memory>
#include <string>

#include "support/program_folder.h"
#include "support/scripted_ui.h"
#include "support/sqlite_file.h"
#include "support/temp_dir.h"
#include "ui_parts_support.h"
#include "ui/main_window.h"
#include "ui/window_app.h"

namespace window_test {

namespace fs = std::filesystem;

// Scripted answers for a window that is really shown: messages are answered
// and recorded as in the other tests, and repaint() runs the event loop once
// (without the user's input), as the real boxes' interface does.
class ScriptedWindowUi : public ScriptedUserInterface {
 public:
  void repaint() override {
    ScriptedUserInterface::repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
};

// The one QApplication of the test program, shared with the parts' tests.
inline QApplication& App() { return ui_parts_test::app(); }

using test_support::query_text;

inline long long count_rows(const fs::path& file, const std::string& table) {
  const std::string n = query_text(file, "SELECT count(*) FROM \"" + table + "\"");
  return n.empty() ? -1 : std::stoll(n);
}

// A copy of the built program (formats, statements, template) and of the
// demo's KEL company and CSV source, with the window over them.
struct DemoWindow {
  TempDir tmp;
  fs::path prog = tmp.path() / "prog";
  fs::path company = tmp.path() / "demo" / "Empresa" / "Datos.mdb";
  fs::path source = tmp.path() / "demo" / "Origen_CSV";
  fs::path staging = prog / "Empresa" / "Pasaje.mdb";
  ScriptedWindowUi answers;
  std::unique_ptr<ui::WindowSession> session;
  std::unique_ptr<ui::MainWindow> window;

  DemoWindow() {
    App();
    const fs::path built = KEL_PROGRAM_DIR;
    EXPECT_TRUE(fs::exists(built / "demo" / "Origen_CSV" / "Empresa.csv")) << "the build makes the demo";
    test_support::copy_program_folder(built, prog);
    fs::create_directories(company.parent_path());
    fs::copy_file(built / "demo" / "Empresa" / "Datos.mdb", company);
    fs::copy(built / "demo" / "Origen_CSV", source, fs::copy_options::recursive);
    answers.default_answer = true;
    session = std::make_unique<ui::WindowSession>(prog, answers);
    window = std::make_unique<ui::MainWindow>(session->controller, answers);
  }

  ~DemoWindow() {
    window.reset();
    session.reset();
  }

  const ui::WindowControls& w() const { return window->controls(); }
  session::MainWindowController& c() { return session->controller; }
};

}  // namespace window_test
