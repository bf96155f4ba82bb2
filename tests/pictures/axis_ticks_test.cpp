// Where the labels of a scale stand.

#include "pictures/axis_ticks.h"
#include "platform/text/text_numbers.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zephyra {
namespace {

TEST(AxisTicks, TicksStandAtRoundPlaces) {
    const auto labels = [](const std::vector<Tick>& ticks) {
        std::string text;
        for (const Tick& tick : ticks) text += tick.label + "@" + formatFixed(tick.at, 2) + " ";
        return text;
    };
    EXPECT_EQ(labels(roundTicks(-1, 1, 4)), "-1.0@0.00 -0.5@0.25 0.0@0.50 0.5@0.75 1.0@1.00 ");
    EXPECT_EQ(labels(timeTicks(5, 5)), "0@0.00 1@0.20 2@0.40 3@0.60 4@0.80 5@1.00 ");
    EXPECT_EQ(labels(timeTicks(120, 4)), "0:00@0.00 0:30@0.25 1:00@0.50 1:30@0.75 2:00@1.00 ");
    EXPECT_EQ(labels(frequencyTicks(100, 1000)), "100@0.00 200@0.30 500@0.70 1k@1.00 ");
    EXPECT_EQ(labels(pitchTicks(24)), "-24@0.00 -12@0.25 0@0.50 12@0.75 24@1.00 ");
    EXPECT_EQ(labels(levelTicks(0.5)), // full scale and -6 dB lie beyond, -24 dB is too near
              "-\u221E@0.50 -12@0.75 @0.25 @0.56 @0.44 ");
    EXPECT_EQ(timeTicks(1e-3, 10).size(), 11u);
}

} // namespace
} // namespace zephyra
