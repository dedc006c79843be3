// Tests of months and of the Desde..Hasta month range.
#include <gtest/gtest.h>

#include "session/month.h"

using namespace session;

TEST(Month, ArithmeticAndTexts) {
  EXPECT_EQ(Month(2024, 1).AddMonths(-1), Month(2023, 12));
  EXPECT_EQ(Month(2023, 12).AddMonths(1), Month(2024, 1));
  EXPECT_EQ(Month(2024, 3).AddMonths(-27), Month(2021, 12));
  EXPECT_EQ(Month(2023, 13), Month(2024, 1));
  EXPECT_EQ(Month(2024, 0), Month(2023, 12));
  EXPECT_LT(Month(2023, 12), Month(2024, 1));
  EXPECT_EQ(Month(2024, 2).Display(), "02 / 2024");
  EXPECT_EQ(Month(2024, 2).IsoFirstDay(), "2024-02-01");
}

TEST(Period, DefaultsAndDisplay) {
  Period p = DefaultPeriod(Month(2024, 2));
  EXPECT_EQ(p.desde, Month(2023, 2));
  EXPECT_EQ(p.txtMes[0] + p.txtMes[1], "");
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

// Each step moves one bound (0 Desde, 1 Hasta) back or forward; a bound moved
// past the other drags it along, ticked or not; an unknown index only redisplays.
TEST(Period, MovingOneBoundPastTheOtherDragsItAlong) {
  for (bool checked : {true, false}) {
    Period p;
    p.desde = p.hasta = Month(2024, 3);
    p.desde_checked = p.hasta_checked = checked;
    struct Step { bool forward; int index; Month desde, hasta; };
    const std::vector<Step> steps = {
        {false, 1, {2024, 2}, {2024, 2}}, {true, 0, {2024, 3}, {2024, 3}},
        {false, 0, {2024, 2}, {2024, 3}}, {false, 0, {2024, 1}, {2024, 3}},
        {false, 1, {2024, 1}, {2024, 2}}, {true, 1, {2024, 1}, {2024, 3}},
        {true, 0, {2024, 2}, {2024, 3}},  {true, 2, {2024, 2}, {2024, 3}},
    };
    for (std::size_t i = 0; i < steps.size(); ++i) {
      SCOPED_TRACE(std::to_string(i) + (checked ? " ticked" : " unticked"));
      steps[i].forward ? cbMesSig(p, steps[i].index) : cbMesAnt(p, steps[i].index);
      EXPECT_EQ(p.desde, steps[i].desde);
      EXPECT_EQ(p.hasta, steps[i].hasta);
      EXPECT_EQ(p.txtMes[0], checked ? p.desde.Display() : "");
    }
  }
}
