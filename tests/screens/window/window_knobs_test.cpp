// What a press, a drag, a key and a finger on a knob mean, each alone.
#include "screens/draw/brush.h"
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Knobs : Hands {
    /// The value of width, what is being typed, and what is open or held.
    std::string state() {
        PictureWindow::settle();
        std::string text = scene.knob(width).face().text.number;
        if (ValueField* const one = field()) text += " field " + one->getText().toStdString();
        if (juce::Component::getCurrentlyModalComponent()) text += " menu";
        if (knob(width).isTracking()) text += " held";
        return text;
    }
    void drag(Point from, Point way) {
        window.press(from), window.dragTo(from + way), window.release();
    }
    /// As JUCE's timers and later calls need it.
    void wait(int milliseconds) {
        for (; milliseconds > 0; milliseconds -= 20) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            PictureWindow::settle();
        }
    }
};

TEST_F(Knobs, MeanOneThingByEachHand) {
    using Modifiers = juce::ModifierKeys;
    const Point arc = at(width) + Point(0, -22), number = scene.numberOf(width);
    const auto keys = [this](int key, int with = 0, char letter = 0) {
        scene.knob(width).grabKeyboardFocus();
        press(Key(key, with, static_cast<juce::juce_wchar>(letter)));
    };
    const struct {
        const char* what;
        std::function<void()> hand;
        const char* state;
    } rows[] = {
        {"up",
         [&] {
             drag(number, {0, -54});
         },
         "0.70"},
        {"up with Shift",
         [&] {
             window.hold(Modifiers::shiftModifier);
             drag(arc, {0, -54});
             window.hold({});
         },
         "0.52"},
        {"held", [&] { window.press(arc); }, "0.50 held"},
        {"let go", [&] { window.release(); }, "0.50"},
        {"a click", [&] { window.click(arc); }, "0.50"},
        {"a click on the number", [&] { window.click(number); }, "0.50 field 0.50"},
        {"one that trembles",
         [&] {
             drag(number, {1, 1});
         },
         "0.50 field 0.50"},
        {"a press beside the field", [&] { window.click(number), window.click(arc); }, "0.50"},
        {"two clicks", [&] { window.click(arc, 2); }, "0.25"},
        {"two clicks on the number", [&] { window.click(number, 2); }, "0.25"},
        {"two clicks in the field",
         [&] { window.click(number), wait(500), window.click(number, 2); }, "0.50 field 0.50"},
        {"right button", [&] { rightClick(number); }, "0.50 menu"},
        {"right button, dragged", [&] { rightClick(arc, arc + Point(0, -54)); }, "0.50 menu"},
        {"both buttons",
         [&] {
             window.press(arc);
             window.hold(Modifiers::rightButtonModifier);
             window.dragTo(arc);
             window.release();
             window.hold({});
             window.moveTo(arc);
             drag(arc, {0, -27});
         },
         "0.60"},
        {"Return", [&] { keys(Key::returnKey); }, "0.50 field 0.50"},
        {"a digit", [&] { keys('0', 0, '0'), type(".3"); }, "0.50 field 0.3"},
        {"a sign", [&] { keys('.', 0, '.'); }, "0.50 field ."},
        {"F10", [&] { keys(Key::F10Key); }, "0.50"},
        {"F10 with Shift", [&] { keys(Key::F10Key, Modifiers::shiftModifier); }, "0.50 menu"},
        {"with Alt", [&] { keys(Key::upKey, Modifiers::altModifier); }, "0.50"},
        {"with Ctrl", [&] { keys(Key::upKey, Modifiers::ctrlModifier); }, "0.50"},
        {"another size", [&] { window.click(number), window.setSize(1000, 700); }, "0.50"},
    };
    for (const auto& [what, hand, expected] : rows) {
        SCOPED_TRACE(what);
        scene.asMain([this](auto&) { knob(width).setValue(0.5f); });
        scene.frames(1);
        hand();
        scene.frames(1);
        EXPECT_EQ(state(), expected);
        if (juce::Component::getCurrentlyModalComponent()) juce::PopupMenu::dismissAllActiveMenus();
        if (field()) press(Key::escapeKey);
        window.setSize(1100, 700);
    }
}

TEST_F(Knobs, TypeIntoAFieldUntilTheKeyboardGoesElsewhere) {
    scene.knob(width).setVisible(true);
    window.click(scene.numberOf(width));
    EXPECT_EQ(told, helpText(HelpId::value));
    scene.screen().grabKeyboardFocus(); // a host's window, as it is activated
    wait(200);
    EXPECT_TRUE(field()->hasKeyboardFocus(false));
    type("2f r"); // letters, here
    press(Key::returnKey);
    EXPECT_THAT(told, testing::HasSubstr("Width takes 0 to 1"));
    const auto frame = window.getLocalArea(field(), field()->getLocalBounds());
    const juce::Colour red = window.picture().getPixelAt(frame.getCentreX(), frame.getY());
    EXPECT_GT(red.getRed(), 2 * red.getGreen());
    field()->selectAll();
    type("0.75");
    scene.play(kFewBlocks);
    EXPECT_EQ(value(freeze) + value(playStop), 0.0f);
    for (int i = 0; i < 200 && field(); ++i) scene.knob(pitch).grabKeyboardFocus(), wait(20);
    EXPECT_EQ(state(), "0.25"); // what was not entered is left
    window.click(scene.numberOf(width));
    press(Key::escapeKey);
    EXPECT_EQ(told, helpText(width)); // under the pointer still
    EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false));
}

TEST_F(Knobs, TellWhoMovesThemAndGiveItsEndsToAHand) {
    KnobCell& cell = scene.knob(width);
    scene.asMain([this](auto& view) { view.assignments.assign(knob(width), AssignmentType::lfo); });
    scene.play(0.1);
    window.moveTo(at(width));
    EXPECT_THAT(told, testing::StartsWith("Width moves by LFO"));
    const CellPlace place = placeOf(cell.cell(), layOut(1100, 700, 1.0));
    const auto end = [&](float turn) {
        return window.getLocalPoint(&cell, pointOnTurn(place, turn, sweepRadius(place)));
    };
    const auto ends = [&] {
        scene.frames(1);
        return std::pair(std::lround(*cell.face().from * 100), std::lround(*cell.face().to * 100));
    };
    drag(end(0.0f), end(0.25f) - end(0.0f));
    EXPECT_EQ(ends(), std::pair(25L, 100L));
    window.press(end(1.0f));
    window.dragTo(end(0.5f));
    scene.screen().touches().take({7, TouchPhase::began, {end(0.25f).x, end(0.25f).y}, 1.0});
    window.dragTo(end(0.75f)); // the second hand has the knob, or nothing
    window.release();
    scene.screen().touches().cancelAll();
    EXPECT_EQ(ends(), std::pair(25L, 75L));
    press('z', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(ends(), std::pair(25L, 100L));
    drag(at(width), {0, -27}); // far from both
    EXPECT_EQ(ends(), std::pair(25L, 100L));
}

TEST_F(Knobs, OpenTheirMenuWhereTheyAre) {
    Box box;
    std::vector<MenuRow> menu;
    scene.screen().context().openMenu = [&](const Box& at, std::vector<MenuRow> rows) {
        box = at;
        menu = std::move(rows);
    };
    rightClick(at(width));
    EXPECT_EQ(brush::rectangle(box),
              window.getLocalArea(&scene.knob(width), scene.knob(width).getLocalBounds()));
    const auto row = std::ranges::find(menu, "Type a value...", &MenuRow::text);
    ASSERT_NE(row, menu.end());
    row->chosen();
    EXPECT_EQ(state(), "0.25 field 0.25");
}

} // namespace
} // namespace zephyra
