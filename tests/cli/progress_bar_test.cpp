// What the progress bar says.

#include "cli/terminal/progress_bar.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(ProgressBar, ShowsShareAndTimeLeftOnceThereIsSomethingToJudgeBy) {
    EXPECT_EQ(progressLine("Work", 0.25, 10.0),
              "Work [########........................]  25 %  0:30 left");
    EXPECT_EQ(progressLine("Work", 0, 1), "Work [................................]   0 %");
    EXPECT_EQ(progressLine("Work", 2, 1),
              "Work [################################] 100 %  0:00 left");
}

} // namespace
} // namespace zephyra
