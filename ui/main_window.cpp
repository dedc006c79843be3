// ui/main_window.cpp — FrmPrincipal2: calling the controller's procedures and
// redrawing from its view, state and models. The controls are built in
// window_panels.cpp and bound to the procedures in main_window_bind.cpp.
#include "ui/main_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <set>

#include "ui/freeze_meter.h"
#include "ui/grid_captions.h"
#include "ui/grid_table_model.h"
#include "ui/lookup_widget.h"
#include "ui/mapping_table_model.h"
#include "ui/statement_yield.h"
#include "ui/window_panels.h"

namespace ui {
namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }

// Sets a line edit's text only when it differs, so that the caret and the
// user's selection stay while nothing changed.
void set_text(QLineEdit* box, const std::string& text) {
  const QString value = qs(text);
  if (box->text() != value) {
    const QSignalBlocker quiet(box);
    box->setText(value);
  }
}

void set_checked(QAbstractButton* box, bool checked) {
  const QSignalBlocker quiet(box);
  box->setChecked(checked);
}

// Refills a combo's items when they changed and selects `index`.
void set_items(QComboBox* combo, const std::vector<std::string>& items, int index) {
  const QSignalBlocker quiet(combo);
  bool same = combo->count() == static_cast<int>(items.size());
  for (int i = 0; same && i < combo->count(); ++i) same = combo->itemText(i) == qs(items[static_cast<std::size_t>(i)]);
  if (!same) {
    combo->clear();
    for (const std::string& item : items) combo->addItem(qs(item));
  }
  combo->setCurrentIndex(index < combo->count() ? index : -1);
}

}  // namespace

MainWindow::MainWindow(session::MainWindowController& controller, session::UserInterface& ui, QWidget* parent)
    : QMainWindow(parent), c_(controller), ui_(ui) {
  setObjectName("FrmPrincipal2");
  setWindowTitle("Importación de datos a KEL");
  setCentralWidget(BuildCentralWidget(w_, c_.mapping(), this));
  statusBar()->setObjectName("estado");
  meter_ = new FreezeMeter(this);
  make_models();
  bind_source();
  bind_data();
  bind_mapping();
  bind_run();
  add_shortcuts();

  // During a run the bar is redrawn at each step and the window repaints.
  c_.view.Barra.yield = [this] {
    redraw_progress();
    ui_.repaint();
  };

  // Room for everything at 1366×768; a larger screen gets most of itself.
  QSize size(1366, 740);
  if (const QScreen* screen = QApplication::primaryScreen()) {
    const QSize available = screen->availableGeometry().size();
    if (available.width() > 1600) size = available * 0.85;
    size = size.boundedTo(available);
  }
  resize(size);
}

MainWindow::~MainWindow() {
  // The bar must not call into a window that is gone.
  c_.view.Barra.yield = [] {};
}

void MainWindow::start(const std::string& command_line) {
  call([&] { c_.Form_Load(command_line); });
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (activated_) return;
  activated_ = true;
  // Form_Activate once the window is on the screen, so that the staging of
  // the command line's source is seen happening.
  QTimer::singleShot(0, this, [this] {
    call([this] { c_.Form_Activate(); });
    emit activated();
  });
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (c_.view.running) {
    // The run ends first; its work is not cut in half.
    event->ignore();
    return;
  }
  if (!c_.ended() && !aborted_) c_.Form_Unload();
  event->accept();
}

void MainWindow::call(const std::function<void()>& procedure, int what) {
  meter_->restart();
  try {
    // Long statements let the window repaint too, not only the steps.
    const StatementYield statements({&c_.destination, &c_.staging}, [this] {
      redraw_progress();
      ui_.repaint();
    });
    procedure();
  } catch (const session::SessionAborted&) {
    // The error report was written and shown: the program ends.
    aborted_ = true;
  } catch (const std::exception& e) {
    ui_.warning(std::string("Error: ") + e.what());
  }
  meter_->finish();
  last_freeze_ms_ = meter_->longest_ms();
  if (aborted_ || c_.ended()) {
    close();
    return;
  }
  redraw(what);
}

void MainWindow::redraw(int what) {
  if (what & kGrids) redraw_grids();
  if (what & kBoxes) redraw_boxes();
  redraw_progress();
  apply_panel_focus();
}

void MainWindow::redraw_boxes() {
  const session::SessionState& s = c_.state;
  const session::WindowView& v = c_.view;

  set_items(w_.cmbFormato, s.cmbFormato, s.cmbFormato_index);
  for (int i = 0; i < 2; ++i) {
    w_.TipoImp[i]->setEnabled(s.TipoImp.selected[static_cast<std::size_t>(i)]);
    set_checked(w_.TipoImp[i], s.TipoImp.kind == i);
  }
  set_text(w_.txtRuta, v.txtRuta);
  w_.LblEmpresa->setText(v.LblEmpresa.empty() ? QString("(ninguna)") : qs(v.LblEmpresa));
  w_.LblEmpresa->setToolTip(qs(v.LblEmpresa));

  const preview::StagedPreview& p = c_.preview();
  for (std::size_t i = 0; i < p.txtDatEmp.size(); ++i) set_text(w_.txtDatEmp[i], p.txtDatEmp[i]);
  w_.lblDatosCP->setVisible(p.lblDatosCP_visible);
  set_checked(w_.chkImpSoloConUtil, p.chkImpSoloConUtil);

  const mapping::MappingPanel& m = c_.mapping();
  {
    const QSignalBlocker quiet(w_.cmbImportar);
    w_.cmbImportar->setCurrentIndex(m.cmbImportar);
  }

  w_.AreConf->setVisible(v.AreConf_visible);
  set_checked(w_.cbConfig, v.AreConf_visible);
  set_items(w_.cmbCodBPS, v.cmbCodBPS, v.cmbCodBPS_index);
  set_text(w_.txtCodKEL, v.txtCodKEL);
  {
    const QSignalBlocker quiet(w_.lstRelaciones);
    w_.lstRelaciones->clear();
    for (const mapping::RelationEntry& e : s.lstRelaciones.entries) w_.lstRelaciones->addItem(qs(e.text));
    w_.lstRelaciones->setCurrentRow(s.lstRelaciones.selected);
  }

  for (std::size_t i = 0; i < s.ChkOP.size(); ++i) set_checked(w_.ChkOP[i], s.ChkOP[i]);
  set_checked(w_.chkConFechDesde, s.period.desde_checked);
  set_checked(w_.ChkConFechHasta, s.period.hasta_checked);
  for (std::size_t i = 0; i < 2; ++i) set_text(w_.txtMes[i], s.period.txtMes[i]);

  refresh_lookups();
  set_running(v.running);
}

void MainWindow::redraw_grids() {
  for (GridTableModel* m : {m_cargos_, m_sectores_, m_sucur_, m_horario_, m_contra_, m_deduc_, m_liq_, m_datos_liq_})
    m->reload();
  m_conc_->reload();
  m_tl_->reload();
  // The liquidation headers and the declarations show their readable fields
  // only; the models keep all of them.
  const auto show_only = [](QTableView* view, const preview::GridModel& grid, const std::set<std::string>& shown) {
    const auto& columns = grid.columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
      view->setColumnHidden(static_cast<int>(i), shown.count(columns[i].field) == 0);
  };
  show_only(w_.GridLiq, c_.preview().browser.GridLiq(), LiquidationFieldsShown());
  show_only(w_.GridDeduc, c_.preview().GridDeduc, DeclarationFieldsShown());
  // Whose declaration it is comes first, though the query brings it last.
  const auto& deduc = c_.preview().GridDeduc.columns();
  int front = 0;
  for (const char* field : {"Apellidos", "Nombres"})
    for (std::size_t i = 0; i < deduc.size(); ++i)
      if (deduc[i].field == field) {
        QHeaderView* h = w_.GridDeduc->horizontalHeader();
        h->moveSection(h->visualIndex(static_cast<int>(i)), front++);
      }
  for (QTableView* t : {w_.GCargos, w_.GSectores, w_.GSucur, w_.GHorario, w_.GContra, w_.GridDeduc, w_.GridLiq,
                        w_.GridDatosLiq})
    t->resizeColumnsToContents();

  // The concept grid's heading shows its sort ("" is DescOS ascending).
  std::string sort = c_.mapping().GridRelacConc.sort_text();
  Qt::SortOrder order = Qt::AscendingOrder;
  if (sort.size() > 5 && sort.compare(sort.size() - 5, 5, " Desc") == 0) {
    sort.resize(sort.size() - 5);
    order = Qt::DescendingOrder;
  }
  if (sort.empty()) sort = "DescOS";
  const auto& names = mapping::ConceptMappingGrid::columns();
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i] == sort) w_.GridRelacConc->horizontalHeader()->setSortIndicator(static_cast<int>(i), order);
}

void MainWindow::redraw_progress() {
  const session::ProgressBar& bar = c_.view.Barra;
  // A run whose steps advance by no increment still shows that it works:
  // the bar runs as a busy bar until a percentage comes.
  const bool busy = c_.view.running && bar.percentage() <= 0.0f;
  w_.Barra->setRange(0, busy ? 0 : 1000);
  w_.Barra->setValue(busy ? 0 : static_cast<int>(bar.filled_fraction() * 1000.0f + 0.5f));
  w_.lblPorc->setText(qs(bar.lblPorc()));
  if (c_.view.running != drawn_running_) set_running(c_.view.running);
}

void MainWindow::set_running(bool running) {
  drawn_running_ = running;
  QWidget* starters[] = {w_.cmbFormato,   w_.TipoImp[0],   w_.TipoImp[1], w_.txtRuta,   w_.cbBuscar[0],
                         w_.cbBuscar[1],  w_.cbActualizar, w_.mapping_area, w_.options, w_.period,
                         w_.cbImportar,   w_.cbConfig,     w_.cbSalir};
  for (QWidget* control : starters) control->setEnabled(!running);
  if (!running) {
    for (int i = 0; i < 2; ++i) w_.TipoImp[i]->setEnabled(c_.state.TipoImp.selected[static_cast<std::size_t>(i)]);
    w_.cbBuscar[0]->setEnabled(c_.state.cbBuscar_enabled);
  }
  if (running) {
    statusBar()->showMessage("Trabajando… espere a que termine");
    QApplication::setOverrideCursor(Qt::BusyCursor);
  } else {
    statusBar()->clearMessage();
    while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
  }
}

void MainWindow::refresh_lookups() {
  for (LookupWidget* l : {w_.objCodOS, w_.ObjCodKel, w_.objCodOSTL, w_.objCodKELTL}) l->refresh();
}

void MainWindow::apply_panel_focus() {
  mapping::MappingPanel& m = c_.mapping();
  switch (m.focus) {
    case mapping::PanelFocus::kObjCodOS:
      w_.objCodOS->focus_from_model();
      break;
    case mapping::PanelFocus::kObjCodKel:
      w_.ObjCodKel->focus_from_model();
      break;
    case mapping::PanelFocus::kCmbImportar:
      w_.cmbImportar->setFocus();
      break;
    case mapping::PanelFocus::kCbAgregar:
      w_.cbAgrQuit[0]->setFocus();
      break;
    case mapping::PanelFocus::kNone:
      return;
  }
  // The flow's answer is taken: the next one moves the focus again.
  m.focus = mapping::PanelFocus::kNone;
}

}  // namespace ui
