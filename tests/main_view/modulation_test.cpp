// The whole system with what moves it: from hand, LFO, MIDI and tilt to the engine, and back out of
// a state.

#include "tests/support/hosted_unit.h"
#include "tests/support/stream_probe.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Played : HostedUnit {
    explicit Played(FourCharCode type = component_type::instrument) : HostedUnit(type) { ready(); }
    void pass(int blocks) {
        for (int i = 0; i < blocks; ++i) render(512);
    }
    LfoWidgetWrapper& attach(Control& control, std::int64_t shape, double hz) {
        view.assignments.assign(control, AssignmentType::lfo);
        auto& wrapper = *view.assignments.getLfoWidgetsMapping()->getWrapperID(&control);
        wrapper.setLfoShapeFromWrapper(shape);
        wrapper.setHz(hz);
        return wrapper;
    }
    float width() { return StreamProbe::fields(stream.engine()).width; }
};

TEST(Motion, OfAnLfoFollowsTheTempoYieldsToAHandAndStopsWithItsSwitch) {
    Played played;
    auto& scan = played.stream.scrubArea;
    auto& tempo = played.view.assignments.tempo;
    played.attach(played.stream.controls._width, kLfoLineRise, 1.0); // from 0.25 up, 1/32 a tick
    played.pass(9);                                                  // 104.5 ms: three ticks
    EXPECT_NEAR(played.width(), 0.25 + 3.0 / 32, 1e-6);
    EXPECT_NEAR(played.parameter(ControlId::width).value(), 0.25 + 3.0 / 32, 1e-6);

    LfoWidgetWrapper& linked = played.attach(scan, kLfoV, 3.0);
    linked.setLinkIsEnabled(true);
    EXPECT_DOUBLE_EQ(linked.currentLFO.hz(), 2.0); // quarters at 120 while no host speaks
    for (const auto& [host, taps, wanted] :
         {std::tuple(0, 60, 60), {90, 60, 90}, {90, 200, 90}}) { // the host leads
        played.host.reportContext(host != 0);
        played.host.setTempo(host);
        tempo.setValue(taps);
        tempo.sendEventValueChanged();
        played.pass(2);
        EXPECT_DOUBLE_EQ(linked.currentLFO.hz(), wanted / 60.0);
        EXPECT_EQ(played.stream.currentClockBPM(), wanted);
    }

    std::string told;
    played.unit->parameterTree()->tokenByAddingParameterAutomationObserver(
        [&told](const AUParameterAutomationEvent& event) {
            if (event.address == 0) told += " +-"[static_cast<int>(event.eventType)];
        });
    scan.touchesBegan(1, {0.5, 0.5}, 0.0);
    scan.touchesMoved(1, {0.75, 0.5}, 0.1);
    played.pass(20);
    EXPECT_FLOAT_EQ(played.stream.getTimePhasor(), 0.75f);
    scan.touchesEnded(1, 0.3);
    EXPECT_EQ(told, "+ -");
    played.view._lfoSwitch.touch();
    const float width = played.width();
    played.pass(9);
    EXPECT_FLOAT_EQ(played.stream.getTimePhasor(), 0.75f);
    EXPECT_EQ(played.width(), width);
}

TEST(Motion, OfTheScanIsWhatWasStartedLast) {
    Played played;
    auto& scan = played.stream.scrubArea;
    auto& recorder = played.stream.scrubRecorder;
    const auto isWithin = [&](float low, float high) { // every tick of both
        bool within = true;
        for (int block = 0; block < 20; ++block) {
            played.pass(1);
            within &= scan.scanPosition() >= low && scan.scanPosition() <= high;
        }
        return within;
    };
    recorder.setTake(std::vector<float>{0.9f, 0.95f});
    const auto press = [&] {
        played.stream.controls.scrubPlay.sendActionsForControlEvents(control_event::touchUpInside);
        played.pass(8); // until its first tick
    };
    played.stream.setDisplayed(scanning, 0.0f);
    press();
    for (const AssignmentType type : {AssignmentType::lfo, AssignmentType::accelX}) {
        played.view.assignments.assign(scan, type);
        scan.driveScan(0.5f, 0.1);
        if (auto* const lfo = played.view.assignments.getLfoWidgetsMapping()->getWrapperID(&scan))
            lfo->setMaxRange(0.6f);
        EXPECT_TRUE(isWithin(0.0f, 0.6f));
        press();
        EXPECT_TRUE(isWithin(0.9f, 0.95f));
        scan.driveScan(0.5f, 0.0); // only places it
        EXPECT_EQ(scan.scanPosition(), 0.5f);
    }
    played.attach(scan, kLfoSine, 1.0);
    press();
    const PropertyDictionary both = played.view.getState(); // the take was the last one
    press();
    EXPECT_FALSE(isWithin(0.9f, 0.95f));
    played.view.restoreStateProc(both);
    EXPECT_TRUE(isWithin(0.9f, 0.95f));
}

TEST(Motion, OfTheScanIsSavedWhereAStartWouldReadWhenItsOwnSpeedDoesNotMoveIt) {
    const std::pair<const char*, std::function<void(Played&)>> cases[] = {
        {"a frozen one in another region",
         [](Played& p) {
             p.stream.setDisplayed(playStop, 0.0f);
             p.pass(1);
             p.stream.setRegion(0.6f, 0.9f);
             p.stream.setDisplayed(freeze, 1.0f);
         }},
        {"one frozen since the last block", [](Played& p) { p.stream.setDisplayed(freeze, 1.0f); }},
        {"an LFO's",
         [](Played& p) {
             p.attach(p.stream.scrubArea, kLfoLineRise, 1.0);
             p.pass(9);
         }},
        {"a hand's", [](Played& p) {
             p.stream.scrubArea.touchesBegan(1, {0.7, 0.5}, 0.0);
         }}};
    for (const auto& [what, stand] : cases) {
        Played played, other;
        played.stream.setDisplayed(playStop, 1.0f);
        played.pass(30);
        EXPECT_FALSE(played.view.getState().contains("ScanPosition_0"));
        stand(played);
        const PropertyDictionary state = played.view.getState();
        ASSERT_TRUE(state.contains("ScanPosition_0")) << what;
        other.view.restoreStateProc(state);
        for (Played* each : {&played, &other}) {
            each->stream.play();
            each->render(1); // before anything moves on
            EXPECT_FLOAT_EQ(each->stream.getTimePhasor(),
                            static_cast<float>(*state.at("ScanPosition_0").as<double>()))
                << what;
        }
    }
}

TEST(Motion, OfATakeOutOfAStateBeginsAtItsFirstPosition) {
    for (const bool synced : {false, true})
        for (const bool plays : {false, true}) { // before
            Played played;
            auto& stream = played.stream;
            stream.scrubRecorder.setTake(std::vector<float>{0.75f, 0.5f});
            if (plays) stream.scrubRecorder.____playScrubRec();
            played.pass(14); // to its second position
            PropertyDictionary state = played.view.getState();
            state["ScanSync_0"] = synced;
            state["_0_SCRUB_REC_IS_PLAYING_"] = std::int64_t{1};
            played.view.restoreStateProc(state);
            played.pass(1);
            stream.syncStateTempoForte();
            played.pass(1);
            EXPECT_NEAR(stream.getTimePhasor(), 0.75f, 0.05f) << synced << plays;
        }
}

TEST(Motion, OfMidiPlaysNotesControllersBendsAndThePictureOfTheKeyboard) {
    Played played;
    auto& controls = played.stream.controls;
    ASSERT_TRUE(played.view.midiManager.learn(controls._width));
    played.midi({0xB0, 20, 32}); // learned; the knob stands at 0.25 = 32 / 127 nearly
    played.midi({0xB0, 20, 127});
    played.midi({0x90, 67, 100});
    played.pass(2);
    EXPECT_EQ(std::tuple(controls._width.value(), controls._pitch.value()), std::tuple(1.0f, 7.0f));
    EXPECT_GT(played.view.surfaces._keyboard.keyDown[31], 0.0f); // an octave above the note
    EXPECT_EQ(played.view.assignments.typeOf(controls._width), AssignmentType::midi);
    played.midi({0x80, 67, 0});
    played.midi({0xE0, 127, 127}); // up two semitones
    played.pass(2);
    EXPECT_EQ(played.view.surfaces._keyboard.keyDown[31], 0.0f);
    EXPECT_NEAR(controls._pitch.value(), 9.0f, 1e-4);
    played.midi({0x90, 67, 100});
    played.midi({0x80, 67, 0}); // and once more within the block
    played.midi({0x90, 67, 100});
    played.pass(2);
    EXPECT_GT(played.view.surfaces._keyboard.keyDown[31], 0.0f);
    played.midi({0xE0, 0, 64});
    played.pass(2);
    EXPECT_NEAR(controls._pitch.value(), 7.0f, 1e-4);
    EXPECT_EQ(played.view.assignments.typeOf(controls._pitch), AssignmentType::none);
}

TEST(Motion, OfAHeldWheelGoesWithTheNextNote) {
    Played played;
    MOK_KNOB& pitch = played.stream.controls._pitch;
    MOK_Keyboard& keyboard = played.view.surfaces._keyboard;
    keyboard.setSize(290, 100);
    MidiManager& midi = played.view.midiManager;
    const auto expect = [&](float wanted, const char* what,
                            const std::vector<std::vector<std::uint8_t>>& messages = {}) {
        for (const auto& message : messages) played.midi(message);
        played.pass(2);
        EXPECT_NEAR(pitch.value(), wanted, 1e-4) << what;
    };
    expect(2, "up, no note yet", {{0xE0, 127, 127}});
    expect(9, "a note", {{0x90, 67, 1}});
    for (int i = 0; i < 2; ++i) expect(11, "the note where the wheel had led", {{0x90, 69, 1}});
    expect(9, "one of a channel whose wheel rests", {{0x91, 69, 1}});
    keyboard.touchesBegan(1, {keyboard.keyRects[29].x + 1.0, 99.0}, 0.0);
    keyboard.touchesEnded(1, 0.1);
    expect(7, "a key under a finger, with the wheel that moved last");
    expect(24, "held to the range", {{0x90, 84, 1}});
    expect(4, "let go", {{0x90, 64, 1}, {0xE0, 0, 64}});
    expect(5, "down before a note in one block", {{0xE0, 0, 0}, {0x90, 67, 1}});
    played.stream.controls._keyboardButton.tag = 1;
    played.stream.ui_setPitchToKeyboard();
    expect(5, "shown where it stands");
    expect(7, "let go again", {{0xE0, 0, 64}});
    midi.bind({.trigger = {.source = MidiSource::pitchBend, .channel = 3},
               .control = &pitch,
               .min = 0.25f,
               .max = 0.25f,
               .takeover = MidiTakeover::jump,
               .relative = true});
    expect(19, "bound to the wheel of a channel", {{0xE2, 127, 127}});
    expect(12, "which bends all notes", {{0x90, 60, 1}});
    expect(14, "another channel's as well", {{0xE0, 127, 127}});
    midi.unbindAll();
    midi.bind({.trigger = {MidiSource::pitchBend}, .control = &played.stream.controls._width});
    expect(5, "bound elsewhere", {{0x90, 65, 1}});
}

TEST(Motion, OfTheSurfacesPlaysPitchDensityAndTheRingModulator) {
    Played played;
    auto& controls = played.stream.controls;
    PerformanceSurfaces& surfaces = played.view.surfaces;
    surfaces._keyboard.setSize(290, 100); // 29 white keys of 290 / 21 points
    surfaces._keyboard.touchesBegan(1, {1.0, 99.0}, 0.0);
    EXPECT_EQ(controls._pitch.value(), -24.0f);
    surfaces._keyboard.touchesEnded(1, 0.1);
    surfaces._pad.setSize(100, 100);
    surfaces._pad.touchesBegan(1, {100.0, 0.0}, 0.2);
    EXPECT_EQ(controls._pitch.value(), 12.0f); // two octaves from note 48
    EXPECT_EQ(controls._density.valueExp(), 400.0f);
    surfaces._keyboardTiny.setSize(70, 100);
    surfaces._keyboardTiny.touchesBegan(1, {55.0, 99.0}, 0.3); // A4
    EXPECT_NEAR(controls._rmFrequency.valueExp(), 440.0f, 0.01f);
}

TEST(Motion, StaysAsItIsWhereAnOlderStateSaysNothingOfIt) {
    Played played;
    auto& view = played.view;
    auto& volume = played.stream.controls._volume;
    auto& width = played.stream.controls._width;
    played.attach(played.stream.controls._density, kLfoSine, 5.0);
    view.midiManager.bind({.trigger = {MidiSource::controller14, 5, 3}, .control = &volume});
    view.assignments.assign(width, AssignmentType::accelX);
    view.tiltWidgets.getWrapperID(&width)->setMinRange(0.25f);
    view.restoreStateProc({{"Width_0", 0.5}}); // from before anything moved by itself
    EXPECT_EQ(view.assignments.getLfoWidgetsMapping()->count(), 1u);
    EXPECT_EQ(view.midiManager.bindings().size(), 1u);
    // One from before a control existed says nothing of that control.
    PropertyDictionary older = view.getState();
    std::erase_if(
        *older.at("ControlAssignments").as<PropertyArray>(), [&](const PropertyValue& record) {
            const auto& name = record.as<PropertyDictionary>()->at("name");
            return name == PropertyValue(volume.channel) || name == PropertyValue(width.channel);
        });
    *older.at("Midi").as<PropertyDictionary>() = {{"Bindings", PropertyArray{}}};
    *older.at("Tilt").as<PropertyArray>() = {};
    view.restoreStateProc(older);
    EXPECT_EQ(view.midiManager.bindings().size(), 1u);
    EXPECT_EQ(view.tiltWidgets.getWrapperID(&width)->minRange(), 0.25f);
    // In another a control waits for its controller, whatever moves that control here.
    Played other;
    other.view.assignments.assign(other.stream.controls._volume, AssignmentType::midi);
    view.restoreStateProc(other.view.getState());
    EXPECT_EQ(view.assignments.typeOf(volume), AssignmentType::midi);
}

} // namespace
} // namespace zephyra
