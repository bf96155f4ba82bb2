// Hands on the whole window, as a display would bring them: what moves, what hosts hear, and what
// reaches the engine.
#include "controls/knob.h"
#include "tests/screens/window/window_scene.h"
#include "tests/support/stream_probe.h"

#include <gtest/gtest.h>

#include <thread>

namespace zephyra {
namespace {

using enum ControlId;
using Key = juce::KeyPress;
using Point = juce::Point<float>;
using Values = std::array<float, kControlCount>;

constexpr double kFewBlocks = 0.05; // seconds

struct Hands : testing::Test {
    Hands() {
        plugin.setGestureListener([this](const AUParameterAutomationEvent& event) {
            const auto type = event.eventType;
            open[event.address] += type == AUParameterAutomationEventType::touch     ? 1
                                   : type == AUParameterAutomationEventType::release ? -1
                                                                                     : 0;
            values += type == AUParameterAutomationEventType::value;
        });
        scene.asMain([](AudioUnitViewController& view) {
            view.instance().notifications.post(MOK_KNOB::kInteractionStyleNotice,
                                               static_cast<int>(kVertical));
        });
        scene.play(kFewBlocks);
    }
    ~Hands() override {
        plugin.setGestureListener({});
        for (const auto& [address, count] : open) EXPECT_EQ(count, 0) << address;
    }

    /// As the unit has them; what hosts do not see, as the stream has it.
    Values all() {
        Values found{};
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i] = i < kParameterCount
                           ? plugin.parameter(i)
                           : plugin.system().stream().linear(static_cast<ControlId>(i));
        return found;
    }
    /// What differs from before.
    std::vector<ControlId> moved(const Values& before) {
        scene.play(kFewBlocks);
        const Values now = all();
        std::vector<ControlId> found;
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] != before[i]) found.push_back(static_cast<ControlId>(i));
        return found;
    }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    AUValue value(ControlId id) { return plugin.parameter(static_cast<AUParameterAddress>(id)); }
    StreamProbe::Fields engine() { return StreamProbe::fields(plugin.system().stream().engine()); }
    Point at(ControlId id) { return scene.middleOf(scene.knob(id)); }
    Point stageAt(double x, double y) {
        const StageArea& stage = *scene.find<StageArea>();
        return {static_cast<float>(stage.getX() + x * stage.scene().width()),
                static_cast<float>(stage.getY() + y * stage.scene().height())};
    }
    double shownSpan() { return scene.find<StageArea>()->scene().view.span(); }
    double scan() { return plugin.system().stream().getTimePhasor(); }
    Point middle(std::string_view title) {
        const juce::Component* const part = scene.findTitled(title);
        EXPECT_NE(part, nullptr) << title;
        return part ? scene.middleOf(*part) : Point();
    }
    /// A wheel's gesture ends some time behind its last notch.
    void endWheel() {
        std::this_thread::sleep_for(std::chrono::milliseconds(450));
        scene.frames(1);
    }
    ValueField* field() { return scene.find<ValueField>(); }
    void type(const std::string& text) {
        for (const char one : text) window.key(Key(one, {}, static_cast<juce::juce_wchar>(one)));
    }
    void press(int key, juce::ModifierKeys keys = {}) {
        window.key(Key(key, keys, 0));
        PictureWindow::settle();
    }
    juce::StringArray file(const fs::path& path) { return {juce::String(path.string())}; }
    fs::path sound() { return plugin.system().stream().sampleReference().path; }
    const Alert* alert() { return plugin.system().instance.alerts.current(); }

    WindowScene held{PluginKind::standalone};
    PluginInstance& plugin = held.plugin;
    PictureScene& scene = held.scene;
    PictureWindow& window = held.scene.window();
    std::map<AUParameterAddress, int> open; // gestures that have not ended
    int values = 0;
};

TEST_F(Hands, TurnEachKnobAloneWithTheWheelAndMoreFinelyWithShift) {
    const juce::ModifierKeys shift(juce::ModifierKeys::shiftModifier);
    int knobs = 0;
    for (const PathCell& cell : pathCells()) {
        if (cell.kind != PathCellKind::knob || !scene.knob(cell.id).isShowing()) continue;
        SCOPED_TRACE(cell.name);
        ++knobs;
        const float first = knob(cell.id).value();
        const Values before = all();
        const double way = first < knob(cell.id).maximumValue() ? 1.0 : -1.0; // away from its end
        window.wheel(at(cell.id), way);
        EXPECT_EQ(moved(before), std::vector{cell.id});
        const float coarse = knob(cell.id).value() - first;
        window.hold(shift);
        window.wheel(at(cell.id), way);
        window.hold({});
        EXPECT_NEAR((knob(cell.id).value() - first - coarse) / coarse, 0.1f, 0.01f);
    }
    EXPECT_EQ(knobs, 19);
    endWheel();
}

TEST_F(Hands, DragWhatTheEngineThenPlays) {
    struct Drag {
        ControlId id;
        float StreamProbe::Fields::*heard;
    };
    for (const auto& [id, heard] :
         {Drag{density, &StreamProbe::Fields::density},
          Drag{length, &StreamProbe::Fields::grainLength},
          Drag{pitch, &StreamProbe::Fields::playbackRate}, Drag{width, &StreamProbe::Fields::width},
          Drag{jittering, &StreamProbe::Fields::jitter}}) {
        SCOPED_TRACE(controlRange(id).name);
        const Values before = all();
        const float engineBefore = engine().*heard;
        const int told = values;
        window.press(at(id));
        window.dragTo(at(id) + Point(0, -20));
        window.dragTo(at(id) + Point(0, -60));
        EXPECT_EQ(open[static_cast<AUParameterAddress>(id)], 1);
        window.release();
        EXPECT_EQ(moved(before), std::vector{id});
        EXPECT_GT(engine().*heard, engineBefore);
        EXPECT_GT(values, told);
        press('z', juce::ModifierKeys::commandModifier);
        EXPECT_TRUE(moved(before).empty()); // one drag is one step back
        EXPECT_EQ(engine().*heard, engineBefore);
    }
    window.press(at(width));
    window.dragTo(at(width) + Point(0, -40));
    window.release();
    const Values dragged = all();
    window.click(at(width) + Point(0, -22), 2); // on its arc
    EXPECT_EQ(moved(dragged), std::vector{width});
    EXPECT_FLOAT_EQ(knob(width).value(), 0.25f);
}

TEST_F(Hands, TypeAValueWhileKeysPlayNothing) {
    window.click(scene.numberOf(density));
    ASSERT_NE(field(), nullptr);
    EXPECT_TRUE(field()->hasKeyboardFocus(false));
    type("2f00 r"); // F, R and Space are letters here
    EXPECT_EQ(field()->getText(), "2f00 r");
    scene.play(kFewBlocks);
    EXPECT_EQ(value(playStop), 0.0f);
    EXPECT_EQ(value(freeze), 0.0f);
    press(Key::returnKey); // no value: to be mended
    ASSERT_NE(field(), nullptr);
    field()->selectAll();
    type("200 Hz");
    press(Key::returnKey);
    EXPECT_EQ(field(), nullptr);
    scene.play(kFewBlocks);
    EXPECT_NEAR(engine().density, 200.0f, 1e-3f);
    window.click(scene.numberOf(density));
    type("50");
    press(Key::escapeKey);
    EXPECT_EQ(field(), nullptr);
    EXPECT_NEAR(engine().density, 200.0f, 1e-3f);
    type(" "); // the field is gone
    EXPECT_GT(scene.play(0.3), 0.01f);
}

TEST_F(Hands, PlayWithKeysAndButtons) {
    window.click(middle("Play"));
    EXPECT_GT(scene.play(0.5), 0.01f);
    const double before = scan();
    type("r");
    scene.play(kFewBlocks);
    EXPECT_LT(scan(), before);
    EXPECT_FALSE(window.key(Key('q', {}, 'q'))); // the host's
    type(" ");
    scene.play(0.5);
    struct Press {
        const char* title; // of the button
        char key;
        ControlId id;
    };
    for (const auto& [title, key, id] :
         {Press{"Play", ' ', playStop}, Press{"Freeze", 'f', freeze}, Press{"LIVE", 'l', live}}) {
        SCOPED_TRACE(title);
        EXPECT_EQ(value(id), 0.0f);
        type(std::string(1, key));
        scene.play(kFewBlocks);
        EXPECT_EQ(value(id), 1.0f);
        window.click(middle(title));
        scene.play(kFewBlocks);
        EXPECT_EQ(value(id), 0.0f);
    }
}

TEST_F(Hands, ScrubZoomAndMoveTheRegion) {
    window.press(stageAt(0.5, 0.5));
    scene.play(kFewBlocks);
    EXPECT_NEAR(scan(), 0.5, 0.01);
    window.dragTo(stageAt(0.7, 0.5));
    scene.play(kFewBlocks);
    EXPECT_NEAR(scan(), 0.7, 0.01);
    window.release();

    window.wheel(stageAt(0.25, 0.5), 2.0);
    scene.frames(1);
    EXPECT_NEAR(shownSpan(), 1.0 / 1.25 / 1.25, 1e-6);
    window.click(stageAt(0.25, 0.5), 2);
    scene.frames(1);
    EXPECT_EQ(shownSpan(), 1.0);

    const Point start = middle("Region start");
    window.press(start);
    window.dragTo(start + Point(260, 0)); // of 1040
    window.release();
    scene.play(kFewBlocks);
    EXPECT_NEAR(plugin.system().stream().regionStart(), 0.25f, 1e-3f);
    EXPECT_NEAR(engine().scanStart, 0.25f, 1e-3f);
}

TEST_F(Hands, DropASoundAndWhatIsNone) {
    const fs::path bird = fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Blackbird.mp3";
    ASSERT_TRUE(window.drop(file(bird), stageAt(0.5, 0.5)));
    scene.play(0.1);
    EXPECT_EQ(sound(), bird);
    window.key(Key(' ', {}, ' '));
    EXPECT_GT(scene.play(0.5), 0.01f);

    const fs::path text = held.folder / "shopping.wav";
    writeText(text, "milk");
    window.drop(file(text), stageAt(0.5, 0.5));
    scene.play(0.1);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message.find('\n'), std::string::npos);
    EXPECT_THAT(alert()->message, testing::HasSubstr("shopping.wav"));
    EXPECT_EQ(sound(), bird);
    EXPECT_GT(scene.play(0.3), 0.01f); // the old one plays on

    // While it asks, the window takes no more, and no keys.
    ASSERT_NE(scene.find<AlertDialog>(), nullptr);
    window.drop(file(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Zephyra_Sample08.mp3"),
                stageAt(0.5, 0.5));
    type(" ");
    window.click(middle("Play"));
    scene.play(0.1);
    EXPECT_EQ(sound(), bird);
    EXPECT_EQ(value(playStop), 1.0f);
    press(Key::returnKey);
    scene.frames(2);
    EXPECT_EQ(scene.find<AlertDialog>(), nullptr);
    EXPECT_EQ(alert(), nullptr);
    type(" ");
    scene.play(kFewBlocks);
    EXPECT_EQ(value(playStop), 0.0f);
}

TEST_F(Hands, DropABankWhichIsThenChosen) {
    fs::copy_file(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Bird Machines.zephyra",
                  held.folder / "My Birds.zephyra");
    ASSERT_TRUE(window.drop(file(held.folder / "My Birds.zephyra"), at(width)));
    scene.play(0.1);
    const auto& presets = plugin.system().view.presets;
    EXPECT_EQ(presets.getCurrentSelectedBankName(), "My Birds.zephyra");
    EXPECT_FALSE(presets.table(QuickPresetsManager::kPresetsTable).sections.front().rows.empty());
}

TEST_F(Hands, ReachEverythingWithTab) {
    std::map<juce::Component*, int> reached;
    const auto want = [&](auto&& self, juce::Component& all) -> void {
        for (juce::Component* const child : all.getChildren()) {
            if (!child->isVisible()) continue;
            if (child->getWantsKeyboardFocus()) reached[child] = 0;
            self(self, *child);
        }
    };
    want(want, scene.screen());
    EXPECT_GT(reached.size(), 40u);
    for (std::size_t i = 0; i < reached.size(); ++i) {
        press(Key::tabKey);
        ++reached[juce::Component::getCurrentlyFocusedComponent()];
    }
    for (const auto& [part, times] : reached) EXPECT_EQ(times, 1) << (part ? part->getTitle() : "");
}

TEST_F(Hands, PaintNothingWhereNothingMoves) {
    const auto asked = [&](bool renders) {
        window.takeRepaints();
        if (renders)
            scene.play(1.0);
        else
            scene.frames(60);
        return window.takeRepaints();
    };
    EXPECT_EQ(asked(false), 0);
    plugin.setParameter(static_cast<AUParameterAddress>(playStop), 1.0f);
    EXPECT_GT(asked(true), 55);
    plugin.setParameter(static_cast<AUParameterAddress>(playStop), 0.0f);
    scene.play(6.0); // until what ended has faded, and meters are down
    EXPECT_EQ(asked(false), 0);
}

} // namespace
} // namespace zephyra
