// The window's smaller panels, on the demo company without a source: the
// configuration panel with the BPS relations, the month range, the option
// boxes, and the exit button.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "window_fixture.h"

namespace {

using window_test::DemoWindow;

TEST(MainWindowPanels, RelationsMonthsOptionsAndExit) {
  DemoWindow d;
  const auto& w = d.w();
  d.window->start(d.company.string());
  d.window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(d.window.get()));
  EXPECT_TRUE(d.answers.log.empty()) << d.answers.log.front();
  EXPECT_FALSE(w.lblDatosCP->isVisible());  // nothing staged earlier

  // The configuration panel opens and closes with its button.
  EXPECT_FALSE(w.AreConf->isVisible());
  QTest::mouseClick(w.cbConfig, Qt::LeftButton);
  EXPECT_TRUE(w.AreConf->isVisible());
  ASSERT_EQ(w.lstRelaciones->count(), 7);
  EXPECT_EQ(w.lstRelaciones->item(0)->text(), "BPS 1 -> KEL 17");
  EXPECT_EQ(w.lstRelaciones->item(6)->text(), "DESC. -> KEL 4");

  // A relation typed in the panel reaches the session's table.
  w.cmbCodBPS->setCurrentIndex(1);
  QTest::keyClicks(w.txtCodKEL, "30");
  QTest::mouseClick(w.cmbMasMenos[0], Qt::LeftButton);
  ASSERT_EQ(w.lstRelaciones->count(), 8);
  EXPECT_EQ(w.lstRelaciones->item(7)->text(), "BPS 2 -> KEL 30");
  EXPECT_EQ(d.c().state.relations.kel(1), 30);
  // Removing needs a chosen entry.
  w.lstRelaciones->setCurrentRow(-1);
  QTest::mouseClick(w.cmbMasMenos[1], Qt::LeftButton);
  EXPECT_EQ(d.answers.log.back(), "AVISO: Debe seleccionar la relación");
  w.lstRelaciones->setCurrentRow(0);
  QTest::mouseClick(w.cmbMasMenos[1], Qt::LeftButton);
  EXPECT_EQ(w.lstRelaciones->count(), 7);
  QTest::mouseClick(w.cbConfig, Qt::LeftButton);
  EXPECT_FALSE(w.AreConf->isVisible());

  // The month range: an unticked bound shows nothing but still moves, and
  // moving Desde past Hasta drags Hasta along.
  const session::Period before = d.c().state.period;
  EXPECT_TRUE(w.txtMes[0]->text().isEmpty());
  w.chkConFechDesde->click();
  EXPECT_EQ(w.txtMes[0]->text().toStdString(), before.desde.Display());
  for (int i = 0; i < 13; ++i) QTest::mouseClick(w.cbMesSig[0], Qt::LeftButton);
  EXPECT_EQ(d.c().state.period.desde, before.desde.AddMonths(13));
  EXPECT_EQ(d.c().state.period.hasta, before.desde.AddMonths(13));
  EXPECT_TRUE(w.txtMes[1]->text().isEmpty());
  w.ChkConFechHasta->click();
  EXPECT_EQ(w.txtMes[1]->text().toStdString(), before.desde.AddMonths(13).Display());

  // The option boxes are the session's.
  w.ChkOP[3]->click();
  EXPECT_FALSE(d.c().state.ChkOP[3]);
  w.ChkOP[3]->click();
  EXPECT_TRUE(d.c().state.ChkOP[3]);

  // Salir ends the session and closes the window.
  QTest::mouseClick(w.cbSalir, Qt::LeftButton);
  EXPECT_TRUE(d.c().ended());
  EXPECT_FALSE(d.window->isVisible());
}

}  // namespace
