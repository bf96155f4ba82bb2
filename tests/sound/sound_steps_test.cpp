// What may happen to a stream that plays, against the table of docs/sound.md: a few of its rows,
// over a sine.

#include "bench/sound_steps.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct Row {
    const char* name;
    double bound = kCleanRatio; ///< what it is today; who makes it less puts the new one here
};

constexpr Row kRows[] = {
    // clang-format off
    {"(nothing)"},        {"Amplitude up"},     {"Amplitude down"},  {"Pan up"},
    {"Width down"},       {"Density down"},     {"Length down"},     {"Pitch up"},
    {"Scanning down"},    {"Play Stop on"},     {"Play Stop off"},   {"stop without a fade"},
    {"Freeze on"},        {"Freeze off"},       {"Scan Sync on"},    {"rewind"},
    {"region moved"},     {"host loops back"},  {"host stops"},      {"bypass on"},
    {"bypass off"},       {"Dry/Wet down"},     {"Left Gain down"},  {"note"},
    {"Ring Modulation Switch on"},          {"Ring Modulation Switch on again"},
    {"Ring Modulation Switch off"},         {"Echo Switch on"},
    {"Echo Switch off"},                    {"Echo Switch on again"},
    {"sound loaded"},     {"Normalize down"},   {"stop of long grains"},
    {"envelope picked: Sinusoidal"},        {"envelope picked: Pulse 2"},
    // clang-format on
    {"LIVE on", 4.1},
    {"LIVE cleared", 1.8},
    {"host starts a bounce", 17.21},
    {"prepared again", 17.21},
    {"prepared again, with echo", 18.0},
};

TEST(SoundSteps, AreNoLargerThanTheTableSays) {
    const std::vector<SoundChange> all = soundChanges();
    for (const Row& row : kRows) {
        const auto change = std::find_if(
            all.begin(), all.end(), [&](const SoundChange& each) { return each.name == row.name; });
        ASSERT_NE(change, all.end()) << row.name;
        const double ratio = worstRatio(*change, {});
        EXPECT_LE(ratio, row.bound) << row.name;
        if (row.bound == kCleanRatio) continue;
        EXPECT_GE(ratio, 0.8 * row.bound) << row.name << ": better, so lower its bound";
    }
}

} // namespace
} // namespace zephyra
