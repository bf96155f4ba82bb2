// The table of controls, frozen, and the curves of its values.

#include "stream/control_ranges.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace zephyra {
namespace {

// Saved settings and hosts' automation depend on every character of this.
constexpr const char* kFrozen = R"(0 Scrubbing Wave: 0 to 1, 0
1 Amplitude: 0 to 1, 0.5
2 Pan: -1 to 1, 0
3 Dry/Wet: 0 to 100, 50 %
4 Width: 0 to 1, 0.25
5 Density: 0.5 to 400, 50 Hz, exponential 3
6 Rnd Density: 0 to 1, 0.5
7 Length: 5 to 2000, 85 ms, exponential 3
8 Rnd Length: 0 to 1, 0.5
9 Pitch: -24 to 24, 0 semitones
10 Rnd Pitch: 0 to 24, 0 semitones
11 Scanning: -4 to 4, 1 x
12 Jittering: 0 to 1000, 5 ms, exponential 4
13 Echo Switch: 0 to 1, 0, switch
14 Left Delay: 0.001 to 4.5, 0.3 s
15 Right Delay: 0.001 to 4.5, 0.25 s
16 Left Gain: 0 to 0.98, 0.341
17 Right Gain: 0 to 0.98, 0.231
18 Ring Modulation Switch: 0 to 1, 0, switch
19 Ring Modulation Frequency: 0.1 to 8000, 220 Hz, exponential 4
20 Ring Modulation Amount: 0 to 1, 0.5
21 Normalize: 0 to 1, 1
22 measures: 1 to 64, 1, whole
23 quarters: 0 to 16, 4, whole
24 subdivisions: 0 to 20, 7, choice
25 fade in: 0 to 10, 0.05 s
26 fade out: 0 to 10, 0.25 s
27 envelope: 0 to 11, 2, choice
)";

TEST(ControlRanges, AreFrozen) {
    const char* const kinds[] = {"", ", whole", ", switch", ", choice"};
    std::ostringstream text;
    for (const ControlRange& range : controlRanges()) {
        text << static_cast<int>(range.id) << ' ' << range.name << ": " << range.minimum << " to "
             << range.maximum << ", " << range.defaultValue;
        if (*range.unit) text << ' ' << range.unit;
        if (range.curve == ControlCurve::exponential) text << ", exponential " << range.stepness;
        text << kinds[static_cast<int>(range.kind)] << '\n';
    }
    EXPECT_EQ(text.str(), kFrozen);
}

TEST(ControlRanges, NameTheSubdivisionsFromTheLongestToTheShortest) {
    std::string names;
    for (const char* name : kSubdivisionNames) names += std::string(name) + ' ';
    EXPECT_EQ(names, "1/1D 1/1 1/2D 1/1T 1/2 1/4D 1/2T 1/4 1/8D 1/4T 1/8 1/16D 1/8T 1/16 1/32D "
                     "1/16T 1/32 1/64D 1/32T 1/64 1/128 ");
}

TEST(ControlRanges, TakeFiniteValuesBetweenTheEndsAndOnlyWholeOnesWhereTheyCount) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const struct {
        ControlId id;
        float value;
        bool taken;
    } cases[] = {
        {ControlId::pitch, -24.0f, true},      {ControlId::pitch, 24.0f, true},
        {ControlId::pitch, 0.5f, true},        {ControlId::pitch, 24.00001f, false},
        {ControlId::pitch, -kInfinity, false}, {ControlId::pitch, std::nanf(""), false},
        {ControlId::leftDelay, 0.0f, false},   {ControlId::leftGain, 0.98f, true},
        {ControlId::quarters, 0.0f, true},     {ControlId::quarters, 3.5f, false},
        {ControlId::envelope, 11.0f, true},    {ControlId::envelope, 12.0f, false},
        {ControlId::envelope, 0.25f, false},   {ControlId::echoSwitch, 1.0f, true},
        {ControlId::echoSwitch, 2.0f, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(acceptsValue(controlRange(c.id), c.value), c.taken)
            << controlRange(c.id).name << ' ' << c.value;
}

TEST(ControlCurve, BendsTheMiddleAndKeepsTheEnds) {
    const ControlRange square{.id = ControlId::density,
                              .name = "",
                              .minimum = 0,
                              .maximum = 100,
                              .defaultValue = 0,
                              .curve = ControlCurve::exponential,
                              .stepness = 2};
    EXPECT_EQ(displayedFromLinear(square, 50.0f), 25.0f);
    EXPECT_EQ(linearFromDisplayed(square, 25.0f), 50.0f);
    EXPECT_EQ(displayedFromLinear(square, 101.0f), 100.0f);
    EXPECT_EQ(linearFromDisplayed(square, -1.0f), 0.0f);

    for (const ControlRange& range : controlRanges()) {
        EXPECT_EQ(displayedFromLinear(range, range.minimum), range.minimum) << range.name;
        EXPECT_EQ(displayedFromLinear(range, range.maximum), range.maximum) << range.name;
        const float span = range.maximum - range.minimum;
        for (int step = 0; step <= 10; ++step) {
            const float linear = range.minimum + span * 0.1f * static_cast<float>(step);
            const float back = linearFromDisplayed(range, displayedFromLinear(range, linear));
            EXPECT_NEAR(back, linear, span * 1e-3f) << range.name; // fourth roots near 0 are rough
        }
    }
}

} // namespace
} // namespace zephyra
