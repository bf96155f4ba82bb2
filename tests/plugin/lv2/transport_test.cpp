// What an LV2 host's positions tell the plug-in of the music.
#include "plugin/lv2/transport.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Lv2Transport, CountsInQuartersAndKeepsMeterAndTempo) {
    constexpr double kNone = -1.0;
    const struct {
        Lv2Position sent;
        double tempo, numerator, denominator, beats;
        std::optional<bool> moving;
    } rows[] = {{{.bar = 2, .barBeat = 1.5, .speed = 1}, kNone, kNone, kNone, 9.5, true},
                {{.beatsPerMinute = 97, .speed = 0}, 97, kNone, kNone, kNone, false},
                {{.bar = 2, .barBeat = 3, .beatUnit = 8, .beatsPerBar = 6}, kNone, 6, 8, 7.5, {}},
                {{.bar = -1, .barBeat = 0}, kNone, kNone, kNone, -3, {}}, // six eighths still
                {{.beat = 5, .beatsPerBar = 0}, kNone, kNone, kNone, 2.5, {}},
                {{.beatUnit = 4, .beatsPerMinute = -1}, kNone, 6, 4, kNone, {}},
                {{.beat = HUGE_VAL}, kNone, kNone, kNone, kNone, {}},
                {{.frame = 48000}, kNone, kNone, kNone, kNone, {}}}; // whose host sends beats
    Lv2Transport transport(48000), ofFrames(48000);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const PluginTransport told = transport.read(row.sent);
        EXPECT_EQ(told.tempo.value_or(kNone), row.tempo);
        EXPECT_EQ(told.numerator.value_or(kNone), row.numerator);
        EXPECT_EQ(told.denominator.value_or(kNone), row.denominator);
        EXPECT_EQ(told.beats.value_or(kNone), row.beats);
        EXPECT_EQ(told.moving, row.moving);
    }
    EXPECT_EQ(ofFrames.read({.beatsPerMinute = 90, .frame = 48000}).beats, 1.5);
}

} // namespace
} // namespace zephyra
