// What MIDI messages do to controls: learning, taking over, ranges, navigation, conflicts, states.

#include "modulation/midi_manager.h"
#include "platform/audio_unit/midi_notices.h"
#include "tests/support/fake_scan.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using enum MidiSource;
using enum MidiTakeover;

struct MidiManagerTest : testing::Test, ControlManagerDataSource {
    MidiManagerTest() {
        controls.initialize();
        controls.setObserver([this](Control& control, AssignmentType from, AssignmentType to) {
            if (from == AssignmentType::midi && to != from) midi.unbind(control);
        });
        density.setRange(0.0f, 100.0f);
        density.setValue(50.0f);
        for (const char* name : {midi_notice::kSelectBank, midi_notice::kSelectPreset})
            instance.notifications.addObserver(name, [this, name](const std::any& index) {
                chosen += name == midi_notice::kSelectBank ? " b" : " p";
                chosen += std::to_string(std::any_cast<int>(index));
            });
    }
    std::vector<Control*> getWidgetsObjForControlManager() override {
        return {&density, &length, &echo, &rec, &scan, &pad};
    }
    std::vector<std::string> getWidgetsObjNamesForControlManager() override {
        return {"Density", "Length", "Echo", "Record", "Scan", "Pad"};
    }
    std::vector<int> getWidgetsObjColorsForControlManager() override { return {0, 0, 0, 0, 0, 0}; }
    std::vector<ScrubReference*> getScrubReference() override { return {}; }

    void send(int status, int first, int second = 0) {
        midi.receive({{static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(first),
                       static_cast<std::uint8_t>(second)}});
    }
    std::string recordOf(std::size_t row) { return controls.row(row).text; }

    HeardInstance instance;
    MOK_KNOB density{"_density"}, length{"_length"};
    Toggle echo{"_echo"};
    Button rec{"_rec"};
    FakeScan scan{"_0"};
    Control pad;
    ControlManager controls{instance, *this};
    MidiManager midi{instance, controls};
    std::string chosen;
};

TEST_F(MidiManagerTest, LearnsFromATouchAndAControllerAndTakesTheControlFromWhatDroveIt) {
    controls.assign(density, AssignmentType::lfo);
    EXPECT_FALSE(midi.learn(pad));
    EXPECT_TRUE(midi.learn(density));
    send(0x90, 60, 0); // what cannot move a knob is not learned
    send(0xB0, 123, 0);
    EXPECT_EQ(midi.learning(), &density);
    send(0xB2, 0, 99); // also the bank's controller, which chooses none here
    EXPECT_EQ(midi.learning(), nullptr);
    EXPECT_EQ(std::tuple(density.value(), recordOf(0)), std::tuple(50.0f, "CC 0"));
    EXPECT_EQ(controls.getLfoWidgetsMapping()->count(), 0u);
    send(0xB3, 32, 5); // another channel's
    EXPECT_EQ(recordOf(0), "CC 0");
    send(0xB2, 32, 5); // the fine half
    midi.learnsChannel = true;
    midi.learn(density);
    send(0xEF, 0, 64);
    EXPECT_EQ(recordOf(0), "CC 0/32 and Pitch Bend, channel 16");
    midi.learn(density);
    controls.assign(density, AssignmentType::lfo);
    EXPECT_TRUE(midi.bindings().empty() && !midi.learning() && chosen.empty());
    EXPECT_EQ(recordOf(0), "LFO Assigned");
    midi.learn(echo);
    send(0x90, 60, 1);
    EXPECT_FALSE(echo.isOn()); // learning moves nothing
}

TEST_F(MidiManagerTest, ValuesSpanTheRangeOfTheBindingByItsCurve) {
    const std::tuple<MidiBinding, std::array<int, 3>, float> cases[] = {
        {{{controller, 7}, &density, 0.25f, 0.75f, 1, jump}, {0xB3, 7, 0}, 0.25f},
        {{{controller, 7}, &density, 0.8f, 0.1f, 1, jump}, {0xB3, 7, 127}, 0.1f},
        // (64 / 127) squared.
        {{{channelPressure, 0}, &density, 0, 1, 2, jump}, {0xD0, 64, 0}, 0.25395f},
        {{{note, 61}, &density, 0, 1, 1, jump}, {0x90, 61, 32}, 0.25197f},
        {{{pitchBend, 0}, &density, 0, 1, 1, jump}, {0xE0, 0, 64}, 0.5f},
        {{{pitchBend, 0}, &density, 0, 1, 1, jump}, {0xE0, 127, 127}, 1},
        {{{pitchBend, 0}, &density, 0, 1, 1, jump}, {0xE0, 0, 32}, 0.25f},
        {{{controller14, 1}, &density, 0, 1, 1, jump}, {0xB0, 33, 127}, 0.00775f}, // 127 / 16383
        {{{controller14, 1}, &density, 0, 1, 1, jump}, {0xB0, 1, 64}, 0.50003f}};
    for (const auto& [binding, message, place] : cases) {
        midi.unbindAll();
        EXPECT_TRUE(midi.bind(binding));
        send(message[0], message[1], message[2]);
        EXPECT_NEAR(density.valueNorm(), place, 1e-5f) << message[0] << " " << message[1];
    }
}

TEST_F(MidiManagerTest, AControlWaitsUntilItsControllerComesBy) {
    midi.bind({.trigger = {controller, 1, 1}, .control = &density, .min = 0.25f});
    const auto moves = [this](int value, float expected) {
        send(0xB0, 1, value);
        EXPECT_NEAR(density.value(), expected, 0.4f) << value;
        return !midi.waitsForSoftTakeover(0);
    };
    EXPECT_FALSE(moves(127, 50));
    send(0xB1, 1, 0); // of another channel
    EXPECT_FALSE(moves(90, 50));
    EXPECT_TRUE(moves(20, 36.8f)); // passed it
    EXPECT_TRUE(moves(127, 100));  // follows, however fast
    density.setValue(60.0f);       // somebody else
    EXPECT_FALSE(moves(126, 60));
    EXPECT_TRUE(moves(59, 59.8f)); // came within a step
    density.beginTracking({});
    EXPECT_FALSE(moves(127, 59.8f)); // a hand is stronger
    density.endTracking({});
    EXPECT_FALSE(moves(126, 59.8f));
    density.setValue(0.0f); // where the binding does not reach: its nearest end will do
    EXPECT_FALSE(moves(2, 0));
    EXPECT_TRUE(moves(1, 25.6f));

    midi.bind({.trigger = {controller, 2}, .control = &scan});
    send(0xB0, 2, 64);
    scan.position = 0.9f; // it moves by itself
    send(0xB0, 2, 32);
    scan.held = true;
    send(0xB0, 2, 127);
    scan.held = false;
    send(0xB0, 2, 120);
    EXPECT_NEAR(scan.position, 0.25f, 0.01f);
}

TEST_F(MidiManagerTest, TogglesFollowAndButtonsArePressedOnceForEachRise) {
    int switched = 0, pressed = 0;
    echo.addTarget(this, "on", control_event::valueChanged, [&](Control&) { ++switched; });
    rec.addTarget(this, "on", control_event::touchUpInside, [&](Control&) { ++pressed; });
    for (const MidiTrigger& trigger : {MidiTrigger{controller, 1}, MidiTrigger{note, 60}})
        for (Control* const control : {static_cast<Control*>(&echo), static_cast<Control*>(&rec)})
            midi.bind({.trigger = trigger, .control = control});
    for (const int value : {0, 63, 64, 127, 100, 0, 127}) send(0xB0, 1, value);
    EXPECT_TRUE(switched == 3 && pressed == 2) << switched << " " << pressed;
    echo.setOn(false);
    send(0xB0, 1, 126);
    EXPECT_FALSE(echo.isOn()); // waits
    for (const int velocity : {1, 0, 1}) send(0x90, 60, velocity);
    EXPECT_TRUE(switched == 5 && pressed == 4) << switched << " " << pressed;
    for (Control* const control : {static_cast<Control*>(&echo), static_cast<Control*>(&rec)})
        midi.bind({.trigger = {pitchBend}, .control = control, .takeover = jump});
    for (const int bend : {0, 64}) send(0xE0, 0, bend); // exactly one half is on
    EXPECT_TRUE(echo.isOn() && pressed == 5) << pressed;
}

TEST_F(MidiManagerTest, ProgramsBankControllersAndNotesChooseUnlessTheyAreBound) {
    midi.setNavigation({.channel = 2, .firstPresetNote = 36, .firstBankNote = 120});
    for (const int channel : {0, 1}) {
        send(0xC0 + channel, 5);
        send(0xB0 + channel, 0, 7);
        for (const int key : {35, 36, 47, 48, 127}) send(0x90 + channel, key, 1);
        send(0x90 + channel, 36, 0);
    }
    midi.bind({.trigger = {controller}, .control = &density});
    midi.bind({.trigger = {controller14}, .control = &length});
    midi.bind({.trigger = {note, 40}, .control = &density});
    send(0xB1, 0, 7);
    send(0x91, 40, 1);
    EXPECT_EQ(chosen, " p5 b7 p0 p11 b7");
    EXPECT_THAT(midi.conflicts(),
                ElementsAre("CC 0 moves Density and Length", "CC 0/32 moves Density and Length",
                            "Density is moved by CC 0 and Note E2",
                            "CC 0 moves Density and so chooses no bank",
                            "CC 0/32 moves Length and so chooses no bank",
                            "Note E2 moves Density and so chooses no preset"));
}

TEST_F(MidiManagerTest, AMoveMayReplaceTheBindingsThatItComesFrom) {
    for (Control* const control : {static_cast<Control*>(&echo), static_cast<Control*>(&density)})
        midi.bind({.trigger = {controller, 1}, .control = control, .takeover = jump});
    const PropertyDictionary state = midi.getState();
    echo.addTarget(this, "preset", control_event::valueChanged,
                   [&](Control&) { midi.restoreState(state); });
    for (const int value : {127, 0, 127}) send(0xB0, 1, value); // a sanitizer sees what is touched
    EXPECT_TRUE(echo.isOn() && midi.getState() == state);
    EXPECT_EQ(density.value(), 50.0f); // the message was for the bindings before
}

TEST_F(MidiManagerTest, HostileBindingsOfAStateAreLeftOut) {
    midi.bind({{controller, 1, 16}, &density, 0.75f, 0.1f, 2.5f, soft});
    PropertyDictionary state = midi.getState();
    midi.unbindAll();
    midi.bind({.trigger = {pitchBend}, .control = &length});
    PropertyArray& saved = *state["Bindings"].as<PropertyArray>();
    const PropertyValue good = saved[0];
    saved = {good, "text"};
    const std::pair<const char*, PropertyValue> wrong[] = {
        {"name", "_none"}, {"source", std::int64_t{1} << 40},
        {"number", 120},   {"channel", 17},
        {"min", 1e300},    {"curve", 0.0},
        {"takeOver", 2},   {"relative", true}};
    for (const auto& [key, value] : wrong) {
        saved.emplace_back(good);
        saved.back().as<PropertyDictionary>()->insert_or_assign(key, value);
    }
    saved.resize(5000, good);
    PropertyValue& last = saved[4095]; // that counts
    last.as<PropertyDictionary>()->insert_or_assign("max", 0.5);
    const StateFindings findings = midi.restoreState(state);
    ASSERT_EQ(midi.bindings().size(), 1u);
    EXPECT_EQ(midi.bindings()[0].max, 0.5f);
    EXPECT_TRUE(findings.at(findings.size() - 2)
                    .text.starts_with("4086 MIDI binding(s) stand there twice"));
    EXPECT_TRUE(findings.back().text.starts_with("913 MIDI binding(s) left out"));
    EXPECT_EQ(std::tuple(recordOf(0), recordOf(1)), std::tuple("CC 1, channel 16", "Unassigned"));
}

} // namespace
} // namespace zephyra
