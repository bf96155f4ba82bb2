// Hands on the whole window: what moves, what hosts hear, and what reaches the engine.
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

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
        const int valuesBefore = values;
        window.press(at(id));
        window.dragTo(at(id) + Point(0, -20));
        window.dragTo(at(id) + Point(0, -60));
        EXPECT_EQ(open[static_cast<AUParameterAddress>(id)], 1);
        window.release();
        EXPECT_EQ(moved(before), std::vector{id});
        EXPECT_GT(engine().*heard, engineBefore);
        EXPECT_GT(values, valuesBefore);
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

TEST_F(Hands, PlayWithKeysAndButtons) {
    window.click(middle("Play"));
    EXPECT_GT(scene.play(0.5), 0.01f);
    const double before = scan();
    type("r");
    scene.play(kFewBlocks);
    EXPECT_LT(scan(), before);
    EXPECT_FALSE(window.key(Key('q', {}, 'q'))); // the host's
    EXPECT_FALSE(window.key(Key('f', juce::ModifierKeys::altModifier, 'f')));
    int asked = 0;
    scene.screen().context().loadFile = [&] { ++asked; };
    press('o', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(asked, 1);
    type("f");
    EXPECT_EQ(plugin.system().view.edits.undoName(), "Freeze");
    for (const auto& [key, frozen] : {std::pair{'z', 0.0f}, {'y', 1.0f}, {'z', 0.0f}}) {
        press(key, juce::ModifierKeys::commandModifier);
        scene.play(kFewBlocks);
        EXPECT_EQ(value(freeze), frozen) << key;
    }
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
    const StageView& view = scene.find<StageArea>()->scene().view;
    EXPECT_NEAR(view.placeOf(0.25), 0.25, 1e-6); // what is under the pointer stays there
    const double stands = scan();
    window.hold(juce::ModifierKeys::shiftModifier);
    for (const auto& [pans, place] :
         {std::pair{std::function([&] { window.wheel(stageAt(0.25, 0.5), -1.0); }), 0.15},
          {[&] {
               window.press(stageAt(0.5, 0.5));
               window.dragTo(stageAt(0.6, 0.5));
               window.release();
           },
           0.25}}) {
        pans();
        scene.frames(1);
        EXPECT_NEAR(view.placeOf(0.25), place, 1e-3);
    }
    window.hold({});
    rightClick(stageAt(0.1, 0.5), stageAt(0.9, 0.5));
    scene.play(kFewBlocks);
    EXPECT_EQ(scan(), stands);
    window.click(stageAt(0.25, 0.5), 2);
    scene.frames(1);
    EXPECT_EQ(shownSpan(), 1.0);

    const Point start = middle("Region start");
    rightClick(start, start + Point(260, 0));
    EXPECT_EQ(plugin.system().stream().regionStart(), 0.0f);
    window.press(start);
    window.dragTo(start + Point(260, 0)); // of 1040
    window.release();
    scene.play(kFewBlocks);
    EXPECT_NEAR(plugin.system().stream().regionStart(), 0.25f, 1e-3f);
    EXPECT_NEAR(engine().scanStart, 0.25f, 1e-3f);
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
    juce::Component* first = nullptr;
    const std::size_t stops = reached.size();
    for (std::size_t i = 0; i < stops; ++i) {
        press(Key::tabKey);
        if (i == 0) first = juce::Component::getCurrentlyFocusedComponent();
        ++reached[juce::Component::getCurrentlyFocusedComponent()];
    }
    press(Key::tabKey); // and round, without a stop that shows no frame
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), first);
    EXPECT_TRUE(dynamic_cast<ScreenControl&>(*first).showsFocus());
    for (const auto& [part, times] : reached) EXPECT_EQ(times, 1) << (part ? part->getTitle() : "");
}

TEST_F(Hands, SwitchTracesOffAndLeaveNothingOfThem) {
    window.click(middle("Play"));
    scene.play(0.5);
    for (const char* const title : {"Spectrum", "Scope"}) {
        const auto traced = [&] { // pixels that are lighter than grid and letters
            const juce::Component& strip = *scene.findTitled(title);
            const auto box = window.getLocalArea(&strip, strip.getLocalBounds()).reduced(2);
            const juce::Image picture = window.picture();
            int found = 0;
            for (int y = box.getY(); y < box.getBottom(); ++y)
                for (int x = box.getX(); x < box.getRight(); ++x)
                    found += picture.getPixelAt(x, y).getBlue() > 165;
            return found;
        };
        EXPECT_GT(traced(), 20) << title;
        window.click(middle(title));
        scene.play(0.1);
        EXPECT_EQ(traced(), 0) << title;
    }
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
    for (int i = 0; i < 20 && asked(false) > 0;
         ++i) // from workers: the sound's picture, the share of the CPU
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(asked(false), 0);
    plugin.setParameter(static_cast<AUParameterAddress>(playStop), 1.0f);
    EXPECT_GT(asked(true), 55);
    plugin.setParameter(static_cast<AUParameterAddress>(playStop), 0.0f);
    scene.play(6.0); // until what ended has faded, and meters are down
    EXPECT_EQ(asked(false), 0);
    press(',', juce::ModifierKeys::commandModifier);
    scene.frames(2);
    EXPECT_EQ(asked(false), 0);
}

TEST_F(Hands, SeeAWindowOpenWithoutALeapOfItsClock) {
    struct Listener final : ScreenPart {
        void read(AudioUnitViewController&, const FrameTime& time) override {
            elapsed.push_back(time.elapsed);
        }
        std::vector<double> elapsed;
    } listener;
    ZephyraScreen another(scene.plugin());
    another.context().source.add(listener);
    for (const double now : {86400.0, 86400.5}) another.frame(now);
    EXPECT_EQ(listener.elapsed, (std::vector{0.0, 0.5}));
    another.context().source.remove(listener);
}

TEST(CompactWindow, LoadsAnotherSoundByItsNameOnTheStage) {
    WindowScene held(PluginKind::standalone, {800, 520});
    int asked = 0;
    held.scene.screen().context().loadFile = [&] { ++asked; };
    held.scene.play(0.05);
    const SoundName* const name = held.scene.find<SoundName>();
    ASSERT_TRUE(name && name->isVisible());
    held.scene.window().click(held.scene.middleOf(*name));
    EXPECT_EQ(asked, 1);
    const auto before = name->getBounds(); // where the region starts
    held.scene.screen().context().source.asMain(
        [](AudioUnitViewController& view) { view._GRANULATOR_STREAM.setRegion(0.5f, 1.0f); });
    held.scene.play(0.05);
    EXPECT_GT(name->getX(), before.getRight());
    EXPECT_EQ(name->getWidth(), before.getWidth());
    held.scene.plugin().loadSample(ZEPHYRA_SOURCE_DIR "/resources/Blackbird.mp3");
    held.scene.play(0.5);
    EXPECT_LT(name->getWidth(), before.getWidth());
}

} // namespace
} // namespace zephyra
