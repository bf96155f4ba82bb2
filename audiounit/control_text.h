// ControlSetting: a control and its new value, as typed on the command line.
#pragma once

#include "platform/text/result.h"
#include "stream/control_ranges.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// value is a displayed one, within the control's range; 0 and 1 for a switch, the position of the
/// name for a choice.
struct ControlSetting {
    ControlId control;
    float value;
};

/// A setting that takes effect at a time of the output.
struct TimedSetting {
    double seconds; ///< from 0 up
    ControlSetting setting;
};

/// The controls that can be set here, in their table's order.
std::span<const ControlId> settableControls();

/// Reads NAME=VALUE. Case, spaces and punctuation of NAME do not matter; VALUE is a number within
/// the control's range, on/off for a switch, or a name for a choice. The failure says what would be
/// right.
Result<ControlSetting> parseSetting(std::string_view text);

/// Reads SECONDS:NAME=VALUE.
Result<TimedSetting> parseTimedSetting(std::string_view text);

/// The control among settableControls() that name means. The failure says which is the nearest.
Result<ControlId> parseControlName(std::string_view name);

/// The host's parameter that name means. The failure says which is the nearest.
Result<ControlId> parseParameterName(std::string_view name);

/// The value that text means for the control.
Result<float> parseControlValue(ControlId control, std::string_view text);

/// "-24 to 24 semitones", "on or off", "1/1D to 1/128".
std::string rangeText(const ControlRange& range);

/// A displayed value of the control: "80 Hz", "on", "1/8T".
std::string valueText(const ControlRange& range, float value);

/// "Density 80 Hz", "Echo Switch on".
std::string settingText(const ControlSetting& setting);

} // namespace zephyra
