// The parameters that hosts save automation under.

#include "tests/audiounit/audio_unit_rig.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zephyra {
namespace {

TEST(Parameters, KeepTheirAddressesIdentifiersUnitsAndHandlers) {
    std::ostringstream text;
    for (const ParameterRow& row : parameterTable())
        text << static_cast<int>(row.id) << '|' << controlRange(row.id).name << '|'
             << parameterIdentifier(row, "_0") << '|' << static_cast<int>(row.unit) << '|'
             << row.handler << '\n';
    EXPECT_EQ(text.str(), R"(0|Scrubbing Wave|Scrubbing Wave|6|
1|Amplitude|Volume_0|3|AAUv3_Parameter_volume_from_DSP
2|Pan|Pan_0|18|AUv3_Parameter_pan_from_DSP
3|Dry/Wet|InputDryWet|3|AUv3_Parameter_drywet_from_DSP
4|Width|Width_0|3|AUv3_Parameter_width_from_DSP
5|Density|Density_0|8|AUv3_Parameter_density_from_DSP
6|Rnd Density|Rnd_Density_0|3|AUv3_Parameter_rnd_density_from_DSP
7|Length|Length_0|24|AUv3_Parameter_length_from_DSP
8|Rnd Length|Rnd_Length_0|3|AUv3_Parameter_rnd_len_from_DSP
9|Pitch|Pitch_0|10|AUv3_Parameter_pitch_from_DSP
10|Rnd Pitch|Rnd_Pitch_0|10|AUv3_Parameter_rnd_pitch_from_DSP
11|Scanning|Scanning_0|7|AUv3_Parameter_scanning_from_DSP
12|Jittering|Jittering_0|24|AUv3_Parameter_jitter_from_DSP
13|Echo Switch|EchoSwitch_0|2|AUv3_Parameter_echoSwitch_from_DSP
14|Left Delay|EchoLeftDelay_0|4|AUv3_Parameter_echoDelayLeft_from_DSP
15|Right Delay|EchoRightDelay_0|4|AUv3_Parameter_echoDelayRight_from_DSP
16|Left Gain|EchoLeftGain_0|3|AUv3_Parameter_echoGainLeft_from_DSP
17|Right Gain|EchoRightGain_0|3|AUv3_Parameter_echoGainRight_from_DSP
18|Ring Modulation Switch|RMSwitch_0|2|AUv3_Parameter_rmSwitch_from_DSP
19|Ring Modulation Frequency|RMFrequency_0|8|AUv3_Parameter_rmFrequency_from_DSP
20|Ring Modulation Amount|RMAmount_0|3|AUv3_Parameter_rmAmount_from_DSP
21|Play Stop|Play Stop|2|AUv3_Parameter_playToggle_from_DSP
22|Freeze|Freeze|2|AUv3_Parameter_freezeToggle_from_DSP
23|LIVE|LIVE|2|AUv3_Parameter_LiveToggle_from_DSP
)");
}

TEST(Parameters, StandInAFieldOfTheirOwnEach) {
    AudioUnitRig rig;
    const auto& children = rig.unit->parameterTree()->children();
    for (const auto& child : children) child->setValue(static_cast<float>(child->address()) + 0.4f);
    for (const ParameterRow& row : parameterTable()) {
        const auto address = static_cast<AUParameterAddress>(row.id);
        const bool flag = row.unit == AudioUnitParameterUnit::boolean;
        const float held = flag ? 1.0f : static_cast<float>(address) + 0.4f;
        EXPECT_EQ(children[address]->value(), held);
        EXPECT_EQ(loadParameter(rig.unit->record(), address), held);
        children[address]->setValue(0);
        EXPECT_EQ(children[address]->value(), 0.0f);
    }
    EXPECT_EQ(loadParameter(rig.unit->record(), kParameterCount), 0.0f);
}

TEST(Parameters, TellEverybodyButTheOriginatorAndOutliveTheAudioUnit) {
    auto rig = std::make_unique<AudioUnitRig>();
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

} // namespace
} // namespace zephyra
