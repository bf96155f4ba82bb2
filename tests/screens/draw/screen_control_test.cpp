// What every control of the window has in common, and what single ones do besides.
#include "screens/foot/foot_area.h"
#include "screens/path/section_switch.h"
#include "screens/top/music_button.h"
#include "screens/top/preset_button.h"
#include "tests/screens/no_display.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

struct Controls : testing::Test {
    Controls() {
        context.help = [this](const std::string& sentence) { foot = sentence; };
    }
    static juce::MouseEvent mouse(juce::Component& at, juce::Point<float> point = {},
                                  juce::ModifierKeys keys = {}) {
        const auto now = juce::Time::getCurrentTime();
        return {juce::Desktop::getInstance().getMainMouseSource(),
                point,
                keys,
                0,
                0,
                0,
                0,
                0,
                &at,
                &at,
                now,
                {},
                now,
                0,
                false};
    }

    const juce::ScopedJuceInitialiser_GUI juce;
    HostedPlugin plugin{PluginKind::instrument};
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    std::string foot;
};

TEST_F(Controls, TellWhatTheyDoWhileAHandIsNearAndFrameWhatTabReached) {
    int flips = 0;
    ScreenButton button(context, "Freeze", "Freezes");
    SectionSwitch section(context, ControlId::echoSwitch, SwitchShape::pill,
                          [&](ControlId) { ++flips; });
    button.pressed = [&] { ++flips; };
    button.setSwitch(true);
    const auto access = [](auto& control) { return control.createAccessibilityHandler(); };
    const std::pair<ScreenControl*, std::unique_ptr<juce::AccessibilityHandler>> controls[] = {
        {&button, access(button)}, {&section, access(section)}};
    for (const auto& [control, handler] : controls) {
        SCOPED_TRACE(control->getTitle().toStdString());
        ASSERT_NE(control->help(), "");
        EXPECT_EQ(control->getHelpText().toStdString(), control->help());
        control->mouseEnter(mouse(*control));
        EXPECT_EQ(foot, control->help());
        control->setHelp("Another");
        EXPECT_EQ(foot, "Another");
        control->mouseExit(mouse(*control));
        EXPECT_EQ(foot, "");
        control->focusGained(juce::Component::focusChangedByMouseClick);
        EXPECT_FALSE(control->showsFocus());
        control->focusGained(juce::Component::focusChangedByTabKey);
        EXPECT_TRUE(control->showsFocus());
        EXPECT_EQ(foot, "Another");
        control->focusLost(juce::Component::focusChangedByTabKey);
        EXPECT_EQ(foot, "");
        EXPECT_TRUE(handler->getCurrentState().isCheckable());
        EXPECT_FALSE(handler->getCurrentState().isChecked());
        EXPECT_TRUE(handler->getActions().invoke(juce::AccessibilityActionType::toggle));
    }
    EXPECT_EQ(flips, 2);
}

TEST_F(Controls, ThePresetsNameStepsByArrowsAndOpensByReturn) {
    PresetButton name(context);
    std::string done;
    name.stepped = [&](int by) { done += by < 0 ? '<' : '>'; };
    name.pressed = [&] { done += 'm'; };
    using juce::KeyPress;
    for (const int key : {KeyPress::leftKey, KeyPress::rightKey, KeyPress::returnKey})
        EXPECT_TRUE(name.keyPressed(KeyPress(key)));
    EXPECT_EQ(done, "<>m");
    EXPECT_FALSE(name.keyPressed(KeyPress(KeyPress::upKey)));
}

TEST_F(Controls, MoveTheTempoByTheLeftButtonAlone) {
    MusicLine line(context);
    MusicButton tempo(context, line);
    readFrameOf(source);
    const std::string first = line.shown().tempo;
    for (const auto& [keys, moves] : {std::pair{juce::ModifierKeys::rightButtonModifier, false},
                                      {juce::ModifierKeys::leftButtonModifier, true}}) {
        tempo.mouseDown(mouse(tempo, {}, keys));
        tempo.mouseDrag(mouse(tempo, {0, -40}, keys));
        tempo.mouseUp(mouse(tempo, {0, -40}, keys));
        readFrameOf(source);
        EXPECT_EQ(line.shown().tempo != first, moves) << keys;
    }
}

TEST_F(Controls, SayNothingOfTheFootOnceThePointerHasLeftIt) {
    const auto tells = context.help;
    FootArea area(context);
    context.help = tells;
    area.layOut(layOut(1100, 700, 1.0));
    for (float x = 1099; x > 0 && foot.empty(); --x) area.mouseMove(mouse(area, {x, 10}));
    EXPECT_NE(foot, "");
    area.mouseExit(mouse(area));
    EXPECT_EQ(foot, "");
}

} // namespace
} // namespace zephyra
