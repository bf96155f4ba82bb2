// Which values controls take, and the curves of those values.

#include "stream/control_ranges.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zephyra {
namespace {

TEST(ControlCurve, BendsTheMiddleAndKeepsTheEnds) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const ControlRange& length = controlRange(ControlId::length);
    const float middle = 5 + 1995 * 0.125f; // half the way, cubed
    EXPECT_FLOAT_EQ(displayedFromLinear(length, 1002.5f), middle);
    EXPECT_FLOAT_EQ(linearFromDisplayed(length, middle), 1002.5f);
    EXPECT_EQ(displayedFromLinear(length, 2001.0f), 2000.0f);
    EXPECT_EQ(linearFromDisplayed(length, 4.0f), 5.0f);
    for (const ControlRange& range : controlRanges()) {
        for (const float bad : {kInfinity, -kInfinity, std::nanf("")})
            EXPECT_FALSE(acceptsValue(range, bad)) << range.name;
        for (const float share : {0.0f, 0.1f, 0.4f, 0.75f, 1.0f}) {
            const float span = range.maximum - range.minimum, linear = range.minimum + span * share;
            const float shown = displayedFromLinear(range, linear);
            if (share == 0.0f || share == 1.0f) {
                EXPECT_EQ(shown, linear) << range.name;
            }
            // Fourth roots near 0 are rough.
            EXPECT_NEAR(linearFromDisplayed(range, shown), linear, span * 1e-3f) << range.name;
        }
    }
}

} // namespace
} // namespace zephyra
