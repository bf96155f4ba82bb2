// Fingers on what knows of mice alone: what they press, and what they leave behind.
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Fingers : Hands {
    void touch(TouchId id, TouchPhase phase, Point at) {
        scene.screen().touches().take({id, phase, {at.x, at.y}, now += 0.01});
    }
    /// In turn, at one place.
    void touch(TouchId id, std::initializer_list<TouchPhase> phases, Point at) {
        for (const TouchPhase phase : phases) touch(id, phase, at);
    }
    void rest() { scene.screen().touches().frame(now += 1.0); }
    bool isOn(ControlId id) {
        scene.play(kFewBlocks);
        return value(id) != 0.0f;
    }
    double now = 100.0; // far behind the window's frames
};

TEST_F(Fingers, PressOneThingAtATimeAndHoverOverNone) {
    using enum TouchPhase;
    const Point button = middle("Freeze"), other = middle("LIVE");
    bool on = false;
    const struct {
        const char* what;
        std::function<void()> hand;
        bool flips;
    } rows[] = {
        {"a tap",
         [&] {
             touch(1, {began, ended}, button);
         },
         true},
        {"another finger",
         [&] {
             touch(2, {began, ended}, button);
         },
         true},
        {"let go elsewhere",
         [&] {
             touch(1, began, button), touch(1, {moved, ended}, other);
         },
         false},
        {"cancelled",
         [&] {
             touch(1, {began, cancelled}, button);
         },
         false},
        {"two",
         [&] {
             touch(1, began, button);
             touch(2, {began, ended}, other);
             touch(1, ended, button);
         },
         true},
        {"while the mouse holds a knob",
         [&] {
             window.press(at(width));
             touch(1, {began, ended}, button);
             window.release();
         },
         false},
        {"a rest where there is no menu",
         [&] { touch(1, began, button), rest(), touch(1, ended, button); }, true},
    };
    for (const auto& [what, hand, flips] : rows) {
        SCOPED_TRACE(what);
        hand();
        on = on != flips;
        EXPECT_EQ(isOn(freeze), on);
        EXPECT_FALSE(isOn(live));
        EXPECT_FALSE(scene.findTitled("Freeze")->isMouseOver());
    }
}

TEST_F(Fingers, TypeIntoAKnobByOneTapResetItByTwoAndOpenItsMenuByARest) {
    using enum TouchPhase;
    scene.asMain([this](auto&) { knob(length).setValue(knob(length).maximumValue()); });
    const float first = knob(width).value();
    touch(1, began, scene.numberOf(density));
    EXPECT_EQ(told, helpText(density));
    EXPECT_TRUE(scene.knob(density).hasKeyboardFocus(false));
    touch(1, ended, scene.numberOf(density));
    EXPECT_EQ(told, "");
    touch(1, {began, ended, began, ended}, scene.numberOf(length));
    touch(1, {began, ended, began}, scene.numberOf(width));
    touch(2, {began, ended}, at(pitch) + Point(0, -22)); // beside its number
    for (int i = 0; i < 20; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        PictureWindow::settle();
    }
    for (const ControlId id : {density, length, width, pitch}) // a field is a child
        EXPECT_EQ(scene.knob(id).getNumChildComponents(), id == density) << controlRange(id).name;
    EXPECT_LT(knob(length).value(), knob(length).maximumValue());
    rest();
    EXPECT_FALSE(knob(width).isTracking());
    EXPECT_NE(juce::Component::getCurrentlyModalComponent(), nullptr);
    juce::PopupMenu::dismissAllActiveMenus();
    touch(1, {moved, ended}, at(width) + Point(0, -90));
    EXPECT_EQ(knob(width).value(), first);

    scene.asMain([this](auto& view) { view.assignments.assign(knob(width), AssignmentType::lfo); });
    scene.frames(2);
    const CellPlace place = placeOf(scene.knob(width).cell(), layOut(1100, 700, 1.0));
    touch(1, began,
          window.getLocalPoint(&scene.knob(width), pointOnTurn(place, 0.0f, sweepRadius(place))));
    rest(); // on what it sweeps, to move it
    EXPECT_EQ(juce::Component::getCurrentlyModalComponent(), nullptr);
    touch(1, cancelled, {});
    scene.screen().context().settings.zoom = 2.0;
    scene.screen().context().settingsChanged();
    const float before = knob(pitch).value();
    touch(1, began, at(pitch));
    touch(1, {moved, cancelled}, at(pitch) + Point(0, -14)); // a tap's circle is as large as text
    EXPECT_EQ(knob(pitch).value(), before);
}

TEST_F(Fingers, OpenAMenuByARestAndDragASlider) {
    using enum TouchPhase;
    const Point dice = middle("Randomise");
    const Values before = all();
    touch(1, began, dice);
    rest();
    EXPECT_NE(juce::Component::getCurrentlyModalComponent(), nullptr);
    juce::PopupMenu::dismissAllActiveMenus();
    touch(2, {began, ended}, middle("Freeze")); // one at a time, also while it rests
    touch(1, ended, dice);
    EXPECT_TRUE(Hands::moved(before).empty());

    press(',', juce::ModifierKeys::commandModifier);
    const Point slider = middle("Fade in");
    touch(1, began, slider);
    const float pressed = knob(fadeIn).value();
    touch(1, moved, slider + Point(30, 0));
    EXPECT_GT(knob(fadeIn).value(), pressed);
    touch(1, ended, slider + Point(30, 0));
    endWheel();
}

} // namespace
} // namespace zephyra
