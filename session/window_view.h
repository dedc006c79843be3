// session/window_view.h — what the main window shows of the session that is
// not a model of its own: the source path box, the destination label, the
// progress bar, the configuration panel and the BPS relation editor's boxes,
// and whether a run is under way.
//
// The controller owns one WindowView and changes it in its procedures; the
// window calls a procedure and then redraws from the view, the session state
// (formats, source kind, option boxes, months, relation list) and the models
// (preview and mapping panels). What the user types reaches the view through
// the controller's event procedures (txtRuta_Change ...), never by the window
// writing here.
#pragma once

#include <string>
#include <vector>

#include "session/progress.h"

namespace session {

struct WindowView {
  std::string txtRuta;                 // the source path box
  std::string LblEmpresa;              // the destination database shown (PathDeEmp)
  ProgressBar Barra;                   // with lblPorc
  bool AreConf_visible = false;        // the configuration panel (cbConfig)
  std::vector<std::string> cmbCodBPS;  // the BPS codes of the relations, row k = item k
  int cmbCodBPS_index = 0;             // the chosen code
  std::string txtCodKEL;               // the KEL concept id typed for it
  // A staging load or an import run is under way: the window keeps every
  // control that could start another one disabled until it ends.
  bool running = false;
};

// Marks a run as under way for its own lifetime. The previous value comes
// back at the end, so a run started inside another (cbBuscar staging through
// cbActualizar) leaves the flag set until the outer one ends, also when an
// error ends it.
class RunningScope {
 public:
  explicit RunningScope(WindowView& view) : view_(view), before_(view.running) { view_.running = true; }
  ~RunningScope() { view_.running = before_; }
  RunningScope(const RunningScope&) = delete;
  RunningScope& operator=(const RunningScope&) = delete;

 private:
  WindowView& view_;
  bool before_;
};

}  // namespace session
