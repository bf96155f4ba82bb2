// settableControls and its kin: the names and values of controls as people read and type them.
#pragma once

#include "platform/text/result.h"
#include "stream/control_setting.h"

#include <span>
#include <string>
#include <string_view>

namespace zephyra {

// For hosts, the command and screens alike. Case, spaces and punctuation of what is read do not
// matter. Any thread but RENDER.

/// The controls that are set by a name and a value, in their table's order: all but the envelope.
std::span<const ControlId> settableControls();

/// The control among settableControls() that name means, see control_names.h. The failure says
/// which may be meant, or is the nearest.
Result<ControlId> parseControlName(std::string_view name);

/// The same for the host's parameters, which may also be called by their identifiers.
Result<ControlId> parseParameterName(std::string_view name);

/// The displayed value that text means for the control: a number within its range, in its unit or
/// with one of the same kind ("1.5kHz", "0.3 s", "50%", a level's "-12 dB"), on or off for a
/// switch, a name for a choice. What valueText() writes reads back. The failure says what would be
/// right.
Result<float> parseControlValue(ControlId control, std::string_view text);

/// "-24 to 24 semitones", "on or off", "1/1D to 1/128".
std::string rangeText(const ControlRange& range);

/// A displayed value of the control: "80 Hz", "on", "1/8T".
std::string valueText(const ControlRange& range, float value);

/// "Density 80 Hz", "Echo Switch on".
std::string settingText(const ControlSetting& setting);

} // namespace zephyra
