// ControlRange: every control of a stream, with its name, range, default, curve and unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zephyra {

/// The controls in the order of their table. The first kParameterCount are the host's parameters,
/// and their numbers the addresses that hosts save automation under.
enum class ControlId : std::uint8_t {
    scrubbingWave,
    amplitude,
    pan,
    dryWet,
    width,
    density,
    rndDensity,
    length,
    rndLength,
    pitch,
    rndPitch,
    scanning,
    jittering,
    echoSwitch,
    leftDelay,
    rightDelay,
    leftGain,
    rightGain,
    ringModulationSwitch,
    ringModulationFrequency,
    ringModulationAmount,
    playStop,
    freeze,
    live,
    normalize,
    scanSync,
    measures,
    quarters,
    echoSync,
    leftSubdivision,
    rightSubdivision,
    fadeIn,
    fadeOut,
    envelope,
};

inline constexpr std::size_t kControlCount = static_cast<std::size_t>(ControlId::envelope) + 1;
inline constexpr std::size_t kParameterCount = static_cast<std::size_t>(ControlId::live) + 1;

/// How the linear value that a control holds becomes the displayed one.
enum class ControlCurve : std::uint8_t {
    linear,      ///< they are the same
    exponential, ///< finer towards the minimum, by the power of stepness
};

/// What values there are between the ends.
enum class ControlKind : std::uint8_t {
    continuous,
    whole,     ///< whole numbers
    switching, ///< 0 is off, anything else on
    choice,    ///< a position in a list of names, from 0
};

/// One control. All values are displayed ones: those that people read and type.
struct ControlRange {
    ControlId id;
    const char* name;
    float minimum;
    float maximum;
    float defaultValue;
    ControlCurve curve = ControlCurve::linear;
    float stepness = 1.0f; ///< exponent of the curve; 1 for a linear one
    const char* unit = ""; ///< "Hz", "ms", ...; empty where there is none
    ControlKind kind = ControlKind::continuous;
    /// What the control's channel begins with; the stream's channel suffix follows. The key that
    /// states are saved under and the start of host identifiers; empty where no control holds it.
    const char* channel = "";
};

/// The table, one entry per ControlId in its order. Any thread.
std::span<const ControlRange, kControlCount> controlRanges() noexcept;

/// The entry of id. Any thread.
const ControlRange& controlRange(ControlId id) noexcept;

/// Whether displayed is finite, inside the range (both ends belong to it), and whole where it must
/// be. Any thread.
bool acceptsValue(const ControlRange& range, float displayed) noexcept;

/// min + (max - min) · ((linear - min) / (max - min)) ^ stepness in single precision; a value
/// outside the range counts as the nearer end. Any thread.
float displayedFromLinear(const ControlRange& range, float linear) noexcept;

/// The inverse, min + (max - min) · ((displayed - min) / (max - min)) ^ (1 / stepness). Any thread.
float linearFromDisplayed(const ControlRange& range, float displayed) noexcept;

} // namespace zephyra
