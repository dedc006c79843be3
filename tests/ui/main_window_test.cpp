// The main window driven as a user would, on a copy of the demo company: the
// command line stages the demo's CSV source as the window opens, a concept is
// mapped with the lookups and the keyboard alone, the import runs with its
// questions answered Yes, and the KEL company receives the rows.
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "ui/lookup_widget.h"
#include "window_fixture.h"

namespace {

using window_test::count_rows;
using window_test::DemoWindow;
using window_test::query_text;

QString cell(const QTableView* view, int row, int column) {
  return view->model()->index(row, column).data().toString();
}

// Types `text` into a box and presses Enter, as the user does.
void type_and_enter(QWidget* box, const QString& text) {
  box->setFocus();
  QTest::keyClicks(box, text);
  QTest::keyClick(box, Qt::Key_Return);
  QApplication::processEvents();
}

TEST(MainWindow, StagesMapsWithTheKeyboardAndImportsTheDemo) {
  DemoWindow d;
  const auto& w = d.w();

  // The command line names the source: it is staged when the window opens.
  QSignalSpy activated(d.window.get(), &ui::MainWindow::activated);
  d.window->start(d.company.string() + "*" + d.source.string() + "*0");
  d.window->show();
  ASSERT_TRUE(activated.wait(300000)) << "the staging of the demo did not end";
  ASSERT_TRUE(QTest::qWaitForWindowActive(d.window.get()));
  for (const std::string& line : d.answers.log) EXPECT_EQ(line.rfind("AVISO", 0), std::string::npos) << line;
  std::cout << "[ freeze   ] staging: " << d.window->last_longest_freeze_ms() << " ms\n";

  EXPECT_EQ(w.txtRuta->text().toStdString(), d.source.string());
  EXPECT_EQ(w.LblEmpresa->text().toStdString(), d.company.string());
  EXPECT_FALSE(w.txtDatEmp[0]->text().isEmpty());
  EXPECT_FALSE(w.lblDatosCP->isVisible());
  EXPECT_GT(w.GContra->model()->rowCount(), 0);
  EXPECT_GT(w.GCargos->model()->rowCount(), 0);
  EXPECT_GT(w.GridRelacConc->model()->rowCount(), 0);
  EXPECT_TRUE(w.cbImportar->isEnabled());
  EXPECT_EQ(w.lblPorc->text(), "0%");  // the load ends with a reset

  // The liquidation headers come a page at a time as the grid scrolls.
  QAbstractItemModel* liq = w.GridLiq->model();
  const int first_page = liq->rowCount();
  ASSERT_GT(first_page, 0);
  ASSERT_TRUE(liq->canFetchMore(QModelIndex()));
  liq->fetchMore(QModelIndex());
  EXPECT_GT(liq->rowCount(), first_page);
  // The lines of the current header, each an addition or a subtraction.
  w.GridLiq->setCurrentIndex(liq->index(0, 0));
  QApplication::processEvents();
  ASSERT_GT(w.GridDatosLiq->model()->rowCount(), 0);
  EXPECT_TRUE(w.GridDatosLiq->model()->index(0, 0).data(Qt::ForegroundRole).isValid());

  // A concept with no relation yet (one the import would create) is mapped
  // onto KEL's first concept: code, Enter, Enter, code, Enter, Enter, Enter
  // in the combo, Space on the add button.
  session::MainWindowController& c = d.c();
  const auto& rows = c.mapping().GridRelacConc.rows();
  const auto unmapped = std::find_if(rows.begin(), rows.end(), [](const auto& r) { return r.to_create; });
  ASSERT_NE(unmapped, rows.end());
  const std::string os_id = unmapped->CodigoOS;
  const auto& os_rows = c.mapping().objCodOS.Datos();
  const auto os_row = std::find_if(os_rows.begin(), os_rows.end(), [&](const auto& r) { return r[0] == os_id; });
  ASSERT_NE(os_row, os_rows.end());
  const lookup::Row kel_row = c.mapping().ObjCodKel.Datos().front();
  ASSERT_FALSE(kel_row[0].empty());

  type_and_enter(w.objCodOS->code_box(), QString::fromStdString((*os_row)[1]));
  EXPECT_EQ(c.mapping().objCodOS.Dato1(), os_id);
  QTest::keyClick(w.objCodOS->description_box(), Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(QApplication::focusWidget(), w.ObjCodKel->code_box());
  type_and_enter(w.ObjCodKel->code_box(), QString::fromStdString(kel_row[1]));
  EXPECT_EQ(c.mapping().ObjCodKel.Dato1(), kel_row[0]);
  QTest::keyClick(w.ObjCodKel->description_box(), Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(QApplication::focusWidget(), w.cmbImportar);
  QTest::keyClick(w.cmbImportar, Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), w.cbAgrQuit[0]);
  QTest::keyClick(w.cbAgrQuit[0], Qt::Key_Space);
  QApplication::processEvents();
  EXPECT_EQ(query_text(d.staging, "SELECT CodKEL FROM RelacConc WHERE CodOS=" + os_id), kel_row[0]);
  EXPECT_EQ(QApplication::focusWidget(), w.objCodOS->code_box());  // ready for the next one
  bool shown = false;
  for (int r = 0; r < w.GridRelacConc->model()->rowCount(); ++r)
    if (cell(w.GridRelacConc, r, 0).toStdString() == os_id) {
      EXPECT_EQ(cell(w.GridRelacConc, r, 2).toStdString(), kel_row[0]);
      shown = true;
    }
  EXPECT_TRUE(shown);

  // Clicking a heading twice sorts by it, then the other way round.
  const QPoint heading(w.GridRelacConc->horizontalHeader()->sectionViewportPosition(0) + 5, 5);
  QTest::mouseClick(w.GridRelacConc->horizontalHeader()->viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(c.mapping().GridRelacConc.sort_text(), "CodigoOS");
  QTest::mouseClick(w.GridRelacConc->horizontalHeader()->viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(c.mapping().GridRelacConc.sort_text(), "CodigoOS Desc");

  // The import: nothing that starts a run can be clicked while it runs, and
  // the bar the window draws shows work going on at each step (the steps
  // advance it by the increment in force, which may be 0: the bar then runs
  // as a busy bar).
  bool import_enabled_during_run = true;
  bool bar_shows_work = false;
  const auto window_yield = d.c().view.Barra.yield;
  d.c().view.Barra.yield = [&] {
    window_yield();
    bar_shows_work = bar_shows_work || w.Barra->maximum() == 0 || w.Barra->value() > 0;
  };
  QTimer probe;
  probe.setInterval(5);
  QObject::connect(&probe, &QTimer::timeout, [&] {
    if (d.c().view.running) import_enabled_during_run = import_enabled_during_run && w.cbImportar->isEnabled();
  });
  const long long persons_before = count_rows(d.company, "Personas");
  const long long headers_before = count_rows(d.company, "Encabezados");
  probe.start();
  d.answers.log.clear();
  QTest::mouseClick(w.cbImportar, Qt::LeftButton);
  probe.stop();
  std::cout << "[ freeze   ] import: " << d.window->last_longest_freeze_ms() << " ms\n";
  EXPECT_FALSE(import_enabled_during_run);
  EXPECT_TRUE(bar_shows_work);
  EXPECT_GT(w.Barra->maximum(), 0);  // a plain bar again after the run
  ASSERT_FALSE(d.answers.log.empty());
  EXPECT_EQ(d.answers.log.back(), "INFO: Importación Satisfactoria!!");
  EXPECT_TRUE(w.cbImportar->isEnabled());

  // The KEL company holds the demo's people, contracts and liquidations, and
  // the mapped concept's lines went to the chosen KEL concept.
  const auto staged = [&](const char* table) { return count_rows(d.staging, table); };
  EXPECT_GT(count_rows(d.company, "Personas"), persons_before);
  EXPECT_GE(count_rows(d.company, "Personas"), staged("Personas"));
  EXPECT_GE(count_rows(d.company, "Contrato"), staged("Contrato"));
  EXPECT_GT(count_rows(d.company, "Encabezados"), headers_before);
  EXPECT_EQ(query_text(d.staging, "SELECT CodKEL FROM RelacConc WHERE CodOS=" + os_id), kel_row[0]);
  const std::string staged_lines =
      query_text(d.staging, "SELECT count(*) FROM Datos_Liquidacion WHERE id_Concepto=" + os_id);
  if (staged_lines != "0") {
    EXPECT_NE(query_text(d.company, "SELECT count(*) FROM Datos_Liquidacion WHERE id_Concepto=" + kel_row[0]), "0");
  }
}

}  // namespace
