// ControlRange: every control of a stream, with its name, range, default, curve and unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zephyra {

// clang-format off
/// The controls in the order of their table. The first kParameterCount are the host's parameters,
/// and their numbers the addresses that hosts save automation under.
enum class ControlId : std::uint8_t {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) id,
#include "stream/control_table.inl"
};

inline constexpr std::size_t kControlCount = 0
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) + 1
#include "stream/control_table.inl"
    ;

inline constexpr std::size_t kParameterCount = 0
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) parameter
#define PARAMETER(unit, field, property, action) + 1
#define NO_PARAMETER
#include "stream/control_table.inl"
    ;
// clang-format on

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

/// What modulation shows in one colour; the numbers are those of ControlManagerDataSource.
enum class ControlGroup : std::uint8_t { transport, scan, level, grains, pitch, echo, ring };

inline constexpr int kNotMoved = -1; ///< the place of what modulation cannot move

/// The row of one control, as far as any folder needs it. All values are displayed ones: those that
/// people read and type.
struct ControlRange {
    ControlId id;
    const char* name;
    float minimum;
    float maximum;
    float defaultValue;
    ControlCurve curve;
    float stepness;   ///< exponent of the curve; 1 for a linear one
    const char* unit; ///< "Hz", "ms", ...; empty where there is none
    ControlKind kind;
    /// What the control's channel begins with; the stream's channel suffix follows. The key that
    /// states are saved under and the start of host identifiers; empty where no control holds it.
    const char* channel;
    bool kept; ///< by the stream's state under its channel: a switch as a Boolean, else linear
    ControlGroup group;
    int place; ///< among what modulation moves, from 0; kNotMoved
};

/// The table, one entry per ControlId in its order. Any thread.
std::span<const ControlRange, kControlCount> controlRanges() noexcept;

/// The entry of id. Any thread.
const ControlRange& controlRange(ControlId id) noexcept;

/// The channel of the control in the stream that suffix stands for. Dry/Wet is the whole unit's: it
/// has no suffix. Any thread but RENDER.
std::string controlChannel(const ControlRange& range, const std::string& suffix);

/// Whether displayed is finite, inside the range (both ends belong to it), and whole where it must
/// be. Any thread.
bool acceptsValue(const ControlRange& range, float displayed) noexcept;

/// min + (max - min) · ((linear - min) / (max - min)) ^ stepness in single precision; a value
/// outside the range counts as the nearer end. Any thread.
float displayedFromLinear(const ControlRange& range, float linear) noexcept;

/// The inverse, min + (max - min) · ((displayed - min) / (max - min)) ^ (1 / stepness). Any thread.
float linearFromDisplayed(const ControlRange& range, float displayed) noexcept;

} // namespace zephyra
