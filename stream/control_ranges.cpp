#include "stream/control_ranges.h"

#include "engine/envelope_menu.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

using enum ControlId;
using enum ControlCurve;
using enum ControlKind;

constexpr float kLastEnvelope = static_cast<float>(kEnvelopeMenu.size() - 1);
constexpr float kLastSubdivision = static_cast<float>(kSubdivisionNames.size() - 1);

// clang-format off
constexpr std::array<ControlRange, kControlCount> kRanges = {{
    // id                      name                      min     max      default  curve, stepness   unit
    {scrubbingWave,           "Scrubbing Wave",            0.0f,    1.0f,   0.0f},
    {amplitude,               "Amplitude",                 0.0f,    1.0f,   0.5f},
    {pan,                     "Pan",                      -1.0f,    1.0f,   0.0f},
    {dryWet,                  "Dry/Wet",                   0.0f,  100.0f,  50.0f,   linear, 1.0f,      "%"},
    {width,                   "Width",                     0.0f,    1.0f,   0.25f},
    {density,                 "Density",                   0.5f,  400.0f,  50.0f,   exponential, 3.0f, "Hz"},
    {rndDensity,              "Rnd Density",               0.0f,    1.0f,   0.5f},
    {length,                  "Length",                    5.0f, 2000.0f,  85.0f,   exponential, 3.0f, "ms"},
    {rndLength,               "Rnd Length",                0.0f,    1.0f,   0.5f},
    {pitch,                   "Pitch",                   -24.0f,   24.0f,   0.0f,   linear, 1.0f,      "semitones"},
    {rndPitch,                "Rnd Pitch",                 0.0f,   24.0f,   0.0f,   linear, 1.0f,      "semitones"},
    {scanning,                "Scanning",                 -4.0f,    4.0f,   1.0f,   linear, 1.0f,      "x"},
    {jittering,               "Jittering",                 0.0f, 1000.0f,   5.0f,   exponential, 4.0f, "ms"},
    {echoSwitch,              "Echo Switch",               0.0f,    1.0f,   0.0f,   linear, 1.0f,      "", switching},
    {leftDelay,               "Left Delay",                0.001f,  4.5f,   0.3f,   linear, 1.0f,      "s"},
    {rightDelay,              "Right Delay",               0.001f,  4.5f,   0.25f,  linear, 1.0f,      "s"},
    {leftGain,                "Left Gain",                 0.0f,    0.98f,  0.341f},
    {rightGain,               "Right Gain",                0.0f,    0.98f,  0.231f},
    {ringModulationSwitch,    "Ring Modulation Switch",    0.0f,    1.0f,   0.0f,   linear, 1.0f,      "", switching},
    {ringModulationFrequency, "Ring Modulation Frequency", 0.1f, 8000.0f, 220.0f,   exponential, 4.0f, "Hz"},
    {ringModulationAmount,    "Ring Modulation Amount",    0.0f,    1.0f,   0.5f},
    {normalize,               "Normalize",                 0.0f,    1.0f,   1.0f},
    {measures,                "measures",                  1.0f,   64.0f,   1.0f,   linear, 1.0f,      "", whole},
    {quarters,                "quarters",                  0.0f,   16.0f,   4.0f,   linear, 1.0f,      "", whole},
    {subdivisions,            "subdivisions",              0.0f, kLastSubdivision, 7.0f, linear, 1.0f, "", choice},
    {fadeIn,                  "fade in",                   0.0f,   10.0f,   0.05f,  linear, 1.0f,      "s"},
    {fadeOut,                 "fade out",                  0.0f,   10.0f,   0.25f,  linear, 1.0f,      "s"},
    {envelope,                "envelope",                  0.0f, kLastEnvelope,
     static_cast<float>(kDefaultEnvelope),                                          linear, 1.0f,      "", choice},
}};
// clang-format on

static_assert(
    [] {
        for (std::size_t i = 0; i < kRanges.size(); ++i)
            if (static_cast<std::size_t>(kRanges[i].id) != i) return false;
        return true;
    }(),
    "the table is in the order of ControlId");

/// min + (max - min) · ((value - min) / (max - min)) ^ exponent; the power is taken in double and
/// rounded, everything else is single precision.
float bend(const ControlRange& range, float value, double exponent) noexcept {
    const float span = range.maximum - range.minimum;
    const float norm = std::clamp((value - range.minimum) / span, 0.0f, 1.0f);
    return range.minimum + span * static_cast<float>(std::pow(double{norm}, exponent));
}

} // namespace

std::span<const ControlRange, kControlCount> controlRanges() noexcept {
    return kRanges;
}

const ControlRange& controlRange(ControlId id) noexcept {
    return kRanges[static_cast<std::size_t>(id)];
}

bool acceptsValue(const ControlRange& range, float displayed) noexcept {
    if (!(displayed >= range.minimum && displayed <= range.maximum)) return false;
    const bool counts = range.kind == whole || range.kind == choice;
    return !counts || displayed == std::trunc(displayed);
}

float displayedFromLinear(const ControlRange& range, float linearValue) noexcept {
    if (range.curve == linear) return std::clamp(linearValue, range.minimum, range.maximum);
    return bend(range, linearValue, double{range.stepness});
}

float linearFromDisplayed(const ControlRange& range, float displayed) noexcept {
    if (range.curve == linear) return std::clamp(displayed, range.minimum, range.maximum);
    return bend(range, displayed, 1.0 / double{range.stepness});
}

} // namespace zephyra
