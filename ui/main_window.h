// ui/main_window.h — FrmPrincipal2, the importer's main window.
//
// Thin: each event calls one procedure of session::MainWindowController and
// the window then redraws from the controller's view (session/window_view.h),
// its session state and its models (the preview's grids, the mapping panels
// and their lookups). While a staging load or an import runs, the progress
// bar's yield redraws the bar and lets the event loop run once through the
// UserInterface's repaint (which leaves out the user's input), and every
// control that could start another run is disabled until it ends.
//
// The window starts the session itself: start() runs Form_Load with the
// command line, and the first time the window is shown Form_Activate runs
// (staging the source the command line named); activated() follows it.
#pragma once

#include <QMainWindow>
#include <functional>
#include <string>

#include "session/main_controller.h"
#include "ui/window_controls.h"

namespace ui {

class FreezeMeter;
class GridTableModel;
class MappingTableModel;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `controller` and `ui` (the controller's UserInterface) must outlive the
  // window.
  MainWindow(session::MainWindowController& controller, session::UserInterface& ui, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Form_Load with `command_line`, then the first drawing.
  void start(const std::string& command_line);

  const WindowControls& controls() const { return w_; }
  // The longest time, in milliseconds, the event loop did not run during the
  // last procedure the window called (a staging load, an import ...).
  qint64 last_longest_freeze_ms() const { return last_freeze_ms_; }
  // True once an error report ended the session (the program ends with an
  // error status).
  bool aborted() const { return aborted_; }

 signals:
  // Form_Activate ran for the first time (the command line's source is staged).
  void activated();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum Redraw { kBoxes = 1, kGrids = 2, kAll = 3 };

  void make_models();
  void bind_source();
  void bind_data();
  void bind_mapping();
  void bind_run();
  void add_shortcuts();

  // Runs one procedure of the controller, then redraws `what`. An error
  // report that ends the session closes the window; any other error is a
  // warning box and the session goes on.
  void call(const std::function<void()>& procedure, int what = kAll);
  void redraw(int what);
  void redraw_boxes();
  void redraw_grids();
  void redraw_progress();
  void set_running(bool running);
  // Puts the keyboard focus where the mapping panel's flow left it.
  void apply_panel_focus();
  void refresh_lookups();

  session::MainWindowController& c_;
  session::UserInterface& ui_;
  WindowControls w_;
  FreezeMeter* meter_ = nullptr;
  qint64 last_freeze_ms_ = 0;
  bool activated_ = false;
  bool aborted_ = false;
  bool drawn_running_ = false;

  GridTableModel* m_cargos_ = nullptr;
  GridTableModel* m_sectores_ = nullptr;
  GridTableModel* m_sucur_ = nullptr;
  GridTableModel* m_horario_ = nullptr;
  GridTableModel* m_contra_ = nullptr;
  GridTableModel* m_deduc_ = nullptr;
  GridTableModel* m_liq_ = nullptr;
  GridTableModel* m_datos_liq_ = nullptr;
  MappingTableModel* m_conc_ = nullptr;
  MappingTableModel* m_tl_ = nullptr;
};

}  // namespace ui
