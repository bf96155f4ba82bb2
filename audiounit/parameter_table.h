// ParameterRow: the parameters that hosts see, one row each.
#pragma once

#include "audiounit/audio_struct.h"
#include "platform/audio_unit/audio_unit_parameters.h"
#include "stream/control_ranges.h"

#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

/// What makes gestures of a parameter.
enum class ParameterBinding {
    none,    ///< no control of its own: the play, freeze and LIVE buttons, the scrubbing wave
    control, ///< a knob or toggle, whose range it has
};

/// What the table of controls (stream/control_table.inl) says of a parameter besides its name,
/// range and channel, which are in controlRange(id).
struct ParameterRow {
    ControlId id; ///< its number is the address
    ParameterBinding binding;
    AudioUnitParameterUnit unit;
    OrderedValue audio_struct::*field;
    /// Name of the action that carries the control's value to the parameter; "_down" and "_up"
    /// follow for touch and release. Empty for none.
    const char* handler;
};

/// In address order. Any thread.
std::span<const ParameterRow, kParameterCount> parameterTable() noexcept;

/// The identifier that a host stores: the bound control's channel, else the display name.
std::string parameterIdentifier(const ParameterRow& row, const std::string& suffix);

/// Stores value, of a Boolean one whether it is not 0, as set after the state of that number;
/// addresses above the table are ignored. Any thread.
void storeParameter(audio_struct& record, AUParameterAddress address, AUValue value,
                    StateOrder::Number number) ZEPHYRA_NONBLOCKING;

/// The same unless the parameter was set since state was asked for: false, then. Any thread.
bool storeParameterUnlessSince(audio_struct& record, AUParameterAddress address, AUValue value,
                               StateOrder::Number number,
                               StateOrder::Number state) ZEPHYRA_NONBLOCKING;

/// Whether it was set since the state of that number was asked for; false above the table. Any
/// thread.
bool isParameterSince(const audio_struct& record, AUParameterAddress address,
                      StateOrder::Number state) ZEPHYRA_NONBLOCKING;

/// The value, 0 or 1 for a Boolean one; 0 for addresses above the table. Any thread.
AUValue loadParameter(const audio_struct& record, AUParameterAddress address) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
