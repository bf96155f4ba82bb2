// What stands over the window: which hand gives which answer, and that nothing below hears of it.
#include "screens/model/settings/sheet_boxes.h"
#include "tests/screens/window/window_hands.h"

#include <sstream>

namespace zephyra {
namespace {

using enum ControlId;

struct Dialogs : Hands {
    /// Buttons are parted by commas; '!' is before one that removes something.
    void ask(const std::string& title, const std::string& buttons, bool types = false) {
        Alert alert{.title = title, .message = "", .actions = {}};
        std::stringstream all(buttons);
        for (std::string name; std::getline(all, name, ',');) {
            const bool removes = name[0] == '!';
            name.erase(0, removes ? 1 : 0);
            alert.actions.push_back(
                {.title = name,
                 .chosen =
                     [=, this](const std::string& typed) { answers += title + name + typed + ' '; },
                 .destructive = removes});
        }
        if (types) alert.textField = AlertTextField{.placeholder = "", .text = "Old"};
        scene.asMain([&](auto& view) { view.instance().alerts.present(alert); });
        scene.frames(2);
    }
    /// T: Tab, B: Shift and Tab, R: Return, S: Space, E: Escape; others are typed.
    void keys(const std::string& all) {
        for (const char one : all) {
            if (one == 'T' || one == 'B')
                press(Key::tabKey, one == 'B' ? juce::ModifierKeys::shiftModifier : 0);
            else if (one == 'S')
                type(" ");
            else if (one == 'R' || one == 'E')
                press(one == 'R' ? Key::returnKey : Key::escapeKey);
            else
                type(std::string(1, one));
        }
        PictureWindow::settle();
        scene.frames(2);
    }
    AlertDialog* dialog() { return scene.find<AlertDialog>(); }
    SettingsSheet* sheet() { return scene.find<SettingsSheet>(); }
    std::string answered() { return std::exchange(answers, {}); }
    std::string answers;
};

TEST_F(Dialogs, AnswerByKeysWithWhatRemovesNothing) {
    const struct {
        const char *buttons, *keys, *answer;
        bool types = false;
    } rows[] = {{"Cancel,!Remove", "R", "Cancel"},
                {"!YES,NO", "R", "NO"},
                {"!YES,NO", "E", "NO"},
                {"Cancel,Later", "E", "Cancel"},
                {"Later,!Remove", "E", "Later"},
                {"!Remove", "ER", ""},
                {"Cancel,!Remove", "S", ""}, // no button has the keyboard
                {"Cancel,!Remove", "TTR", "Remove"},
                {"Cancel,Later,!Remove", "TTS", "Later"},
                {"Cancel,Later,!Remove", "BS", "Remove"},
                {"Cancel,Later,!Remove", "BBS", "Later"},
                {"Rename,Cancel", "f lR", "Renamef l", true},
                {"Rename,Cancel", "fE", "Cancelf", true},
                {"!Replace,Cancel", "fR", "", true},
                {"Rename,Cancel", "fBS", "Cancelf", true},
                {"Rename,Cancel", "TTTfS", "", true}}; // round to the field
    const Values before = all();
    for (const auto& [buttons, pressed, answer, types] : rows) {
        SCOPED_TRACE(std::string(buttons) + ": " + pressed);
        scene.knob(width).grabKeyboardFocus();
        ask("", buttons, types);
        window.key(Key(',', juce::ModifierKeys::commandModifier, 0));
        keys(pressed);
        EXPECT_EQ(answers, *answer ? std::string(answer) + ' ' : "");
        if (dialog()) window.click(scene.middleOf(*dialog()->getChildren().getLast()));
        keys("");
        EXPECT_NE(answered(), "");
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_EQ(sheet(), nullptr);
        EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false));
    }
    EXPECT_TRUE(moved(before).empty()); // nothing below has heard of these keys
}

TEST_F(Dialogs, AnswerOnlyTheAlertThatTheyShowAndOnce) {
    scene.knob(width).grabKeyboardFocus();
    ask("first", "Cancel,!Remove");
    ask("second", "Cancel,!Remove");
    const Point remove = middle("Remove");
    window.click(remove);
    scene.asMain([](auto& view) { view.instance().alerts.answer("Cancel"); }); // another window
    scene.frames(1);
    PictureWindow::settle();
    EXPECT_EQ(answered(), "firstCancel ");
    scene.screen().grabKeyboardFocus(); // as when another window closes
    keys("T");
    EXPECT_TRUE(dynamic_cast<ScreenButton&>(*scene.findTitled("Cancel")).showsFocus());
    window.click(remove);
    window.click(middle("Cancel"));
    keys("");
    EXPECT_EQ(answered(), "secondRemove ");
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false));
}

TEST_F(Dialogs, HoldAllThatLiesBelowThem) {
    press(',', juce::ModifierKeys::commandModifier);
    scene.findTitled("Zoom")->grabKeyboardFocus();
    const juce::Component* const row = juce::Component::getCurrentlyFocusedComponent();
    ask("", "Cancel,Later", true);
    scene.screen().grabKeyboardFocus();
    window.key(Key('l', juce::ModifierKeys::altModifier, 'l'));
    keys("f");
    press('+', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(scene.screen().settings().zoom, 1.0);
    window.setSize(800, 520);
    EXPECT_EQ(dialog()->getBounds(), scene.screen().getLocalBounds());
    EXPECT_EQ(sheet()->getBounds(), scene.screen().getLocalBounds());
    window.click(middle("Cancel"));
    keys("");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), row);
    scene.screen().grabKeyboardFocus();
    keys("EE"); // the first goes back to the sheet
    EXPECT_EQ(sheet(), nullptr);
    scene.knob(width).grabKeyboardFocus();
    press(Key::F10Key, juce::ModifierKeys::shiftModifier);
    ASSERT_NE(juce::Component::getCurrentlyModalComponent(), nullptr);
    type("f ");
    window.key(Key(',', juce::ModifierKeys::commandModifier, 0));
    EXPECT_EQ(sheet(), nullptr);
    juce::PopupMenu::dismissAllActiveMenus();
    scene.play(kFewBlocks);
    EXPECT_EQ(value(freeze) + value(playStop), 0.0f);

    using enum TouchPhase;
    for (const auto& opens : {std::function([&] { ask("", "Cancel"); }),
                              {[&] { scene.screen().context().openSettings(); }}}) {
        const Point knob = at(pitch);
        scene.screen().touches().take({1, began, {knob.x, knob.y}, 1.0});
        EXPECT_TRUE(this->knob(pitch).isTracking());
        opens();
        EXPECT_FALSE(this->knob(pitch).isTracking());
        scene.screen().context().openSettings(); // nothing, over a dialog
        EXPECT_TRUE(!sheet() || !dialog());
        keys("E");
    }
}

/// Of a setting's row, at the window's first size.
struct Rows : Dialogs {
    enum Part { name, control, amount };
    Rows() { press(',', juce::ModifierKeys::commandModifier); }
    SettingRowView& row(const char* title) {
        return dynamic_cast<SettingRowView&>(*scene.findTitled(title));
    }
    /// share: of the part's width.
    Point on(const char* title, Part part, double share) {
        SettingRowView& of = row(title);
        const SettingRowBoxes boxes =
            settingRowBoxes({0, 0, of.getWidth(), of.getHeight()}, of.shown().entry->kind, 1.0);
        const Box& box = part == name ? boxes.name : part == control ? boxes.control : boxes.value;
        return window.getLocalPoint(
            &of, juce::Point(box.x + share * box.width, double(box.centreY())).toFloat());
    }
};

TEST_F(Rows, DoWhatIsDrawnWhereAMousePressesThem) {
    const auto drag = [this](Point from, Point to) {
        window.press(from), window.dragTo(to), window.release();
    };
    const struct {
        const char* what;
        const char* title;
        std::function<void()> hand;
        const char* becomes;
    } rows[] = {
        {"slider", "Fade in", [&] { window.click(on("Fade in", control, 0.5)); }, "2.50 s"},
        {"dragged", "Fade in",
         [&] { drag(on("Fade in", control, 0.25), on("Fade in", control, 3)); }, "10.0 s"},
        {"not beside it", "Fade in",
         [&] { drag(on("Fade in", name, 0.5), on("Fade in", control, 0.5)); }, "10.0 s"},
        {"nor by the right button", "Fade in", [&] { rightClick(on("Fade in", control, 0.5)); },
         "10.0 s"},
        {"two clicks beside it", "Fade in", [&] { window.click(on("Fade in", name, 0.5), 2); },
         "10.0 s"},
        {"two clicks", "Fade in", [&] { window.click(on("Fade in", control, 0.5), 2); }, "50.0 ms"},
        {"typed", "Fade in", [&] { window.click(on("Fade in", amount, 0.5)), keys("3 sR"); },
         "3.00 s"},
        {"left", "Fade in", [&] { window.click(on("Fade in", amount, 0.5)), keys("4 sE"); },
         "3.00 s"},
        {"by keys", "Fade in", [&] { row("Fade in").grabKeyboardFocus(), keys("R5R"); }, "5.00 s"},
        {"mended", "Fade in", [&] { keys("R11 sR"), press(Key::backspaceKey), keys("s"); },
         "5.00 s"},
        {"", "Fade in", [&] { press(Key::backspaceKey), press(Key::backspaceKey); }, "5.00 s"},
        {"", "Fade in", [&] { press(Key::backspaceKey), keys("R"); }, "1.00 s"},
        {"a page", "Fade in", [&] { press(Key::pageUpKey); }, "2.66 s"},
        {"toggle", "Reduced motion", [&] { window.click(on("Reduced motion", name, 0.5)); }, "On"},
        {"right button", "Reduced motion", [&] { rightClick(middle("Reduced motion")); }, "On"},
        {"let go elsewhere", "Reduced motion",
         [&] { drag(middle("Reduced motion"), middle("Scope")); }, "On"},
        {"a choice", "Knobs turn", [&] { window.click(on("Knobs turn", control, 0.3)); },
         "Sideways"},
    };
    for (const auto& [what, title, hand, becomes] : rows) {
        SCOPED_TRACE(what);
        hand();
        PictureWindow::settle();
        scene.frames(1);
        EXPECT_EQ(row(title).shown().value, becomes);
    }
    endWheel();
    EXPECT_EQ(open[static_cast<AUParameterAddress>(fadeIn)], 0);
}

TEST_F(Rows, CloseTheirSheetByAClickBesideItAndItsButton) {
    const auto reopened = [this] {
        press(',', juce::ModifierKeys::commandModifier);
        return sheet() != nullptr;
    };
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), &row("Fade in"));
    keys("B"); // round to the end
    EXPECT_TRUE(scene.findTitled("Close")->hasKeyboardFocus(false));
    window.setSize(1090, 700);
    press(Key::upKey);
    EXPECT_TRUE(row("Reduced motion").hasKeyboardFocus(false));
    EXPECT_TRUE(row("Reduced motion").showsFocus());
    press(Key::upKey);
    press(Key::downKey);
    EXPECT_TRUE(row("Reduced motion").hasKeyboardFocus(false));
    keys("BTT");
    EXPECT_TRUE(scene.findTitled("Close")->hasKeyboardFocus(false));
    window.click(middle("Close") - Point(200, 0)); // on the panel
    window.click(on("Fade out", name, 0.2));
    keys("");
    ASSERT_NE(sheet(), nullptr);
    EXPECT_TRUE(scene.findTitled("Close")->hasKeyboardFocus(false)); // a click leaves it there
    const std::function<void()> closes[] = {[&] {
                                                window.click({20, 400});
                                            },
                                            [&] { window.click(middle("Close")); },
                                            [&] { keys("BS"); }, [&] { keys("BR"); }};
    for (const auto& close : closes) {
        close();
        keys("");
        EXPECT_EQ(sheet(), nullptr);
        EXPECT_TRUE(reopened());
    }
}

} // namespace
} // namespace zephyra
