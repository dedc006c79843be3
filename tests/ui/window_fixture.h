// tests/ui/window_fixture.h — the main window over a throw-away copy of the
// built program folder and the demo company, answered by a script, on Qt's
// offscreen platform.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QApplication>
#include <filesystem>
#include <memory>
#include <string>

#include "support/scripted_ui.h"
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

// The first column of the first row of a native query ("" for none).
inline std::string query_text(const fs::path& file, const std::string& sql) {
  sqlite3* db = nullptr;
  std::string out;
  if (sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW) {
      const unsigned char* t = sqlite3_column_text(st, 0);
      out = t ? reinterpret_cast<const char*>(t) : "";
    }
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
  return out;
}

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
    fs::create_directories(prog);
    for (const fs::directory_entry& e : fs::directory_iterator(built)) {
      const std::string name = e.path().filename().string();
      if (e.is_directory()) {
        if (name == "demo" || (name != "Generica" && fs::exists(e.path() / "Pasaje.mdb"))) continue;
        fs::copy(e.path(), prog / name, fs::copy_options::recursive);
      } else if (name != "kelimport") {
        fs::copy_file(e.path(), prog / name);
      }
    }
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
