// HostParameters: the parameters as the view controller keeps them.
#pragma once

#include "audiounit/parameter_table.h"
#include "platform/audio_unit/audio_unit_parameters.h"
#include "stream/stream_controls.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// One property for each parameter of stream/control_table.inl, under its name there. Made once
/// from the controls; the ranges are those of that moment. MAIN.
struct HostParameters {
    /// dryWet is the input dry/wet knob, the one bound control that is not the stream's.
    HostParameters(StreamControls& controls, MOK_KNOB& dryWet, const std::string& suffix);

// clang-format off
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) parameter
#define PARAMETER(unit, field, property, action) std::shared_ptr<AUParameter> property;
#define NO_PARAMETER
#include "stream/control_table.inl"
    // clang-format on

    /// All of them in address order.
    std::vector<std::shared_ptr<AUParameter>> _paramChildrens;
};

/// The knob or toggle whose value a parameter carries; null for a row without one. MAIN.
Control* boundControl(const ParameterRow& row, StreamControls& controls, MOK_KNOB& dryWet);

/// parameter_flag bits: logarithmic display for an exponential knob whose minimum is above 0, plain
/// for every other control and for null.
std::uint32_t getFlags(const Control* control);

} // namespace zephyra
