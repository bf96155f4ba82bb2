// The top's buttons and lines on a real instance: what they show, and what hands do there.
#include "hosting/gesture_listener.h"
#include "screens/model/help_texts.h"
#include "screens/model/top/edit_line.h"
#include "screens/model/top/music_line.h"
#include "screens/model/top/preset_line.h"
#include "screens/model/top/sample_line.h"
#include "screens/model/top/transport.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

namespace zephyra {
namespace {

using enum TransportButton;

struct Window : HostedPlugin {
    explicit Window(PluginKind kind = PluginKind::effect) : HostedPlugin(kind) {}

    /// A frame so many seconds after the one before.
    void frame(double seconds = 1.0 / 60.0) {
        time.now += time.elapsed = seconds;
        readFrameOf(source, time);
    }
    void press(TransportButton button) {
        transport.touch(button, ButtonTouch::down);
        transport.touch(button, ButtonTouch::inside);
        settle();
    }
    void settle(int blocks = 1) {
        render(blocks);
        frame();
    }
    ButtonLight light(TransportButton button) { return transport.shown().face(button).light; }

    ScreenSource source{*this};
    ScreenContext context{.source = source};
    FrameTime time;
    Transport transport{context};
    MusicLine music{context};
    PresetLine presetLine{context};
    SampleLine sample{context};
    EditLine edits{context};
};

TEST(TopTransport, PressesReachTheEngineAndAreGesturesOfAHost) {
    Window window;
    std::string heard;
    const GestureListener gestures(window.system(), [&](const AUParameterAutomationEvent& event) {
        heard += "=[]"[static_cast<int>(event.eventType)];
        heard += std::to_string(event.address);
    });
    std::string edits;
    window.context.beginEdit = [&](const std::string& name) { edits += name + " "; };
    window.settle();
    EXPECT_EQ(window.transport.shown().play, PlayState::playing); // as an effect begins
    EXPECT_EQ(window.transport.shown().help(live), helpText(HelpId::liveOn));
    EXPECT_EQ(window.light(live), ButtonLight::alive);
    window.press(freeze);
    EXPECT_EQ(window.light(freeze), ButtonLight::on);
    EXPECT_EQ(std::exchange(heard, {}), "[22=22]22");
    window.press(live);
    EXPECT_EQ(window.light(live), ButtonLight::off);
    EXPECT_EQ(std::exchange(heard, {}), "[23=23]23");
    EXPECT_EQ(edits, "Freeze LIVE ");
    window.press(play);
    EXPECT_EQ(window.transport.shown().play, PlayState::fadingOut);
    EXPECT_EQ(std::exchange(heard, {}), "[21=21]21");
    window.settle(100);
    EXPECT_EQ(window.transport.shown().play, PlayState::stopped);
    window.transport.touch(play, ButtonTouch::down);
    window.transport.touch(play, ButtonTouch::outside); // thought better of it
    window.settle();
    EXPECT_EQ(window.transport.shown().play, PlayState::stopped);
}

TEST(TopTransport, WaitsForTheBarAndBlinksWithTheBeat) {
    Window window(PluginKind::instrument);
    window.sync(true);
    window.HostedPlugin::transport = {
        .tempo = 120.0, .numerator = 4.0, .beats = 1.0, .moving = true};
    window.settle();
    EXPECT_EQ(window.light(play), ButtonLight::armed); // by the host's start
    window.press(play);
    EXPECT_EQ(window.light(play), ButtonLight::off);
    window.press(play);
    EXPECT_EQ(window.light(play), ButtonLight::armed);
    EXPECT_TRUE(window.transport.shown().face(play).isLit);
    window.settle(20); // the middle of a beat
    EXPECT_FALSE(window.transport.shown().face(play).isLit);
    window.settle(28);
    EXPECT_TRUE(window.transport.shown().face(play).isLit);
    window.context.settings.reducedMotion = true;
    window.frame();
    EXPECT_FALSE(window.transport.shown().face(play).isLit);
    window.settle(120); // past the bar
    EXPECT_EQ(window.transport.shown().play, PlayState::playing);

    window.press(rewind); // a short press rewinds at once
    EXPECT_EQ(window.light(rewind), ButtonLight::off);
    window.transport.touch(rewind, ButtonTouch::down);
    window.frame(Transport::kHold / 2);
    window.frame(0.0);
    EXPECT_EQ(window.light(rewind), ButtonLight::off);
    window.frame(Transport::kHold);
    window.transport.touch(rewind, ButtonTouch::inside);
    window.frame();
    EXPECT_EQ(window.light(rewind), ButtonLight::armed);
    EXPECT_EQ(window.transport.shown().value(rewind), "armed");
}

TEST(TopTransport, LiveIsUnavailableWithoutAnInput) {
    Window window(PluginKind::instrument);
    window.settle();
    EXPECT_FALSE(window.transport.shown().face(live).isEnabled);
    window.press(live);
    EXPECT_FALSE(window.transport.shown().isLive);
}

TEST(TopMusic, TellsTheHostsBarElseAnOwnTempo) {
    Window window;
    window.settle();
    EXPECT_EQ(window.music.shown().source(), "bpm, own");
    EXPECT_FALSE(window.music.shown().hasBars);
    const auto own = [&] {
        window.frame();
        return window.music.shown().tempo;
    };
    window.music.step(2);
    EXPECT_EQ(own(), "120.50");
    window.music.step(-4);
    EXPECT_EQ(own(), "119.50");
    window.music.beginDrag();
    window.music.drag(40.0);
    EXPECT_GT(std::stod(own()), 120.0);
    struct Row {
        PluginTransport told;
        std::string bar;
        int dots;
    };
    const Row rows[] = {{{.tempo = 96.0, .numerator = 4.0, .beats = 66.5}, "17.3", 4},
                        {{.numerator = 6.0, .denominator = 8.0, .beats = 2.6}, "1.6", 6},
                        {{.numerator = 3.0, .denominator = 4.0, .beats = -1.0}, "0.3", 3},
                        {{.numerator = 12.0, .denominator = 8.0, .beats = 0.0}, "1.1", 8}};
    for (const Row& row : rows) {
        window.HostedPlugin::transport = row.told;
        window.settle();
        EXPECT_EQ(window.music.shown().bar, row.bar);
        EXPECT_EQ(window.music.shown().beatCount, row.dots);
    }
    EXPECT_EQ(window.music.shown().tempo, "96.00");
    EXPECT_EQ(window.music.shown().source(), "bpm, host");
    const auto kept = [&] { return window.system().view.assignments.tempo.value(); };
    const auto before = kept();
    window.music.step(4); // what nobody would hear
    window.music.drag(-40.0);
    EXPECT_EQ(kept(), before);
}

TEST(TopPreset, StepsThroughBanksByArrowsAndMenu) {
    Window window(PluginKind::instrument);
    window.settle();
    EXPECT_EQ(window.presetLine.shown().title(), "No preset");
    window.presetLine.next();
    window.settle();
    const PresetShown first = window.presetLine.shown();
    EXPECT_EQ(first.name + " (" + first.bank + ")", window.programs().front().name);
    window.presetLine.previous();
    window.settle();
    const PresetShown last = window.presetLine.shown();
    EXPECT_EQ(last.name + " (" + last.bank + ")", window.programs().back().name);

    std::vector<MenuRow> rows = window.presetLine.menu(); // of the host's program
    EXPECT_EQ(std::ranges::find(rows, true, &MenuRow::isTicked)->text, last.name);
    const auto find = [&](const std::string& text) {
        const auto row = std::ranges::find(rows, text, &MenuRow::text);
        ASSERT_NE(row, rows.end()) << text;
        row->chosen();
        window.settle(5);
    };
    find(first.bank);
    EXPECT_TRUE(window.presetLine.takesMenu());
    EXPECT_FALSE(window.presetLine.takesMenu());
    EXPECT_EQ(window.presetLine.shown().name, last.name); // still what plays
    rows = window.presetLine.menu();
    find(first.name);
    EXPECT_EQ(window.presetLine.shown().name, first.name);
    window.presetLine.previous();
    window.settle(5);
    EXPECT_EQ(window.presetLine.shown(), last); // by the store's own list

    window.edits.press(EditButton::randomize);
    window.settle();
    EXPECT_EQ(window.presetLine.shown().line(), last.bank + ", changed");
    EXPECT_EQ(window.edits.help(EditButton::undo), "Undo Randomise (Ctrl+Z)");
    window.edits.press(EditButton::undo);
    window.settle();
    EXPECT_EQ(window.presetLine.shown(), last);
    EXPECT_EQ(window.edits.help(EditButton::redo), "Redo Randomise (Ctrl+Shift+Z)");
    window.edits.press(EditButton::compareB);
    window.settle();
    EXPECT_EQ(window.presetLine.shown(), last);
}

TEST(TopEdits, ReachTheHistoryAndBothVersions) {
    Window window;
    window.settle();
    const auto on = [&](EditButton button) { return window.edits.face(button).light; };
    EXPECT_FALSE(window.edits.face(EditButton::undo).isEnabled);
    EXPECT_EQ(on(EditButton::compareA), ButtonLight::on);
    const float before = window.value(ControlId::density);
    window.edits.press(EditButton::compareB);
    window.edits.randomizeMenu().back().chosen(); // all the way
    EXPECT_TRUE(window.edits.randomizeMenu().back().isTicked);
    window.settle();
    const float drawn = window.value(ControlId::density);
    EXPECT_NE(drawn, before);
    EXPECT_EQ(on(EditButton::compareB), ButtonLight::on);
    window.edits.press(EditButton::compareA);
    window.settle();
    EXPECT_EQ(window.value(ControlId::density), before);
    window.edits.press(EditButton::undo); // back in B
    window.settle();
    EXPECT_EQ(window.value(ControlId::density), drawn);
    EXPECT_EQ(window.edits.help(EditButton::redo), "Redo Compare A (Ctrl+Shift+Z)");
}

TEST(TopSample, NamesWhatGrainsAreCutFrom) {
    EXPECT_EQ(soundFacts(12.04, 44100.0, 1), "12.0 s   44.1 kHz   mono");
    EXPECT_EQ(soundFacts(59.96, 0.0, 0), "1:00 min");
    EXPECT_EQ(soundFacts(130.0, 0.0, 0), "2:10 min");
    EXPECT_EQ(soundFacts(3600.0, 48000.0, 3), "1:00:00 h   48 kHz   3 channels");
    EXPECT_EQ(soundFacts(3725.0, 22050.0, 2), "1:02:05 h   22.05 kHz   stereo");
    Window window;
    window.settle();
    EXPECT_EQ(window.sample.shown().name, "Live input");
    window.press(live);
    window.loadSample(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Blackbird.mp3");
    window.settle(5);
    EXPECT_EQ(window.sample.shown().name, "Blackbird.mp3");
    EXPECT_EQ(window.sample.shown().facts, "13.0 s   44.1 kHz   mono");
}

TEST(TopSample, LeadsBackFromLiveSoundToTheFile) {
    Window window;
    std::string asked;
    window.context.loadFile = [&] { asked += "load "; };
    window.context.locateSample = [&] { asked += "locate "; };
    const auto offers = [&] {
        std::string texts;
        for (const MenuRow& row : window.sample.menu()) texts += row.text + "; ";
        return texts;
    };
    const std::string load = "Load a sound or a bank; ", back = "Back to Blackbird.mp3; ";
    window.settle();
    EXPECT_EQ(offers(), load); // no file behind LIVE
    window.loadSample(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Blackbird.mp3");
    window.settle(5);
    EXPECT_EQ(offers(), load);
    for (const bool goesOff : {false, true}) {
        window.press(live);
        if (goesOff) window.press(live);
        EXPECT_EQ(window.sample.shown().name, goesOff ? "Captured sound" : "Live input");
        EXPECT_EQ(offers(), back + load);
        window.sample.menu().front().chosen();
        window.settle();
        EXPECT_EQ(window.sample.shown().name, "Blackbird.mp3");
        EXPECT_FALSE(window.transport.shown().isLive);
    }
    {
        const auto held = window.main();
        SampleReference lost;
        lost.path = "/nowhere/Lost Bells.wav";
        window.system().view.sampleLoader.loadReference(lost, SoundUse::play);
    }
    window.settle(5);
    EXPECT_EQ(offers(), "Locate Lost Bells.wav; ");
    window.loadSample(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Zephyra_Sample08.mp3");
    window.edits.press(EditButton::undo); // which is not to read it
    window.settle(5);
    EXPECT_EQ(offers(), "Locate Lost Bells.wav; ");
    window.press(live);
    window.press(live);
    EXPECT_EQ(offers(), "Locate Lost Bells.wav; Back to the sound that was loaded last; " + load);
    for (const MenuRow& row : window.sample.menu()) row.chosen();
    EXPECT_EQ(asked, "locate load ");
}

} // namespace
} // namespace zephyra
