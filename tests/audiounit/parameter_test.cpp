// The table of controls, frozen, their names and values as they are typed, and the parameters that
// hosts save automation under.

#include "audiounit/control_meaning.h"
#include "audiounit/control_text.h"
#include "controls/note_values.h"
#include "platform/text/text_numbers.h"
#include "tests/support/fake_host.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

// Saved settings, hosts' automation and, behind the @, the order of saved assignments depend on
// every character of the text. Behind the semicolon is what only a host's parameter has.
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
    for (const NoteValue& note : kNoteValues)
        text << note.name << (&note == &kNoteValues.back() ? '\n' : ' ');
    EXPECT_EQ(text.str(), readText(ZEPHYRA_SOURCE_DIR "/tests/saved_files/controls.txt"));
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
    EXPECT_EQ(std::tuple(told, pitch.value()), std::tuple("recorded stored ", 0.0f));
}

TEST(ControlText, EveryControlTakesBothItsEndsAndNothingBeyond) {
    ASSERT_EQ(settableControls().size(), 33u);
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        if (range.kind == ControlKind::choice) continue; // chosen by names
        SCOPED_TRACE(range.name);
        EXPECT_EQ(must(parseControlName(range.name)), id);
        const auto typed = [id](float value) { return parseControlValue(id, formatNumber(value)); };
        for (const float end : {range.minimum, range.maximum, range.defaultValue}) {
            EXPECT_EQ(must(typed(end)), end);
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
        {"scanning", "-0.25", "Scanning -0.25 x"}};
    for (const auto& [name, typed, shown] : cases) {
        const auto control = must(parseControlName(name));
        EXPECT_EQ(settingText({control, must(parseControlValue(control, typed))}), shown);
    }
}

TEST(ControlText, WhatMessagesPrintOfEveryControlReadsBack) {
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        const auto expectRead = [&](const std::string& text, float value) {
            EXPECT_FLOAT_EQ(must(parseControlValue(id, text)), value) << text;
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
        {ControlId::fadeOut, "250ms", 0.25f}};
    for (const auto& [id, text, value] : cases) {
        EXPECT_FLOAT_EQ(must(parseControlValue(id, text)), value) << text;
    }
    const std::tuple<ControlId, const char*, const char*> wrong[] = {
        {ControlId::density, "85ms", "Density takes 0.5 to 400 Hz, not \"85ms\""},
        {ControlId::amplitude, "+1 dB", "Amplitude takes 0 to 1, not \"+1 dB\""},
        {ControlId::pan, "50%", "Pan takes -1 to 1"}, // of which way would it be?
        {ControlId::width, "-6 dB", "Width takes 0 to 1"},
        {ControlId::measures, "2x", "measures takes 1 to 64"}};
    for (const auto& [id, text, said] : wrong)
        EXPECT_THAT(failureOf(parseControlValue(id, text)), StartsWith(said));
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
        EXPECT_EQ(must(parseControlName(name)), id) << name;
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
        EXPECT_THAT(failureOf(parseControlName(name)), HasSubstr(said)) << name;
    }
    // Hosts' parameters have the same words, but not every control, and identifiers besides.
    EXPECT_EQ(parseParameterName("Volume_0").value(), ControlId::amplitude);
    EXPECT_EQ(parseParameterName("echo s").value(), ControlId::echoSwitch);
    EXPECT_THAT(failureOf(parseParameterName("rate")),
                HasSubstr("no parameter \"rate\"; it is called Density"));
}

} // namespace
} // namespace zephyra
