// Tests of months and of the Desde..Hasta month range.
#include <gtest/gtest.h>

#include "session/month.h"

using namespace session;

TEST(Month, ArithmeticAndTexts) {
  EXPECT_EQ(Month(2024, 1).AddMonths(-1), Month(2023, 12));
  EXPECT_EQ(Month(2023, 12).AddMonths(1), Month(2024, 1));
  EXPECT_EQ(Month(2024, 3).AddMonths(-12), Month(2023, 3));
  EXPECT_EQ(Month(2024, 3).AddMonths(-27), Month(2021, 12));
  EXPECT_EQ(Month(2023, 13), Month(2024, 1));
  EXPECT_EQ(Month(2024, 0), Month(2023, 12));
  EXPECT_LT(Month(2023, 12), Month(2024, 1));
  EXPECT_EQ(Month(2024, 2).Display(), "02 / 2024");
  EXPECT_EQ(Month(2024, 2).IsoFirstDay(), "2024-02-01");
  Month now = Month::Current();
  EXPECT_GE(now.month(), 1);
  EXPECT_LE(now.month(), 12);
}

TEST(Period, DefaultsAndDisplay) {
  Period p = DefaultPeriod(Month(2024, 2));
  EXPECT_EQ(p.hasta, Month(2024, 2));
  EXPECT_EQ(p.desde, Month(2023, 2));
  EXPECT_EQ(p.txtMes[0], "");
  EXPECT_EQ(p.txtMes[1], "");
  p.hasta_checked = true;
  CargarMes(p);
  EXPECT_EQ(p.txtMes[1], "02 / 2024");
  EXPECT_EQ(p.txtMes[0], "");
  EXPECT_EQ(HastaText(p), "2024-02-01");
  EXPECT_EQ(DesdeText(p), "");
  p.hasta = Month(2020, 1);  // earlier than Desde: CargarMes repairs it
  CargarMes(p);
  EXPECT_EQ(p.hasta, p.desde);
  EXPECT_EQ(p.hasta_bound().month, 2);
  EXPECT_TRUE(p.hasta_bound().checked);
  EXPECT_FALSE(p.desde_bound().checked);
}

TEST(Period, MovingOneBoundPastTheOtherDragsItAlong) {
  Period p;
  p.desde = Month(2024, 3);
  p.hasta = Month(2024, 3);
  p.desde_checked = p.hasta_checked = true;
  cbMesAnt(p, 1);  // Hasta back past Desde
  EXPECT_EQ(p.hasta, Month(2024, 2));
  EXPECT_EQ(p.desde, Month(2024, 2));
  EXPECT_EQ(p.txtMes[0], "02 / 2024");
  cbMesSig(p, 0);  // Desde forward past Hasta
  EXPECT_EQ(p.desde, Month(2024, 3));
  EXPECT_EQ(p.hasta, Month(2024, 3));
  // Room between the bounds: only the moved bound changes.
  cbMesAnt(p, 0);
  cbMesAnt(p, 0);
  EXPECT_EQ(p.desde, Month(2024, 1));
  cbMesAnt(p, 1);
  EXPECT_EQ(p.hasta, Month(2024, 2));
  EXPECT_EQ(p.desde, Month(2024, 1));
  cbMesSig(p, 1);
  EXPECT_EQ(p.hasta, Month(2024, 3));
  cbMesSig(p, 0);
  EXPECT_EQ(p.desde, Month(2024, 2));
  EXPECT_EQ(p.hasta, Month(2024, 3));
  // An unknown index only redisplays.
  cbMesSig(p, 2);
  EXPECT_EQ(p.desde, Month(2024, 2));
}

TEST(Period, UncheckedBoundsStillMoveAndKeepTheInvariant) {
  Period p;
  p.desde = Month(2024, 1);
  p.hasta = Month(2024, 1);
  cbMesAnt(p, 1);
  EXPECT_EQ(p.txtMes[0], "");
  EXPECT_EQ(p.txtMes[1], "");
  EXPECT_EQ(p.hasta, Month(2023, 12));
  EXPECT_EQ(p.desde, Month(2023, 12));
  cbMesSig(p, 0);
  cbMesSig(p, 0);
  EXPECT_EQ(p.desde, Month(2024, 2));
  EXPECT_EQ(p.hasta, Month(2024, 2));
  EXPECT_LE(p.desde, p.hasta);
}
