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
    const char* unit; ///< of displayed values: "Hz", "ms", "s", "st", "%", "x", or empty
    float minimum, maximum, defaultValue; ///< displayed
    bool isSwitch;                        ///< 0 or 1
    bool isExponential;                   ///< finer towards the minimum
};

/// In address order. Any thread.
std::span<const PluginParameter, kParameterCount> pluginParameters() noexcept;

// 0..1 runs evenly over the linear values, so that an exponential control is as fine in a host's
// slider as under a finger. What is outside the range counts as the nearer end. Any thread.
float linearFromNormalized(const PluginParameter& parameter, float normalized) noexcept;
float normalizedFromLinear(const PluginParameter& parameter, float linear) noexcept;

/// "250 ms", "1.2 kHz", "-7 st", "On", of a linear value; with the unit. Any thread but RENDER.
std::string parameterText(const PluginParameter& parameter, float linear);
/// The linear value that text means, with or without a unit; none for what is no value of the
/// parameter. What parameterText writes reads back. Any thread but RENDER.
std::optional<float> parameterFromText(const PluginParameter& parameter, std::string_view text);

} // namespace zephyra
