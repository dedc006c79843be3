// Tests the progress bar arithmetic. (The scripted user interface is checked
// by every controller test's exact log and by the batch runs' answers.)
#include <gtest/gtest.h>

#include "session/progress.h"

TEST(ProgressBar, ResetIncrementCapAndRounding) {
  session::ProgressBar bar;
  int yields = 0;
  bar.yield = [&] { ++yields; };
  bar.ActuBarra(3);  // sets the increment and makes the first advance
  EXPECT_TRUE(bar.visible());
  bar.ActuBarra(-1);  // keeps the increment
  bar.AF_GenImp();
  EXPECT_FLOAT_EQ(bar.percentage(), 9);
  EXPECT_EQ(bar.lblPorc(), "9%");
  bar.ActuBarra(100);  // capped at 100
  bar.ActuBarra(-1);
  EXPECT_FLOAT_EQ(bar.percentage(), 100);
  bar.ActuBarra();  // reset hides the bar and clears both numbers
  EXPECT_FALSE(bar.visible());
  EXPECT_FLOAT_EQ(bar.percentage() + bar.increment(), 0);
  bar.ActuBarra(-1);  // an advance after a reset moves nothing but shows the bar
  EXPECT_TRUE(bar.visible());
  EXPECT_FLOAT_EQ(bar.percentage(), 0);
  EXPECT_EQ(yields, 7);

  bar.ActuBarra(80.0f / (1000 + 40));  // the staging load's sizing
  for (int i = 0; i < 6; ++i) bar.AF_GenImp();
  EXPECT_EQ(bar.lblPorc(), "1%");
}
