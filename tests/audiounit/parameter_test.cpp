// The table of controls, frozen, their names and values as they are typed, and the parameters that
// hosts save automation under.

#include "audiounit/control_meaning.h"
#include "audiounit/control_text.h"
#include "controls/note_values.h"
#include "platform/text/text_numbers.h"
#include "tests/support/fake_host.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

// Saved settings, hosts' automation and, behind the @, the order of saved assignments depend on
// every character of this. Behind the semicolon is what only a host's parameter has.
constexpr const char* kFrozen = R"(0 Scrubbing Wave: 0 to 1, 0 @0; Scrubbing Wave, unit 6
1 Amplitude: 0 to 1, 0.5 = Volume @9; Volume_0, unit 3, AAUv3_Parameter_volume_from_DSP
2 Pan: -1 to 1, 0 = Pan @10; Pan_0, unit 18, AUv3_Parameter_pan_from_DSP
3 Dry/Wet: 0 to 100, 50 %, elsewhere InputDryWet @27; InputDryWet, unit 3, AUv3_Parameter_drywet_from_DSP
4 Width: 0 to 1, 0.25 = Width @11; Width_0, unit 3, AUv3_Parameter_width_from_DSP
5 Density: 0.5 to 400, 50 Hz, exponential 3 = Density @3; Density_0, unit 8, AUv3_Parameter_density_from_DSP
6 Rnd Density: 0 to 1, 0.5 = Rnd_Density @4; Rnd_Density_0, unit 3, AUv3_Parameter_rnd_density_from_DSP
7 Length: 5 to 2000, 85 ms, exponential 3 = Length @5; Length_0, unit 24, AUv3_Parameter_length_from_DSP
8 Rnd Length: 0 to 1, 0.5 = Rnd_Length @6; Rnd_Length_0, unit 3, AUv3_Parameter_rnd_len_from_DSP
9 Pitch: -24 to 24, 0 semitones = Pitch @7; Pitch_0, unit 10, AUv3_Parameter_pitch_from_DSP
10 Rnd Pitch: 0 to 24, 0 semitones = Rnd_Pitch @8; Rnd_Pitch_0, unit 10, AUv3_Parameter_rnd_pitch_from_DSP
11 Scanning: -4 to 4, 1 x = Scanning @1; Scanning_0, unit 7, AUv3_Parameter_scanning_from_DSP
12 Jittering: 0 to 1000, 5 ms, exponential 4 = Jittering @2; Jittering_0, unit 24, AUv3_Parameter_jitter_from_DSP
13 Echo Switch: 0 to 1, 0, switch = EchoSwitch @13; EchoSwitch_0, unit 2, AUv3_Parameter_echoSwitch_from_DSP
14 Left Delay: 0.001 to 4.5, 0.3 s = EchoLeftDelay @14; EchoLeftDelay_0, unit 4, AUv3_Parameter_echoDelayLeft_from_DSP
15 Right Delay: 0.001 to 4.5, 0.25 s = EchoRightDelay @15; EchoRightDelay_0, unit 4, AUv3_Parameter_echoDelayRight_from_DSP
16 Left Gain: 0 to 0.98, 0.341 = EchoLeftGain @16; EchoLeftGain_0, unit 3, AUv3_Parameter_echoGainLeft_from_DSP
17 Right Gain: 0 to 0.98, 0.231 = EchoRightGain @17; EchoRightGain_0, unit 3, AUv3_Parameter_echoGainRight_from_DSP
18 Ring Modulation Switch: 0 to 1, 0, switch = RMSwitch @21; RMSwitch_0, unit 2, AUv3_Parameter_rmSwitch_from_DSP
19 Ring Modulation Frequency: 0.1 to 8000, 220 Hz, exponential 4 = RMFrequency @22; RMFrequency_0, unit 8, AUv3_Parameter_rmFrequency_from_DSP
20 Ring Modulation Amount: 0 to 1, 0.5 = RMAmount @23; RMAmount_0, unit 3, AUv3_Parameter_rmAmount_from_DSP
21 Play Stop: 0 to 1, 0, switch @30; Play Stop, unit 2, AUv3_Parameter_playToggle_from_DSP
22 Freeze: 0 to 1, 0, switch = Freeze @32; Freeze, unit 2, AUv3_Parameter_freezeToggle_from_DSP
23 LIVE: 0 to 1, 0, switch = LIVE @33; LIVE, unit 2, AUv3_Parameter_LiveToggle_from_DSP
24 Normalize: 0 to 1, 1 = Normalize @12
25 Scan Sync: 0 to 1, 0, switch = ScanSync @24
26 measures: 1 to 64, 1, whole = Mesures Sample @25
27 quarters: 0 to 16, 4, whole = Mesures Quarter @26
28 Echo Sync: 0 to 1, 0, switch = DelaySync @18
29 Subdiv Left: 0 to 20, 7, choice = DelaySubLeft @19
30 Subdiv Right: 0 to 20, 7, choice = DelaySubRight @20
31 fade in: 0 to 10, 0.05 s, elsewhere FadeInTime @28
32 fade out: 0 to 10, 0.25 s, elsewhere FadeOutTime @29
33 envelope: 0 to 11, 2, choice, elsewhere Envelope
1/1D 1/1 1/2D 1/1T 1/2 1/4D 1/2T 1/4 1/8D 1/4T 1/8 )"
                                "1/16D 1/8T 1/16 1/32D 1/16T 1/32 1/64D 1/32T 1/64 1/128 ";

TEST(Controls, AreFrozen) {
    const char* const kinds[] = {"", ", whole", ", switch", ", choice"};
    std::ostringstream text;
    for (const ControlRange& range : controlRanges()) {
        const auto address = static_cast<std::size_t>(range.id);
        text << address << ' ' << range.name << ": " << range.minimum << " to " << range.maximum
             << ", " << range.defaultValue;
        if (*range.unit) text << ' ' << range.unit;
        if (range.curve == ControlCurve::exponential) text << ", exponential " << range.stepness;
        text << kinds[static_cast<int>(range.kind)];
        if (*range.channel) text << (range.kept ? " = " : ", elsewhere ") << range.channel;
        if (range.place != kNotMoved) text << " @" << range.place;
        if (address < kParameterCount) {
            const ParameterRow& row = parameterTable()[address];
            text << "; " << parameterIdentifier(row, "_0") << ", unit "
                 << static_cast<int>(row.unit) << (*row.handler ? ", " : "") << row.handler;
        }
        text << '\n';
    }
    for (const NoteValue& note : kNoteValues) text << note.name << ' ';
    EXPECT_EQ(text.str(), kFrozen);
}

TEST(Parameters, TellEverybodyButTheOriginatorAndOutliveTheAudioUnit) {
    auto rig = std::make_unique<FakeHost>();
    const std::shared_ptr<AUParameterTree> tree = rig->unit->parameterTree();
    AUParameter& pitch = *tree->parameterWithAddress(9);
    std::string told;
    const auto mine = tree->tokenByAddingParameterObserver([&](AUParameterAddress, AUValue value) {
        told += value == pitch.value() ? "stored " : "not stored ";
    });
    const auto recorder =
        tree->tokenByAddingParameterAutomationObserver([&](const auto&) { told += "recorded "; });
    const auto set = [&](AUValue value, AUParameterObserverToken originator) {
        pitch.setValue_originator_atHostTime_eventType(value, originator, 0,
                                                       AUParameterAutomationEventType::touch);
    };
    set(1, mine);
    set(2, recorder);
    set(NAN, 0);
    EXPECT_EQ(told, "recorded stored ");
    tree->removeParameterObserver(mine);
    rig.reset();
    set(3, recorder);
    EXPECT_EQ(told, "recorded stored ");
    EXPECT_EQ(pitch.value(), 0.0f);
}

TEST(ControlText, EveryControlTakesBothItsEndsAndNothingBeyond) {
    ASSERT_EQ(settableControls().size(), 33u);
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        if (range.kind == ControlKind::choice) continue; // chosen by names
        SCOPED_TRACE(range.name);
        const auto control = parseControlName(range.name);
        ASSERT_TRUE(control) << control.message();
        EXPECT_EQ(control.value(), id);
        const auto typed = [id](float value) { return parseControlValue(id, formatNumber(value)); };
        for (const float end : {range.minimum, range.maximum, range.defaultValue}) {
            const Result<float> value = typed(end);
            ASSERT_TRUE(value) << value.message();
            EXPECT_EQ(value.value(), end);
        }
        EXPECT_FALSE(typed(std::nextafter(range.minimum, -1e9f)));
        EXPECT_FALSE(typed(std::nextafter(range.maximum, 1e9f)));
    }
    for (const char* wrong : {"", "nan", "85ms", "50%", "on"})
        EXPECT_FALSE(parseControlValue(ControlId::density, wrong)) << wrong;
    EXPECT_FALSE(parseControlValue(ControlId::quarters, "3.5")); // only whole ones count
}

TEST(ControlText, ASettingReadsBackFromTheTextThatShowsIt) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"density", "80", "Density 80 Hz"},
        {"LEFT-GAIN", "0.98", "Left Gain 0.98"},
        {"echoswitch", "ON", "Echo Switch on"},
        {"Ring Modulation Switch", "0", "Ring Modulation Switch off"},
        {"rnd pitch", "1e1", "Rnd Pitch 10 semitones"},
        {"scanning", "-0.25", "Scanning -0.25 x"},
    };
    for (const auto& [name, typed, shown] : cases) {
        const auto control = parseControlName(name);
        ASSERT_TRUE(control) << control.message();
        const auto value = parseControlValue(control.value(), typed);
        ASSERT_TRUE(value) << value.message();
        EXPECT_EQ(settingText({control.value(), value.value()}), shown);
    }
}

TEST(ControlText, WhatMessagesPrintOfEveryControlReadsBack) {
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        const auto expectRead = [&](const std::string& text, float value) {
            const Result<float> read = parseControlValue(id, text);
            ASSERT_TRUE(read) << read.message();
            EXPECT_FLOAT_EQ(read.value(), value) << text;
        };
        for (const float value : {range.minimum, range.maximum, range.defaultValue})
            expectRead(valueText(range, value), value);
        const std::string_view meaning = controlMeaning(id);
        EXPECT_TRUE(meaning.size() >= 20 && meaning.size() <= 78) << range.name << ": " << meaning;
        const std::string shown = rangeText(range);
        const char* const between = range.kind == ControlKind::switching ? " or " : " to ";
        const std::string first = shown.substr(0, shown.find(between));
        const std::string last = shown.substr(first.size() + 4);
        const bool isSwitch = range.kind == ControlKind::switching; // "on or off"
        expectRead(first, isSwitch ? 1 : range.minimum);
        expectRead(last, isSwitch ? 0 : range.maximum);
    }
}

TEST(ControlText, UnitsOfTheSameKindAreTaken) {
    const std::tuple<ControlId, const char*, float> cases[] = {
        {ControlId::ringModulationFrequency, "1.5kHz", 1500},
        {ControlId::length, "0.3 s", 300},
        {ControlId::leftDelay, "300ms", 0.3f},
        {ControlId::pitch, "+7st", 7},
        {ControlId::dryWet, "70%", 70},
        {ControlId::width, "50%", 0.5f},
        {ControlId::scanning, "-2x", -2},
        {ControlId::amplitude, "-6 dB", 0.501187f},
        {ControlId::rightGain, "-20dB", 0.1f},
        {ControlId::fadeOut, "250ms", 0.25f},
    };
    for (const auto& [id, text, value] : cases) {
        const Result<float> read = parseControlValue(id, text);
        ASSERT_TRUE(read) << read.message();
        EXPECT_FLOAT_EQ(read.value(), value) << text;
    }
    const std::tuple<ControlId, const char*, const char*> wrong[] = {
        {ControlId::density, "85ms", "Density takes 0.5 to 400 Hz, not \"85ms\""},
        {ControlId::amplitude, "+1 dB", "Amplitude takes 0 to 1, not \"+1 dB\""},
        {ControlId::pan, "50%", "Pan takes -1 to 1"}, // of which way would it be?
        {ControlId::width, "-6 dB", "Width takes 0 to 1"},
        {ControlId::measures, "2x", "measures takes 1 to 64"},
    };
    for (const auto& [id, text, said] : wrong)
        EXPECT_EQ(parseControlValue(id, text).message().find(said), 0u) << text;
}

TEST(ControlText, OtherNamesLeadToTheControlAndAbbreviationsAreIt) {
    const std::pair<const char*, ControlId> taken[] = {
        {"jitter", ControlId::jittering},
        {"ring freq", ControlId::ringModulationFrequency},
        {"rnd len", ControlId::rndLength},
        {"len", ControlId::length},
        {"random pitch", ControlId::rndPitch},
        {"left-del", ControlId::leftDelay},
        {"wet", ControlId::dryWet},
        {"ringmodam", ControlId::ringModulationAmount}};
    for (const auto& [name, id] : taken) {
        const auto control = parseControlName(name);
        ASSERT_TRUE(control) << control.message();
        EXPECT_EQ(control.value(), id) << name;
    }
    const std::pair<const char*, const char*> led[] = {
        {"volume", "no control \"volume\"; it is called Amplitude"},
        {"Grain Size", "it is called Length"},
        {"transpose", "it is called Pitch"},
        {"stretch", "it is called Scanning"},
        {"dry", "it is called Dry/Wet"}, // which counts the other way
        {"stop", "it is called Play Stop"},
        {"delay", "which is meant, Left Delay or Right Delay?"},
        {"rnd", "which is meant, Rnd Density, Rnd Length or Rnd Pitch?"},
        {"scan", "Scrubbing Wave or Scanning?"},
        {"frequency", "Density or Ring Modulation Frequency?"},
        {"pi", "the nearest is"},
        {"rmf", "the nearest is"}, // a letter of a word says too little
        {"", "the nearest is"},
        {"densty", "the nearest is \"Density\""}};
    for (const auto& [name, said] : led) {
        const auto control = parseControlName(name);
        ASSERT_FALSE(control) << name;
        EXPECT_NE(control.message().find(said), std::string::npos) << control.message();
    }
    // Hosts' parameters have the same words, but not every control, and identifiers besides.
    EXPECT_EQ(parseParameterName("Volume_0").value(), ControlId::amplitude);
    EXPECT_EQ(parseParameterName("echo s").value(), ControlId::echoSwitch);
    EXPECT_NE(
        parseParameterName("rate").message().find("no parameter \"rate\"; it is called Density"),
        std::string::npos);
}

} // namespace
} // namespace zephyra
