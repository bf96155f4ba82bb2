// What every control of the window has in common, and what single ones do besides.
#include "screens/foot/foot_area.h"
#include "screens/meter/meter_area.h"
#include "screens/path/section_switch.h"
#include "screens/stage/stage_area.h"
#include "screens/strip/scope_view.h"
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

    static juce::Component* titled(juce::Component& in, const juce::String& title) {
        for (juce::Component* const child : in.getChildren())
            if (child->getTitle() == title) return child;
        return nullptr;
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
    ScopeView scope(context);
    button.pressed = [&] { ++flips; };
    button.setSwitch(true);
    const auto access = [](auto& control) { return control.createAccessibilityHandler(); };
    const std::pair<ScreenControl*, std::unique_ptr<juce::AccessibilityHandler>> controls[] = {
        {&button, access(button)}, {&section, access(section)}, {&scope, access(scope)}};
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
    EXPECT_FALSE(context.settings.showsScope);
}

TEST_F(Controls, PressAButtonInsideItByTheLeftButtonWhileItIsEnabled) {
    ScreenButton button(context, "Freeze", "Freezes");
    button.setSize(40, 40);
    std::string done;
    button.touched = [&](ButtonTouch touch) {
        done += touch == ButtonTouch::down ? '(' : touch == ButtonTouch::inside ? ')' : 'x';
    };
    button.menuAsked = [&] { done += 'm'; };
    const auto click = [&](juce::Point<float> to, int keys) {
        button.mouseDown(mouse(button, {5, 5}, keys));
        button.mouseDrag(mouse(button, to, keys));
        button.mouseUp(mouse(button, to, keys));
    };
    using juce::ModifierKeys, juce::KeyPress;
    for (const bool isEnabled : {true, false}) {
        button.setFace({.isEnabled = isEnabled});
        click({6, 6}, ModifierKeys::leftButtonModifier);
        click({60, 6}, ModifierKeys::leftButtonModifier);
        click({6, 6}, ModifierKeys::rightButtonModifier);
        button.press();
        button.keyPressed(KeyPress(KeyPress::returnKey));
        button.keyPressed(KeyPress(KeyPress::F10Key, ModifierKeys::shiftModifier, 0));
        EXPECT_EQ(std::exchange(done, {}), isEnabled ? "()(xm()()m" : "");
    }
    button.place({0, 0, 0, 40}, 1.0);
    EXPECT_FALSE(button.isVisible()); // else the keyboard would find it
}

TEST_F(Controls, MoveTheTempoByKeysWheelAndTheLeftButtonAlone) {
    using juce::KeyPress;
    MusicLine line(context);
    MusicButton tempo(context, line);
    tempo.setSize(90, 48);
    const auto drag = [&](float way, juce::ModifierKeys keys) {
        tempo.mouseDown(mouse(tempo, {}, keys));
        tempo.mouseDrag(mouse(tempo, {0, way}, keys));
        tempo.mouseUp(mouse(tempo, {0, way}, keys));
    };
    constexpr auto left = juce::ModifierKeys::leftButtonModifier;
    const auto key = [&](int code) { EXPECT_TRUE(tempo.keyPressed(KeyPress(code))) << code; };
    const auto wheel = [&](float notches) {
        tempo.mouseWheelMove(mouse(tempo), {0, notches, false, false, false});
    };
    const struct {
        std::function<void()> hand;
        const char* tempo; // null: another
    } rows[] = {{[&] { key(KeyPress::upKey), key(KeyPress::rightKey); }, "120.50"},
                {[&] { key(KeyPress::downKey); }, "120.25"},
                {[&] { key(KeyPress::leftKey); }, "120.00"},
                {[&] { key(KeyPress::pageUpKey); }, "125.00"},
                {[&] { key(KeyPress::pageDownKey); }, "120.00"},
                {[&] { wheel(0.2f), wheel(0.0f); }, "120.25"},
                {[&] { wheel(-0.2f); }, "120.00"},
                {[&] { drag(-40, juce::ModifierKeys::rightButtonModifier); }, "120.00"},
                {[&] { drag(-40, left); }, "130.00"},
                {[&] { drag(40, left); }, "120.00"},
                {[&] { plugin.render(30), drag(3, left); }, "120.00"}, // a tap, and another
                {[&] { plugin.render(30), drag(3, left); }, nullptr},
                {[&] { plugin.render(50), key(KeyPress::returnKey); }, nullptr}};
    for (const auto& [hand, expected] : rows) {
        readFrameOf(source);
        const std::string before = line.shown().tempo;
        hand();
        readFrameOf(source);
        tempo.show({});
        if (expected)
            EXPECT_EQ(line.shown().tempo, expected);
        else
            EXPECT_NE(line.shown().tempo, before);
        EXPECT_EQ(tempo.getDescription().toStdString(),
                  line.shown().tempo + " " + line.shown().source());
    }
}

TEST_F(Controls, LeaveKeysWithCtrlOrAltToTheWindowAndItsHost) {
    const auto tells = context.help;
    StageArea stage(context);
    MeterArea meter(context);
    FootArea area(context);
    context.help = tells;
    PresetButton preset(context);
    preset.stepped = [](int) {};
    const std::pair<juce::Component&, int> keys[] = {
        {stage, juce::KeyPress::rightKey},
        {stage, '0'},
        {*stage.getChildComponent(0), juce::KeyPress::homeKey},
        {meter, juce::KeyPress::returnKey},
        {preset, juce::KeyPress::leftKey},
        {*titled(area, "Dropped grains"), juce::KeyPress::returnKey}};
    for (const auto& [at, key] : keys) {
        SCOPED_TRACE(at.getTitle());
        const auto letter = static_cast<juce::juce_wchar>(key);
        EXPECT_TRUE(at.keyPressed(juce::KeyPress(key, 0, letter)));
        for (const int held : {juce::ModifierKeys::ctrlModifier, juce::ModifierKeys::altModifier})
            EXPECT_FALSE(at.keyPressed(juce::KeyPress(key, held, letter)));
    }
}

TEST_F(Controls, FrameAgainWhatGetsTheKeyboardBackFromADialog) {
    ScreenButton button(context, "Undo", "Undoes");
    button.focusGained(juce::Component::focusChangedByTabKey);
    button.focusLost(juce::Component::focusChangedDirectly);
    button.focusGained(juce::Component::focusChangedDirectly);
    EXPECT_TRUE(button.showsFocus());
    button.focusGained(juce::Component::focusChangedByMouseClick);
    button.focusGained(juce::Component::focusChangedDirectly);
    EXPECT_FALSE(button.showsFocus());
}

TEST_F(Controls, ReadTheFootsFiguresToWhoCannotSeeThem) {
    FootArea area(context);
    area.layOut(layOut(1100, 700, 1.0));
    readFrameOf(source);
    area.frame({});
    for (const auto& [title, value, help] :
         {std::tuple{"CPU share", "CPU 0 %", HelpId::cpu},
          std::tuple{"Dropped grains", "0 dropped", HelpId::dropped}}) {
        auto* const figure = dynamic_cast<FootFigure*>(titled(area, title));
        ASSERT_NE(figure, nullptr) << title;
        EXPECT_EQ(figure->getDescription(), value);
        EXPECT_EQ(figure->getHelpText().toStdString(), helpText(help));
        EXPECT_TRUE(figure->getWantsKeyboardFocus());
        EXPECT_EQ(figure->createAccessibilityHandler()->getActions().invoke(
                      juce::AccessibilityActionType::press),
                  help == HelpId::dropped);
    }
}

} // namespace
} // namespace zephyra
