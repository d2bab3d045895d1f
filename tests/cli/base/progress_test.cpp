#include "cli/base/progress.h"

#include <gtest/gtest.h>

namespace tlpacscfg::cli {
namespace {

using std::chrono::milliseconds;

TEST(ProgressTest, NothingIsShownInTheFirstSecond) {
  EXPECT_EQ(progressLine("Checking", 0, 100, milliseconds(0)), "");
  EXPECT_EQ(progressLine("Checking", 99, 100, milliseconds(999)), "");
  EXPECT_EQ(progressLine("Reading", 0, 0, milliseconds(999)), "");
}

TEST(ProgressTest, ABarShowsThePartThatIsDone) {
  const milliseconds second(1000);
  EXPECT_EQ(progressLine("Checking", 0, 100, second), "Checking [                    ] 0 %");
  EXPECT_EQ(progressLine("Checking", 25, 100, second), "Checking [#####               ] 25 %");
  EXPECT_EQ(progressLine("Checking", 2, 3, second), "Checking [#############       ] 66 %");
  EXPECT_EQ(progressLine("Checking", 3, 3, second), "Checking [####################] 100 %");
}

TEST(ProgressTest, NoBarIsFullerThanFull) {
  EXPECT_EQ(progressLine("Checking", 4, 3, milliseconds(1000)),
            "Checking [####################] 100 %");
}

TEST(ProgressTest, WithoutANumberOfStepsTheTimeIsShown) {
  EXPECT_EQ(progressLine("Reading", 0, 0, milliseconds(1000)), "Reading, 1 s");
  EXPECT_EQ(progressLine("Reading", 0, 0, milliseconds(75'999)), "Reading, 75 s");
}

}  // namespace
}  // namespace tlpacscfg::cli
