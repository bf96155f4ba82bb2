// Settings as they are typed, against the controls' table.

#include "audiounit/control_text.h"
#include "platform/text/text_numbers.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(ControlNames, EveryControlTakesBothItsEndsAndNothingBeyond) {
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        if (range.kind == ControlKind::choice) continue; // chosen by names
        SCOPED_TRACE(range.name);
        const auto typed = [&range](float value) {
            return parseSetting(std::string(range.name) + "=" + formatNumber(value));
        };
        for (const float end : {range.minimum, range.maximum, range.defaultValue}) {
            const Result<ControlSetting> setting = typed(end);
            ASSERT_TRUE(setting) << setting.message();
            EXPECT_EQ(setting.value().control, id);
            EXPECT_EQ(setting.value().value, end);
        }
        EXPECT_FALSE(typed(std::nextafter(range.minimum, -1e9f)));
        EXPECT_FALSE(typed(std::nextafter(range.maximum, 1e9f)));
    }
}

TEST(ControlNames, ASettingReadsBackFromTheTextThatShowsIt) {
    const struct {
        const char *typed, *shown;
    } cases[] = {
        {"density=80", "Density 80 Hz"},
        {"LEFT-GAIN=0.98", "Left Gain 0.98"},
        {"echoswitch=ON", "Echo Switch on"},
        {"Ring Modulation Switch=0", "Ring Modulation Switch off"},
        {"rnd pitch=1e1", "Rnd Pitch 10 semitones"},
        {"scanning=-0.25", "Scanning -0.25 x"},
    };
    for (const auto& one : cases) {
        const Result<ControlSetting> setting = parseSetting(one.typed);
        ASSERT_TRUE(setting) << setting.message();
        EXPECT_EQ(settingText(setting.value()), one.shown);
    }
}

TEST(ControlNames, ATimeStandsBeforeTheFirstColon) {
    const Result<TimedSetting> timed = parseTimedSetting("2.5:Pitch=-7");
    ASSERT_TRUE(timed);
    EXPECT_EQ(timed.value().seconds, 2.5);
    EXPECT_EQ(timed.value().setting.value, -7);
    for (const char* wrong :
         {"Pitch=7", ":Pitch=7", "x:Pitch=7", "-1:Pitch=7", "1:", "inf:Pitch=7"})
        EXPECT_FALSE(parseTimedSetting(wrong)) << wrong;
}

} // namespace
} // namespace zephyra
