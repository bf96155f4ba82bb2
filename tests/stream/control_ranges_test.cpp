// The table of controls, frozen, and the curves of its values.

#include "controls/note_values.h"
#include "stream/control_ranges.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace zephyra {
namespace {

// Saved settings, hosts' automation and, behind the @, the order of saved assignments depend on
// every character of this.
constexpr const char* kFrozen = R"(0 Scrubbing Wave: 0 to 1, 0 @0
1 Amplitude: 0 to 1, 0.5 = Volume @9
2 Pan: -1 to 1, 0 = Pan @10
3 Dry/Wet: 0 to 100, 50 %, elsewhere InputDryWet @27
4 Width: 0 to 1, 0.25 = Width @11
5 Density: 0.5 to 400, 50 Hz, exponential 3 = Density @3
6 Rnd Density: 0 to 1, 0.5 = Rnd_Density @4
7 Length: 5 to 2000, 85 ms, exponential 3 = Length @5
8 Rnd Length: 0 to 1, 0.5 = Rnd_Length @6
9 Pitch: -24 to 24, 0 semitones = Pitch @7
10 Rnd Pitch: 0 to 24, 0 semitones = Rnd_Pitch @8
11 Scanning: -4 to 4, 1 x = Scanning @1
12 Jittering: 0 to 1000, 5 ms, exponential 4 = Jittering @2
13 Echo Switch: 0 to 1, 0, switch = EchoSwitch @13
14 Left Delay: 0.001 to 4.5, 0.3 s = EchoLeftDelay @14
15 Right Delay: 0.001 to 4.5, 0.25 s = EchoRightDelay @15
16 Left Gain: 0 to 0.98, 0.341 = EchoLeftGain @16
17 Right Gain: 0 to 0.98, 0.231 = EchoRightGain @17
18 Ring Modulation Switch: 0 to 1, 0, switch = RMSwitch @21
19 Ring Modulation Frequency: 0.1 to 8000, 220 Hz, exponential 4 = RMFrequency @22
20 Ring Modulation Amount: 0 to 1, 0.5 = RMAmount @23
21 Play Stop: 0 to 1, 0, switch @30
22 Freeze: 0 to 1, 0, switch = Freeze @32
23 LIVE: 0 to 1, 0, switch = LIVE @33
24 Normalize: 0 to 1, 1 = Normalize @12
25 Scan Sync: 0 to 1, 0, switch = ScanSync @24
26 measures: 1 to 64, 1, whole = Mesures Sample @25
27 quarters: 0 to 16, 4, whole = Mesures Quarter @26
28 Echo Sync: 0 to 1, 0, switch = DelaySync @18
29 Subdiv Left: 0 to 20, 7, choice = DelaySubLeft @19
30 Subdiv Right: 0 to 20, 7, choice = DelaySubRight @20
31 fade in: 0 to 10, 0.05 s, elsewhere FadeInTime @28
32 fade out: 0 to 10, 0.25 s, elsewhere FadeOutTime @29
33 envelope: 0 to 11, 2, choice, elsewhere Envelope
1/1D 1/1 1/2D 1/1T 1/2 1/4D 1/2T 1/4 1/8D 1/4T 1/8 )"
                                "1/16D 1/8T 1/16 1/32D 1/16T 1/32 1/64D 1/32T 1/64 1/128 ";

TEST(ControlRanges, AreFrozen) {
    const char* const kinds[] = {"", ", whole", ", switch", ", choice"};
    std::ostringstream text;
    for (const ControlRange& range : controlRanges()) {
        text << static_cast<int>(range.id) << ' ' << range.name << ": " << range.minimum << " to "
             << range.maximum << ", " << range.defaultValue;
        if (*range.unit) text << ' ' << range.unit;
        if (range.curve == ControlCurve::exponential) text << ", exponential " << range.stepness;
        text << kinds[static_cast<int>(range.kind)];
        if (*range.channel) text << (range.kept ? " = " : ", elsewhere ") << range.channel;
        if (range.place != kNotMoved) text << " @" << range.place;
        text << '\n';
    }
    for (const NoteValue& note : kNoteValues) text << note.name << ' ';
    EXPECT_EQ(text.str(), kFrozen);
}

TEST(ControlRanges, TakeFiniteValuesBetweenTheEndsAndOnlyWholeOnesWhereTheyCount) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    using enum ControlId;
    const std::pair<ControlId, std::vector<float>> refused[] = {
        {pitch, {24.00001f, -24.00001f, kInfinity, -kInfinity, std::nanf("")}},
        {leftDelay, {0.0f}},
        {quarters, {-1.0f, 3.5f, 17.0f}},
        {envelope, {12.0f, 0.25f}},
        {echoSwitch, {-1.0f, 2.0f}}};
    for (const auto& [id, values] : refused)
        for (const float value : values)
            EXPECT_FALSE(acceptsValue(controlRange(id), value)) << value;
    for (const ControlRange& range : controlRanges())
        EXPECT_TRUE(acceptsValue(range, range.minimum) && acceptsValue(range, range.maximum));
    EXPECT_TRUE(acceptsValue(controlRange(pitch), 0.5f));
    EXPECT_TRUE(acceptsValue(controlRange(echoSwitch), 0.4f));
}

TEST(ControlCurve, BendsTheMiddleAndKeepsTheEnds) {
    const ControlRange& length = controlRange(ControlId::length);
    const float middle = 5 + 1995 * 0.125f; // half the way, cubed
    EXPECT_FLOAT_EQ(displayedFromLinear(length, 1002.5f), middle);
    EXPECT_FLOAT_EQ(linearFromDisplayed(length, middle), 1002.5f);
    EXPECT_EQ(displayedFromLinear(length, 2001.0f), 2000.0f);
    EXPECT_EQ(linearFromDisplayed(length, 4.0f), 5.0f);
    for (const ControlRange& range : controlRanges())
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

} // namespace
} // namespace zephyra
