// Each key of what has the keyboard, as the documents list them.
#include "engine/envelope_menu.h"
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Keys : Hands {
    struct Row {
        const char* title; ///< of what has the keyboard
        int key;
        bool fine;
        double becomes;
    };
    void focus(const char* title) {
        juce::Component* const part = scene.findTitled(title);
        ASSERT_NE(part, nullptr) << title;
        part->grabKeyboardFocus();
    }
    /// From wherever before brings it, each key alone.
    void check(std::initializer_list<Row> rows, const std::function<void()>& before,
               const std::function<double()>& value) {
        for (const auto& [title, key, fine, becomes] : rows) {
            before();
            scene.frames(2);
            focus(title);
            window.key(Key(key, fine ? juce::ModifierKeys::shiftModifier : 0,
                           static_cast<juce::juce_wchar>(key == '0' ? key : 0)));
            PictureWindow::settle();
            scene.play(kFewBlocks);
            EXPECT_NEAR(value(), becomes, 2e-5)
                << title << ' ' << juce::KeyPress(key).getTextDescription();
        }
    }
};

TEST_F(Keys, MoveScanAndRegionAndZoom) {
    StageArea& stage = *scene.find<StageArea>();
    const auto begin = [&](double zoomed) {
        return [&stage, this, zoomed] {
            scene.asMain([](auto& view) { view._GRANULATOR_STREAM.setRegion(0.25f, 0.75f); });
            stage.hands().resetZoom();
            if (zoomed > 0.0) stage.hands().wheel(0.5, zoomed, 10.0);
            stage.hands().putScan(0.5);
        };
    };
    const double step = StageHands::kArrowStep, fine = step * StageHands::kFineShare;
    const double page = 10.0 * step;
    check({{"Scan", Key::rightKey, false, 0.5 + step},
           {"Scan", Key::leftKey, false, 0.5 - step},
           {"Scan", Key::leftKey, true, 0.5 - fine},
           {"Scan", Key::pageUpKey, false, 0.5 + page},
           {"Scan", Key::pageDownKey, false, 0.5 - page},
           {"Scan", Key::homeKey, false, 0.25},
           {"Scan", Key::endKey, false, 0.75}},
          begin(0.0), [this] { return scan(); });
    check({{"Scan", Key::rightKey, false, 0.5 + 0.8 * step}}, begin(1.0),
          [this] { return scan(); });
    check({{"Scan", Key::upKey, false, 0.64},
           {"Scan", Key::downKey, false, 1.0},
           {"Scan", '0', false, 1.0}},
          begin(1.0), [this] { return shownSpan(); });
    check({{"Scan", Key::upKey, false, 0.5 - 0.5 * 0.64}}, begin(1.0),
          [&] { return stage.scene().view.first(); }); // around the scan
    check({{"Region start", Key::rightKey, false, 0.25 + step},
           {"Region start", Key::leftKey, false, 0.25 - step},
           {"Region start", Key::leftKey, true, 0.25 - fine},
           {"Region start", Key::pageDownKey, false, 0.25 - page},
           {"Region start", Key::homeKey, false, 0.0},
           {"Region start", Key::endKey, false, 1.0}},
          begin(0.0), [this] { return double{plugin.system().stream().regionStart()}; });
}

TEST_F(Keys, TurnKnobsRowsAndEnvelopes) {
    const auto middle = [this](ControlId id) {
        return [this, id] {
            scene.asMain([&](auto&) {
                knob(id).setValue((knob(id).minimumValue() + knob(id).maximumValue()) / 2);
            });
        };
    };
    const auto place = [this](ControlId id) {
        return [this, id] { return double{knob(id).valueNorm()}; };
    };
    check({{"Width", Key::pageDownKey, false, 0.3},
           {"Width", Key::leftKey, false, 0.48},
           {"Width", Key::leftKey, true, 0.498},
           {"Width", Key::homeKey, false, 0.0},
           {"Width", Key::endKey, false, 1.0},
           {"Width", Key::deleteKey, false, 0.25}},
          middle(width), place(width));
    endWheel();
    focus("Width");
    window.key(Key('-', {}, '-'));
    ASSERT_NE(field(), nullptr);
    EXPECT_EQ(field()->getText(), "-");
    press(Key::escapeKey);
    EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false)); // keys go on

    press(',', juce::ModifierKeys::commandModifier);
    const double half = std::sqrt(0.5); // short times have more room
    const auto share = [&](double by) { return (half + by) * (half + by); };
    check({{"Fade in", Key::rightKey, false, share(0.02)},
           {"Fade in", Key::leftKey, false, share(-0.02)},
           {"Fade in", Key::leftKey, true, share(-0.002)},
           {"Fade in", Key::pageDownKey, false, share(-0.2)},
           {"Fade in", Key::deleteKey, false, 0.005}},
          middle(fadeIn), place(fadeIn));
    endWheel();
    press(Key::escapeKey);
    EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false)); // as before

    const auto pick = [&](std::initializer_list<int> keys) {
        scene.asMain([](auto& view) { view._GRANULATOR_STREAM.pickEnvelope(0); });
        scene.frames(1);
        focus("Grain Envelope");
        press(Key::returnKey);
        for (const int key : keys) press(key);
        return plugin.system().stream().envelope();
    };
    const std::size_t row = (kEnvelopeMenu.size() + 1) / 2, last = kEnvelopeMenu.size() - 1;
    EXPECT_EQ(pick({Key::rightKey, Key::rightKey, Key::leftKey, Key::returnKey}), 1u);
    EXPECT_EQ(pick({Key::leftKey, Key::spaceKey}), last); // round
    EXPECT_EQ(pick({Key::downKey, Key::returnKey}), row);
    EXPECT_EQ(pick({Key::downKey, Key::rightKey, Key::upKey, Key::returnKey}), 1u);
    EXPECT_EQ(pick({Key::rightKey, Key::escapeKey}), 0u);
    EXPECT_EQ(scene.find<EnvelopePicker>(), nullptr);
}

} // namespace
} // namespace zephyra
