// Host and controls: who moves whom, who is told, and what a state keeps.

#include "hosting/gesture_filter.h"
#include "tests/support/hosted_unit.h"
#include "tests/support/stream_probe.h"

namespace zephyra {
namespace {

using enum ControlId;

/// What a host sees set, as "address=value" with a sign for touch (+) and release (-).
struct ToldHost {
    explicit ToldHost(AUParameterTree& tree) : filter(tree, into(gestures)) {
        tree.tokenByAddingParameterAutomationObserver(into(sets));
    }
    static GestureFilter::Forward into(std::string& text) {
        return [&text](const AUParameterAutomationEvent& event) {
            text += " +-"[static_cast<int>(event.eventType)] + std::to_string(event.address) + "=" +
                    std::to_string(static_cast<int>(event.value));
        };
    }
    std::string sets, gestures; ///< all, and what a hand did
    GestureFilter filter;
};

TEST(Automation, MovesItsControlBeforeTheNextBlockAndTellsTheHostNothing) {
    HostedUnit hosted(component_type::effect);
    ToldHost told(*hosted.ready().unit->parameterTree());
    hosted.queue(dryWet, 75.0f);
    hosted.queue(echoSwitch, 1.0f);
    hosted.queue(playStop, 1.0f);
    hosted.render(512);
    std::thread([&] { hosted.parameter(amplitude).setValue(0.25f); }).join();
    hosted.view.refreshParameters(); // overwrites nothing that is on its way
    EXPECT_EQ(std::exchange(told.sets, {}), " 1=0");
    hosted.render(0);
    EXPECT_EQ(hosted.unit->record()._inputDryWetInv.load(), 0.5f);
    EXPECT_TRUE(hosted.stream.engine().echoOn && hosted.stream.isPlaying());
    EXPECT_EQ(std::tuple(hosted.stream.engine().currentLevel(), told.sets), std::tuple(0.25f, ""));
}

TEST(Automation, ThatAButtonRefusesIsTakenBackAtTheHost) {
    HostedUnit hosted(component_type::instrument);
    hosted.stream.setDisplayed(scanSync, 1.0f);
    ToldHost told(*hosted.ready().unit->parameterTree());
    hosted.queue(live, 1.0f);
    hosted.queue(playStop, 1.0f); // is armed only, which counts as on
    hosted.render(512);
    hosted.render(0);
    EXPECT_EQ(told.sets, " 23=0");
    EXPECT_TRUE(hosted.stream.isArmed());
}

TEST(Controls, AreWhatTheHostSeesAndTellItEachGestureOnceWhileResourcesAreThere) {
    HostedUnit hosted(component_type::effect);
    EXPECT_EQ(hosted.parameter(dryWet).value(), 50.0f);
    EXPECT_EQ(hosted.parameter(density).facts().flags, 0xC0400000);
    EXPECT_EQ(hosted.parameter(jittering).facts().flags, 0xC0000000);
    EXPECT_EQ(hosted.view.fadeTimesText(),
              "Fade In/Out (Play/Pause) Time: [In: 0.050 secs  Out: 0.250 secs]");
    ToldHost told(*hosted.ready().ready().unit->parameterTree()); // without second handlers
    MOK_KNOB& knob = hosted.view._inputDryWetKnob;
    knob.setValue(20);
    knob.sendEventValueChanged();
    knob.resetsDefault();
    knob.beginTracking({});
    knob.cancelTracking();
    hosted.stream.setLinear(pitch, 3);
    EXPECT_EQ(told.sets, " 3=20+3=50 3=50-3=50+3=50-3=50 9=3");
    EXPECT_EQ(told.gestures, "+3=50 3=50-3=50+3=50-3=50");
    hosted.host.stop();
    knob.resetsDefault();
    EXPECT_EQ(told.sets.size(), 34u);
}

TEST(Switches, AreGesturesOfAHandAndOfNobodyElse) {
    using namespace control_event;
    HostedUnit hosted(component_type::effect);
    ToldHost told(*hosted.ready().unit->parameterTree());
    StreamControls& controls = hosted.stream.controls;
    auto& midi = hosted.view.midiManager;
    const auto take = [&] {
        hosted.instance.runLoop.runPosted(); // a start shows itself
        return std::exchange(told.gestures, {});
    };
    const std::pair<Button*, const char*> buttons[] = {
        {&controls._playToggle, "21"}, {&controls._freeze, "22"}, {&controls._enableLIVE, "23"}};
    for (const auto& [button, address] : buttons) {
        const std::string a = address;
        const bool wasOn = button == &controls._enableLIVE; // of a fresh effect
        const std::string on = wasOn ? "0" : "1", off = wasOn ? "1" : "0";
        EXPECT_EQ(take(), "");
        button->sendActionsForControlEvents(touchUpInside);
        EXPECT_EQ(take(), "+" + a + "=" + on + " " + a + "=" + on + "-" + a + "=" + on);
        button->sendActionsForControlEvents(touchDown);
        button->sendActionsForControlEvents(touchUpOutside); // slipped off
        EXPECT_EQ(take(), "+" + a + "=" + on + "-" + a + "=" + on);
        button->sendActionsForControlEvents(touchDown);
        button->sendActionsForControlEvents(touchUpInside);
        EXPECT_EQ(take(), "+" + a + "=" + on + " " + a + "=" + off + "-" + a + "=" + off);
        midi.bind({.trigger = {MidiSource::note, 30}, .control = button});
    }
    midi.bind({.trigger = {MidiSource::note, 30}, .control = &controls._echoSwitch});
    controls._freeze.sendActionsForControlEvents(touchDown);
    EXPECT_EQ(take(), "+22=0");
    hosted.midi({0x90, 30, 1});
    hosted.render(512);
    EXPECT_TRUE(controls._echoSwitch.isOn() && controls._freeze.tag == 1);
    EXPECT_EQ(take(), " 22=1"); // under the finger, which goes on holding it
    controls._freeze.sendActionsForControlEvents(touchCancel);
    EXPECT_EQ(take(), "-22=1");
    for (const auto& [button, address] : buttons) {
        const auto id = static_cast<ControlId>(std::atoi(address));
        hosted.queue(id, hosted.stream.linear(id) == 0.0f ? 1.0f : 0.0f); // the host itself
    }
    hosted.render(512);
    hosted.view.restoreStateProc({{"Freeze_0", true}, {"LIVE_0", false}, {"EchoSwitch_0", false}});
    EXPECT_EQ(take(), "");
    hosted.host.stop();
    controls._freeze.sendActionsForControlEvents(touchUpInside);
    EXPECT_EQ(take(), ""); // nobody would end it
}

TEST(Scan, StandsBehindTheInputOfAFreshEffectUnlessItWasSetBefore) {
    const std::tuple<const char*, void (*)(HostedUnit&), double, float, float> rows[] = {
        {"nothing", [](HostedUnit&) {}, 44100, 432175.0f / 441000, 0},
        {"nothing at another rate", [](HostedUnit&) {}, 96000, 421795.0f / 441000, 0},
        {"position", [](HostedUnit& h) { h.stream.setScrubNormalizedValue(0.5f); }, 44100, 0.5f, 1},
        {"region", [](HostedUnit& h) { h.stream.setRegion(0, 0.5f); }, 44100, 0, 1},
        {"speed", [](HostedUnit& h) { h.stream.setLinear(scanning, 2); }, 44100, 0, 2}};
    for (const auto& [set, act, rate, position, speed] : rows) {
        HostedUnit hosted(component_type::effect);
        act(hosted);
        hosted.instance.runLoop.runPosted(); // at the rate before the host sets its own
        hosted.host.start({rate, 512});
        EXPECT_EQ(hosted.parameter(scrubbingWave).value(), position) << set;
        EXPECT_EQ(hosted.stream.linear(scanning), speed) << set;
        hosted.stream.loadSound(noiseSample(1000, 44100));
        hosted.instance.runLoop.runPosted();
        const bool chosen = speed != 0; // else a file scans as if it had come first
        EXPECT_EQ(hosted.stream.linear(scanning), chosen ? speed : 1) << set;
        EXPECT_EQ(hosted.parameter(scrubbingWave).value(), chosen ? position : 0) << set;
    }
}

TEST(Life, EndsInAnyOrderAndGoesOnWithAnotherController) {
    HostedUnit hosted(component_type::effect);
    hosted.ready();
    hosted.host.reportContext(true);
    hosted.host.setTempo(90);
    hosted.render(512);
    {
        AudioUnitViewController other(hosted.instance);
        other.setAudioUnit(hosted.unit.get());
        hosted.render(512);
        EXPECT_EQ(other._GRANULATOR_STREAM.currentClockBPM(), 90.0); // the same tempo as before
        EXPECT_EQ(hosted.view.audioUnit(), nullptr);
        hosted.view.setAudioUnit(hosted.unit.get());
        EXPECT_EQ(other.audioUnit(), nullptr);
    }
    hosted.parameter(pitch).setValue(5);
    hosted.instance.runLoop.runPosted();
    EXPECT_EQ(hosted.stream.linear(pitch), 5);
    hosted.host.stop(); // or it would stop a unit that has gone
    hosted.unit.reset();
    EXPECT_EQ(hosted.view.audioUnit(), nullptr);
    hosted.view._inputDryWetKnob.resetsDefault();
}

/// Sets the width in every way there is, all before MAIN goes on.
struct Setter : HostedUnit {
    Setter() : HostedUnit(component_type::instrument) {
        instance.folders.shared = folder.path();
        ready();
        view.midiManager.bind({.trigger = {.number = 20},
                               .control = &stream.controls._width,
                               .takeover = MidiTakeover::jump});
        view.presets.addBank();
        stream.setLinear(width, 0.125f);
        view.presets.saveSnap();
        render(0);
    }
    PropertyDictionary state(float value) { return {{"Width_0", value}}; }
    void push(std::vector<std::uint8_t> bytes) { inlet.push(bytes.data(), bytes.size()); }
    void turnByMidi() { push({0xB0, 20, 127}); }
    void loadByMidi() { push({0xC0, 0}); }
    /// What it is then; -1 when control, parameter and engine do not agree.
    float after(const std::string& ways) {
        for (const char way : ways) set(way);
        instance.runLoop.runPosted();
        instance.runLoop.runPosted();
        const float value = stream.linear(width);
        const bool agree = parameter(width).value() == value &&
                           StreamProbe::fields(stream.engine()).width == value;
        return agree ? value : -1.0f;
    }
    void set(char way) { setters.at(way)(); }
    void turn(float value) {
        stream.controls._width.setValue(value);
        stream.controls._width.sendEventValueChanged();
    }
    void renderEvent() {
        AURenderEvent event;
        event.parameter = {static_cast<AUParameterAddress>(width), 0.625f, 0};
        StereoBlock block(1);
        AudioBufferList output = block.from(0);
        unit->internalRenderBlock()(0, output, &event, nullptr);
    }
    void turnByHand(float value) {
        stream.controls._width.beginTracking({});
        turn(value);
        stream.controls._width.cancelTracking();
    }
    const std::map<char, std::function<void()>> setters = {
        {'p', [this] { view.presets.selectSnapFromIndex(0); }},
        {'c', [this] { loadByMidi(); }}, // the same
        {'s', [this] { view.restoreState(state(0.25f)); }},
        {'f', [this] { std::thread([this] { unit->setFullState(state(0.375f)); }).join(); }},
        {'t', [this] { std::thread([this] { parameter(width).setValue(0.5f); }).join(); }},
        {'e', [this] { renderEvent(); }},
        {'m', [this] { turnByMidi(); }},
        {'x', [this] { instance.states.ask(); }}, // a preset that has gone until it is to be loaded
        {'g', [this] { turnByHand(0.75f); }},
        {'-', [this] { turn(0.875f); }}}; // something that moves by itself
    TemporaryFolder folder;
};

TEST(State, AndWhatIsSetBeforeItIsRestoredComeInTheOrderInWhichTheyWereAskedFor) {
    const std::map<char, float> values = {{'p', 0.125f}, {'c', 0.125f}, {'s', 0.25f}, {'f', 0.375f},
                                          {'t', 0.5f},   {'e', 0.625f}, {'m', 1.0f},  {'g', 0.75f}};
    const std::string states = "pcsf", setters = "temg";
    Setter setter;
    for (const char state : states) {
        for (const char other : states + setters) {
            if (other == state) continue;
            EXPECT_EQ(setter.after({state, other}), values.at(other)) << state << other;
            EXPECT_EQ(setter.after({other, state}), values.at(state)) << other << state;
        }
        EXPECT_EQ(setter.after({state, '-'}), values.at(state)) << state;
    }
    for (const std::string order : {"sft", "sfe", "tse", "stf", "sef", "cte", "mxg", "tsmfe"})
        EXPECT_EQ(setter.after(order), values.at(order.back())) << order;
    for (const bool noteFirst : {true, false}) {
        if (noteFirst) setter.unit->noticeNoteOn(67, 1);
        setter.view.restoreState({{"Pitch_0", 3.0}});
        if (!noteFirst) setter.unit->noticeNoteOn(67, 1);
        setter.instance.runLoop.runPosted();
        EXPECT_EQ(setter.stream.linear(pitch), noteFirst ? 3.0f : 7.0f);
    }
}

TEST(State, GivesWayToWhatRenderSetsWhileItIsRestored) {
    Setter setter;
    std::atomic<int> asked = 0, sent = 0;
    constexpr int kRounds = 500;
    std::thread render([&] {
        for (int round = 1; round <= kRounds; sent = round++) {
            while (asked < round) std::this_thread::yield();
            for (volatile int wait = 100 * (round % 100); wait > 0;) wait = wait - 1;
            setter.set('e');
        }
    });
    for (int round = 1; round <= kRounds; ++round) {
        setter.set('s');
        asked = round;
        setter.instance.runLoop.runPosted();
        while (sent < round) std::this_thread::yield();
        EXPECT_EQ(setter.after(""), 0.625f) << round;
    }
    render.join();
}

TEST(State, TakesTheScanFromAFingerThatRestsOnIt) {
    HostedUnit hosted(component_type::instrument);
    ScrubArea& area = hosted.ready().stream.scrubArea;
    area.touchesBegan(1, {0.75, 0.5}, 0.0);
    hosted.instance.runLoop.advance(hosted.instance.runLoop.now() + 0.6);
    hosted.view.restoreStateProc({{"ScanPosition_0", 0.25}});
    EXPECT_TRUE(hosted.stream.getTimePhasor() == 0.25f && !area.isHeld());
}

TEST(State, KnowsOfASteadyLevelWhereItIsOn) {
    HostedUnit hosted(component_type::instrument);
    MOK_SCRUB_GRANULATOR& stream = hosted.ready().stream;
    stream.setSteadyLevel(true);
    const PropertyDictionary on = hosted.view.snapshotAsItIs();
    hosted.view.restoreStateProc({});
    EXPECT_FALSE(stream.isLevelSteady());
    EXPECT_FALSE(hosted.view.snapshotAsItIs().contains("SteadyLevel_0"));
    hosted.view.restoreStateProc(on);
    EXPECT_TRUE(stream.isLevelSteady());
}

TEST(State, IsReportedOnKeyByKeyToWhoeverTakesThatElseToTheLog) {
    using enum StandIn;
    const PropertyDictionary bond{{"name", "_none"}, {"axis", 0}};
    const std::pair<PropertyDictionary, StateFinding> cases[] = {
        {{{"Density_0", "loud"}},
         {"Density_0", "a value of type string is ignored; a finite real is needed", asBefore}},
        {{{"Sample_0", PropertyDictionary{}}},
         {"Sample_0.Path", "empty; the sample's absolute path, or its file name, is needed",
          asBefore}},
        {{{"Captured_0", PropertyDictionary{}}},
         {"Captured_0.FLAC", "missing; the sound as FLAC data is needed", nothing}},
        {{{"Pad", PropertyArray{1}}},
         {"pad _0",
          "a state of 1 values is ignored; octaves and base note are needed, then perhaps x and y",
          asBefore}},
        {{{"Midi", PropertyDictionary{{"Navigation", PropertyDictionary{{"banks", 2}}}}}},
         {"Midi.Navigation.banks", "a value of type whole number is ignored; a boolean is needed",
          usual}},
        {{{"ControlAssignments",
           PropertyArray{PropertyDictionary{{"name", "_none"}, {"type", 1}}}}},
         {"", "1 assignment(s) left out: no such control is here", nothing}},
        {{{"Tilt", PropertyArray{bond}}},
         {"accelerometer", "\"_none\" is ignored; it must name a knob or a scan", nothing}},
        {{{"Preset", PropertyDictionary{{"Bank", 3}}}},
         {"Preset.Bank", "a value of type whole number is ignored; a string is needed", nothing}}};
    HostedUnit hosted(component_type::effect);
    hosted.ready();
    std::vector<std::string>& logged = hosted.lines;
    for (const auto& [state, wanted] : cases) {
        std::vector<RestoreReport> taken;
        hosted.view.setReportTaker([&](const RestoreReport& report) { taken.push_back(report); });
        hosted.view.restoreStateProc(state);
        EXPECT_TRUE(logged.empty());
        ASSERT_EQ(taken.size(), 1u);
        EXPECT_EQ(taken[0].findings, StateFindings{wanted}) << lineOf(wanted);
        hosted.view.setReportTaker({});
        hosted.view.restoreStateProc(state);
        EXPECT_EQ(std::tuple(logged, logged.at(0)), std::tuple(linesOf(taken[0]), lineOf(wanted)));
        logged.clear();
    }
    // A sound comes later; the report waits for it.
    int taken = 0;
    const PropertyDictionary lost{{"Sample_0", PropertyDictionary{{"Path", "/none/lost.wav"}}}};
    // One that wants no other unsets itself, and still has what it captured.
    for (const PropertyDictionary& state : {PropertyDictionary(), lost}) {
        hosted.view.setReportTaker(
            [&, lines = std::vector<std::string>(1000)](const RestoreReport&) {
                hosted.view.setReportTaker({});
                EXPECT_EQ(lines.size(), 1000u);
                ++taken;
            });
        hosted.view.restoreStateProc(state);
        hosted.instance.runLoop.finishWork();
    }
    EXPECT_EQ(std::exchange(taken, 0), 2);
    hosted.view.setReportTaker([&](const RestoreReport&) { ++taken; });
    hosted.view.restoreStateProc(lost);
    EXPECT_EQ(hosted.view.restoreReport().sample.end, SampleEnd::loading);
    EXPECT_EQ(taken, 0);
    hosted.instance.runLoop.finishWork();
    EXPECT_EQ(hosted.view.restoreReport().sample.end, SampleEnd::missing);
    EXPECT_EQ(taken, 1);
    hosted.view.setReportTaker({});
    hosted.view.restoreStateProc(lost);
    hosted.instance.runLoop.finishWork();
    EXPECT_EQ(logged, std::vector<std::string>{"Warning, no file exist at path: /none/lost.wav!"});
}

} // namespace
} // namespace zephyra
