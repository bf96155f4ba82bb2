// HostParameters: the 24 parameters as the view controller keeps them.
#pragma once

#include "audiounit/parameter_table.h"
#include "platform/audio_unit/audio_unit_parameters.h"
#include "stream/stream_controls.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// Made once from the controls; the ranges are those of that moment. MAIN.
struct HostParameters {
    /// dryWet is the input dry/wet knob, the one bound control that is not the stream's.
    HostParameters(StreamControls& controls, MOK_KNOB& dryWet, const std::string& suffix);

    std::shared_ptr<AUParameter> _scrubParameter, _volume_Parameter, _pan_Parameter,
        _drywetParameter, _width_Parameter, _density_Parameter, _rnd_density_Parameter,
        _length_Parameter, _rnd_len_Parameter, _pitch_Parameter, _rnd_pitch_Parameter,
        _scanning_Parameter, _jitter_Parameter, _echoSwitch_Parameter, _echoDelayLeft_Parameter,
        _echoDelayRight_Parameter, _echoGainLeft_Parameter, _echoGainRight_Parameter,
        _rmSwitch_Parameter, _rmFrequency_Parameter, _rmAmount_Parameter, _playStop_Parameter,
        _freezeToggle_Parameter, _enableLIVE_Parameter;

    /// All of them in address order.
    std::vector<std::shared_ptr<AUParameter>> _paramChildrens;
};

/// The knob or toggle whose value a parameter carries; null for a row without one. MAIN.
Control* boundControl(const ParameterRow& row, StreamControls& controls, MOK_KNOB& dryWet);

/// parameter_flag bits: logarithmic display for an exponential knob whose minimum is above 0, plain
/// for every other control and for null.
std::uint32_t getFlags(const Control* control);

} // namespace zephyra
