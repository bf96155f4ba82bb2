#include "audiounit/parameter_table.h"

#include <array>

namespace zephyra {

namespace {

using enum AudioUnitParameterUnit;
using enum ParameterBinding;
using Record = audio_struct;

// clang-format off
constexpr std::array<ParameterRow, kParameterCount> kRows = {{
    // id                                unit               field                        binding  handler
    {ControlId::scrubbingWave,           phase,             &Record::scrubValue,          none,    ""},
    {ControlId::amplitude,               percent,           &Record::volumeValue,         control, "AAUv3_Parameter_volume_from_DSP"},
    {ControlId::pan,                     AudioUnitParameterUnit::pan, &Record::panValue,  control, "AUv3_Parameter_pan_from_DSP"},
    {ControlId::dryWet,                  percent,           &Record::drywetValue,         control, "AUv3_Parameter_drywet_from_DSP"},
    {ControlId::width,                   percent,           &Record::widthValue,          control, "AUv3_Parameter_width_from_DSP"},
    {ControlId::density,                 hertz,             &Record::densityValue,        control, "AUv3_Parameter_density_from_DSP"},
    {ControlId::rndDensity,              percent,           &Record::rnd_densityValue,    control, "AUv3_Parameter_rnd_density_from_DSP"},
    {ControlId::length,                  milliseconds,      &Record::lengthValue,         control, "AUv3_Parameter_length_from_DSP"},
    {ControlId::rndLength,               percent,           &Record::rnd_lenValue,        control, "AUv3_Parameter_rnd_len_from_DSP"},
    {ControlId::pitch,                   relativeSemiTones, &Record::pitchValue,          control, "AUv3_Parameter_pitch_from_DSP"},
    {ControlId::rndPitch,                relativeSemiTones, &Record::rnd_pitchValue,      control, "AUv3_Parameter_rnd_pitch_from_DSP"},
    {ControlId::scanning,                rate,              &Record::scanningValue,       control, "AUv3_Parameter_scanning_from_DSP"},
    {ControlId::jittering,               milliseconds,      &Record::jitterValue,         control, "AUv3_Parameter_jitter_from_DSP"},
    {ControlId::echoSwitch,              boolean,           &Record::echoSwitchValue,     control, "AUv3_Parameter_echoSwitch_from_DSP"},
    {ControlId::leftDelay,               seconds,           &Record::echoDelayLeftValue,  control, "AUv3_Parameter_echoDelayLeft_from_DSP"},
    {ControlId::rightDelay,              seconds,           &Record::echoDelayRightValue, control, "AUv3_Parameter_echoDelayRight_from_DSP"},
    {ControlId::leftGain,                percent,           &Record::echoGainLeftValue,   control, "AUv3_Parameter_echoGainLeft_from_DSP"},
    {ControlId::rightGain,               percent,           &Record::echoGainRightValue,  control, "AUv3_Parameter_echoGainRight_from_DSP"},
    {ControlId::ringModulationSwitch,    boolean,           &Record::rmSwitchValue,       control, "AUv3_Parameter_rmSwitch_from_DSP"},
    {ControlId::ringModulationFrequency, hertz,             &Record::rmFrequencyValue,    control, "AUv3_Parameter_rmFrequency_from_DSP"},
    {ControlId::ringModulationAmount,    percent,           &Record::rmAmountValue,       control, "AUv3_Parameter_rmAmount_from_DSP"},
    {ControlId::playStop,                boolean,           &Record::playStopValue,       none,    "AUv3_Parameter_playToggle_from_DSP"},
    {ControlId::freeze,                  boolean,           &Record::freezeValue,         none,    "AUv3_Parameter_freezeToggle_from_DSP"},
    {ControlId::live,                    boolean,           &Record::liveValue,           none,    "AUv3_Parameter_LiveToggle_from_DSP"},
}};
// clang-format on

static_assert(
    [] {
        for (std::size_t i = 0; i < kRows.size(); ++i)
            if (static_cast<std::size_t>(kRows[i].id) != i) return false;
        return true;
    }(),
    "a row's place is its address");

} // namespace

std::span<const ParameterRow, kParameterCount> parameterTable() noexcept {
    return kRows;
}

std::string parameterIdentifier(const ParameterRow& row, const std::string& suffix) {
    const ControlRange& range = controlRange(row.id);
    if (row.binding == none) return range.name;
    // The dry/wet knob mixes the whole unit: it is no stream's.
    return row.id == ControlId::dryWet ? range.channel : range.channel + suffix;
}

void storeParameter(audio_struct& record, AUParameterAddress address,
                    AUValue value) ZEPHYRA_NONBLOCKING {
    if (address >= kRows.size()) return;
    const ParameterField& field = kRows[address].field;
    if (const auto* number = std::get_if<Relaxed<float> audio_struct::*>(&field))
        (record.**number).store(value);
    else if (const auto* flag = std::get_if<Relaxed<bool> audio_struct::*>(&field))
        (record.**flag).store(value != 0.0f);
}

AUValue loadParameter(const audio_struct& record, AUParameterAddress address) ZEPHYRA_NONBLOCKING {
    if (address >= kRows.size()) return 0.0f;
    const ParameterField& field = kRows[address].field;
    if (const auto* number = std::get_if<Relaxed<float> audio_struct::*>(&field))
        return (record.**number).load();
    const auto* flag = std::get_if<Relaxed<bool> audio_struct::*>(&field);
    return flag && (record.**flag).load() ? 1.0f : 0.0f;
}

} // namespace zephyra
