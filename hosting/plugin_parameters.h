// PluginParameter: a parameter as hosts show it: names, range, steps, texts.
#pragma once

#include "platform/audio_unit/audio_unit_events.h"
#include "stream/control_ranges.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zephyra {

/// What belongs together on a host's page.
struct PluginParameterGroup {
    const char* symbol; ///< letters and underscores, for ever
    const char* name;   ///< "Grains", "Echo"
};

/// Facts that never change but for names and texts: hosts keep automation by number and symbol.
struct PluginParameter {
    ControlId id;          ///< its number is the address, 0 to 23
    const char* symbol;    ///< "rnd_density": letters, digits and underscores
    const char* name;      ///< the control's own
    const char* shortName; ///< at most 8 characters
    const char* meaning;   ///< a sentence or two for people
    const PluginParameterGroup* group;
    /// Of the three numbers below: "Hz", "ms", "s", "st", "%", "x"; empty for switches, Pan and
    /// shares of 1, whatever texts say.
    const char* unit;
    float minimum, maximum, defaultValue; ///< displayed
    bool isSwitch;                        ///< 0 or 1
    bool isExponential;                   ///< finer towards the minimum
};

/// In address order. Any thread.
std::span<const PluginParameter, kParameterCount> pluginParameters() noexcept;

// 0..1 runs evenly over the linear values, so that an exponential control is as fine in a host's
// slider as under a finger. What is outside the range, or no number, counts as the nearer end; a
// switch is on from 0.5. Any thread.
float linearFromNormalized(const PluginParameter& parameter, float normalized) noexcept;
float normalizedFromLinear(const PluginParameter& parameter, float linear) noexcept;

/// "250 ms", "1.2 kHz", "-7 st", "12.5 %", "30 L", "On", of a linear value; with the unit, where
/// levels and amounts from 0 to 1 are shown in percent. Any thread but RENDER.
std::string parameterText(const PluginParameter& parameter, float linear);
/// The linear value that text means: a number in the parameter's unit, without one or with another
/// of the kind ("0.3 s", "-6 dB", "1 oct", "50%"), a side for Pan ("L30"), On or Off; a share above
/// 1 without a unit is percent. None for what is no value of the parameter. What parameterText
/// writes reads back to the digits shown, and a value typed in so few digits to the last bit. Any
/// thread but RENDER.
std::optional<float> parameterFromText(const PluginParameter& parameter, std::string_view text);

} // namespace zephyra
