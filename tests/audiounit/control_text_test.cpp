// Names and values of controls as they are typed, against the controls' table.

#include "audiounit/control_text.h"
#include "platform/text/text_numbers.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(ControlText, EveryControlTakesBothItsEndsAndNothingBeyond) {
    ASSERT_EQ(settableControls().size(), 33u);
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        if (range.kind == ControlKind::choice) continue; // chosen by names
        SCOPED_TRACE(range.name);
        const auto control = parseControlName(range.name);
        ASSERT_TRUE(control) << control.message();
        EXPECT_EQ(control.value(), id);
        const auto typed = [id](float value) { return parseControlValue(id, formatNumber(value)); };
        for (const float end : {range.minimum, range.maximum, range.defaultValue}) {
            const Result<float> value = typed(end);
            ASSERT_TRUE(value) << value.message();
            EXPECT_EQ(value.value(), end);
        }
        EXPECT_FALSE(typed(std::nextafter(range.minimum, -1e9f)));
        EXPECT_FALSE(typed(std::nextafter(range.maximum, 1e9f)));
    }
    for (const char* wrong : {"", "nan", "50Hz", "on"})
        EXPECT_FALSE(parseControlValue(ControlId::density, wrong)) << wrong;
    EXPECT_FALSE(parseControlValue(ControlId::quarters, "3.5")); // only whole ones count
}

TEST(ControlText, ASettingReadsBackFromTheTextThatShowsIt) {
    const struct {
        const char *name, *value, *shown;
    } cases[] = {
        {"density", "80", "Density 80 Hz"},
        {"LEFT-GAIN", "0.98", "Left Gain 0.98"},
        {"echoswitch", "ON", "Echo Switch on"},
        {"Ring Modulation Switch", "0", "Ring Modulation Switch off"},
        {"rnd pitch", "1e1", "Rnd Pitch 10 semitones"},
        {"scanning", "-0.25", "Scanning -0.25 x"},
    };
    for (const auto& one : cases) {
        const auto control = parseControlName(one.name);
        ASSERT_TRUE(control) << control.message();
        const auto value = parseControlValue(control.value(), one.value);
        ASSERT_TRUE(value) << value.message();
        EXPECT_EQ(settingText({control.value(), value.value()}), one.shown);
    }
}

} // namespace
} // namespace zephyra
