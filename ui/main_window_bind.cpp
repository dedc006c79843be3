// ui/main_window_bind.cpp — FrmPrincipal2's events: each control calls one
// procedure of the controller (through call(), which redraws afterwards).
// The table models are made here over the controller's grid models.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QTableView>
#include <QToolButton>

#include "ui/grid_table_model.h"
#include "ui/lookup_widget.h"
#include "ui/main_window.h"
#include "ui/mapping_table_model.h"

namespace ui {
namespace {

std::string text_of(const QString& text) { return text.toStdString(); }

// The rows selected in a grid, and its current row, for the mapping panels.
mapping::GridCursor cursor_of(const QTableView* view) {
  mapping::GridCursor cursor;
  cursor.current_row = view->currentIndex().isValid() ? view->currentIndex().row() : -1;
  if (const QItemSelectionModel* selection = view->selectionModel())
    for (const QModelIndex& index : selection->selectedRows()) cursor.selected_rows.push_back(index.row());
  return cursor;
}

}  // namespace

void MainWindow::make_models() {
  preview::StagedPreview& p = c_.preview();
  auto attach = [this](QTableView* view, const preview::GridModel& grid) {
    auto* model = new GridTableModel(grid, this);
    view->setModel(model);
    return model;
  };
  m_cargos_ = attach(w_.GCargos, p.GCargos);
  m_sectores_ = attach(w_.GSectores, p.GSectores);
  m_sucur_ = attach(w_.GSucur, p.GSucur);
  m_horario_ = attach(w_.GHorario, p.GHorario);
  m_contra_ = attach(w_.GContra, p.GContra);
  m_deduc_ = attach(w_.GridDeduc, p.GridDeduc);
  m_liq_ = attach(w_.GridLiq, p.browser.GridLiq());
  m_datos_liq_ = attach(w_.GridDatosLiq, p.browser.GridDatosLiq());
  // The liquidation headers come from an open cursor a page at a time.
  // Nothing is read while a run uses the staging database (its statements
  // let the window repaint from inside SQLite).
  m_liq_->set_fetch_source([this] { return !c_.view.running && c_.preview().browser.can_fetch_more(); },
                           [this] { c_.preview().browser.fetch_more(); });

  mapping::MappingPanel& m = c_.mapping();
  m_conc_ = new MappingTableModel(
      {"Código", "Concepto a importar", "Código KEL", "Concepto de KEL", "Importar"},
      {[&m] { return m.GridRelacConc.rows().size(); }, [&m](std::size_t i) { return m.GridRelacConc.rows()[i].values(); },
       [&m](std::size_t i) { return m.GridRelacConc.rows()[i].to_create; }},
      this);
  w_.GridRelacConc->setModel(m_conc_);
  m_tl_ = new MappingTableModel(
      {"Código", "Tipo a importar", "Código KEL", "Tipo de KEL"},
      {[&m] { return m.GridRelacTL.rows().size(); }, [&m](std::size_t i) { return m.GridRelacTL.rows()[i].values(); },
       nullptr},
      this);
  w_.GridRelacTL->setModel(m_tl_);
  // The codes as wide as they need, the names share the rest.
  for (QTableView* t : {w_.GridRelacConc, w_.GridRelacTL}) {
    QHeaderView* h = t->horizontalHeader();
    h->setStretchLastSection(false);
    h->setSectionResizeMode(QHeaderView::ResizeToContents);
    h->setSectionResizeMode(1, QHeaderView::Stretch);
    h->setSectionResizeMode(3, QHeaderView::Stretch);
  }
}

void MainWindow::bind_source() {
  connect(w_.cmbFormato, &QComboBox::activated, this, [this](int index) { call([=, this] { c_.cmbFormato_Click(index); }); });
  for (int i = 0; i < 2; ++i)
    connect(w_.TipoImp[i], &QToolButton::clicked, this, [this, i] { call([=, this] { c_.TipoImp_Click(i); }, kBoxes); });
  connect(w_.txtRuta, &QLineEdit::textEdited, this, [this](const QString& text) { c_.txtRuta_Change(text_of(text)); });
  connect(w_.txtRuta, &QLineEdit::returnPressed, this, [this] { call([this] { c_.cbActualizar_Click(0); }); });
  for (int i = 0; i < 2; ++i)
    connect(w_.cbBuscar[i], &QPushButton::clicked, this, [this, i] { call([=, this] { c_.cbBuscar_Click(i); }); });
  connect(w_.cbActualizar, &QPushButton::clicked, this, [this] { call([this] { c_.cbActualizar_Click(0); }); });
}

void MainWindow::bind_data() {
  w_.GridLiq->horizontalHeader()->setSectionsClickable(true);
  connect(w_.GridLiq->horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { call([=, this] { c_.ActuGridLiquida(column); }); });
  // The lines follow the current header.
  connect(w_.GridLiq->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            call([=, this] { c_.GridLiq_RowColChange(current.isValid() ? current.row() : -1); }, kBoxes);
            m_datos_liq_->reload();
            w_.GridDatosLiq->resizeColumnsToContents();
          });
}

void MainWindow::bind_mapping() {
  mapping::MappingPanel& m = c_.mapping();
  // Leaving a lookup moves the focus on (the panel's keyboard flow): the
  // panel's own handlers run first, then the window follows them.
  for (lookup::LookupModel* l : {&m.objCodOS, &m.ObjCodKel}) {
    auto panel_handler = l->SalirDelControl;
    l->SalirDelControl = [this, panel_handler] {
      if (panel_handler) panel_handler();
      QMetaObject::invokeMethod(this, [this] { apply_panel_focus(); }, Qt::QueuedConnection);
    };
  }
  w_.cmbImportar->installEventFilter(this);
  connect(w_.cmbImportar, &QComboBox::currentIndexChanged, this,
          [this](int index) { c_.cmbImportar_Click(index); });
  for (int i = 0; i < 4; ++i)
    connect(w_.cbAgrQuit[i], &QPushButton::clicked, this, [this, i] {
      c_.mapping().GridRelacConc.cursor = cursor_of(w_.GridRelacConc);
      c_.mapping().GridRelacTL.cursor = cursor_of(w_.GridRelacTL);
      call([=, this] { c_.cbAgrQuit_Click(i); });
    });
  connect(w_.GridRelacConc->horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { call([=, this] { c_.ActuGridConc(column); }); });
  connect(w_.btBorraTodosVinc, &QPushButton::clicked, this, [this] { call([this] { c_.btBorraTodosVinc_Click(); }); });
  connect(w_.btCargaAutomat, &QPushButton::clicked, this, [this] { call([this] { c_.btCargaAutomat_Click(); }, kBoxes); });
  connect(w_.chkImpSoloConUtil, &QCheckBox::toggled, this, [this](bool on) { c_.chkImpSoloConUtil_Click(on); });

  connect(w_.cmbCodBPS, &QComboBox::currentIndexChanged, this, [this](int index) { c_.cmbCodBPS_Click(index); });
  connect(w_.txtCodKEL, &QLineEdit::textEdited, this, [this](const QString& text) { c_.txtCodKEL_Change(text_of(text)); });
  connect(w_.lstRelaciones, &QListWidget::currentRowChanged, this, [this](int row) { c_.lstRelaciones_Click(row); });
  for (int i = 0; i < 2; ++i)
    connect(w_.cmbMasMenos[i], &QPushButton::clicked, this, [this, i] { call([=, this] { c_.cmbMasMenos_Click(i); }, kBoxes); });
}

void MainWindow::bind_run() {
  for (int i = 0; i < 5; ++i)
    connect(w_.ChkOP[i], &QCheckBox::toggled, this, [this, i](bool on) { c_.ChkOP_Click(i, on); });
  connect(w_.chkConFechDesde, &QCheckBox::toggled, this,
          [this](bool on) { call([=, this] { c_.chkConFech_Click(0, on); }, kBoxes); });
  connect(w_.ChkConFechHasta, &QCheckBox::toggled, this,
          [this](bool on) { call([=, this] { c_.chkConFech_Click(1, on); }, kBoxes); });
  for (int i = 0; i < 2; ++i) {
    connect(w_.cbMesAnt[i], &QToolButton::clicked, this, [this, i] { call([=, this] { c_.cbMesAnt_Click(i); }, kBoxes); });
    connect(w_.cbMesSig[i], &QToolButton::clicked, this, [this, i] { call([=, this] { c_.cbMesSig_Click(i); }, kBoxes); });
  }
  connect(w_.cbImportar, &QPushButton::clicked, this, [this] { call([this] { c_.cbImportar_Click(); }); });
  connect(w_.cbConfig, &QPushButton::clicked, this, [this] { call([this] { c_.cbConfig_Click(); }, kBoxes); });
  connect(w_.cbSalir, &QPushButton::clicked, this, [this] { call([this] { c_.cbSalir_Click(); }, kBoxes); });
}

void MainWindow::add_shortcuts() {
  // F5 refreshes the staging as in most programs; Ctrl+I imports.
  auto* refresh = new QShortcut(QKeySequence(Qt::Key_F5), this);
  connect(refresh, &QShortcut::activated, w_.cbActualizar, &QPushButton::click);
  auto* import = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_I), this);
  connect(import, &QShortcut::activated, w_.cbImportar, &QPushButton::click);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  // Enter in cmbImportar moves the focus to the add button without pressing it.
  if (watched == w_.cmbImportar && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      c_.mapping().cmbImportar_key_press(lookup::kKeyEnter);
      apply_panel_focus();
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace ui
