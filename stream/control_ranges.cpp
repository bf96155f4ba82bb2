#include "stream/control_ranges.h"

#include "controls/curved_knobs.h"
#include "controls/note_values.h"
#include "engine/envelope_menu.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zephyra {

namespace {

using enum ControlId;
using enum ControlCurve;
using enum ControlKind;

constexpr float kLastEnvelope = static_cast<float>(kEnvelopeMenu.size() - 1);
constexpr float kLastSubdivision = static_cast<float>(kNoteValues.size() - 1);

// clang-format off
constexpr std::array<ControlRange, kControlCount> kRanges = {{
    // id                      name                         min     max      default  curve, stepness    unit         kind        channel
    {scrubbingWave,           "Scrubbing Wave",            0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          continuous, ""},
    {amplitude,               "Amplitude",                 0.0f,    1.0f,     0.5f,   linear, 1.0f,      "",          continuous, "Volume"},
    {pan,                     "Pan",                      -1.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          continuous, "Pan"},
    {dryWet,                  "Dry/Wet",                   0.0f,  100.0f,    50.0f,   linear, 1.0f,      "%",         continuous, "InputDryWet"},
    {width,                   "Width",                     0.0f,    1.0f,     0.25f,  linear, 1.0f,      "",          continuous, "Width"},
    {density,                 "Density",                   0.5f,  400.0f,    50.0f,   exponential, 3.0f, "Hz",        continuous, "Density"},
    {rndDensity,              "Rnd Density",               0.0f,    1.0f,     0.5f,   linear, 1.0f,      "",          continuous, "Rnd_Density"},
    {length,                  "Length",                    5.0f, 2000.0f,    85.0f,   exponential, 3.0f, "ms",        continuous, "Length"},
    {rndLength,               "Rnd Length",                0.0f,    1.0f,     0.5f,   linear, 1.0f,      "",          continuous, "Rnd_Length"},
    {pitch,                   "Pitch",                   -24.0f,   24.0f,     0.0f,   linear, 1.0f,      "semitones", continuous, "Pitch"},
    {rndPitch,                "Rnd Pitch",                 0.0f,   24.0f,     0.0f,   linear, 1.0f,      "semitones", continuous, "Rnd_Pitch"},
    {scanning,                "Scanning",                 -4.0f,    4.0f,     1.0f,   linear, 1.0f,      "x",         continuous, "Scanning"},
    {jittering,               "Jittering",                 0.0f, 1000.0f,     5.0f,   exponential, 4.0f, "ms",        continuous, "Jittering"},
    {echoSwitch,              "Echo Switch",               0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "EchoSwitch"},
    {leftDelay,               "Left Delay",                0.001f,  4.5f,     0.3f,   linear, 1.0f,      "s",         continuous, "EchoLeftDelay"},
    {rightDelay,              "Right Delay",               0.001f,  4.5f,     0.25f,  linear, 1.0f,      "s",         continuous, "EchoRightDelay"},
    {leftGain,                "Left Gain",                 0.0f,    0.98f,    0.341f, linear, 1.0f,      "",          continuous, "EchoLeftGain"},
    {rightGain,               "Right Gain",                0.0f,    0.98f,    0.231f, linear, 1.0f,      "",          continuous, "EchoRightGain"},
    {ringModulationSwitch,    "Ring Modulation Switch",    0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "RMSwitch"},
    {ringModulationFrequency, "Ring Modulation Frequency", 0.1f, 8000.0f,   220.0f,   exponential, 4.0f, "Hz",        continuous, "RMFrequency"},
    {ringModulationAmount,    "Ring Modulation Amount",    0.0f,    1.0f,     0.5f,   linear, 1.0f,      "",          continuous, "RMAmount"},
    {playStop,                "Play Stop",                 0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  ""},
    {freeze,                  "Freeze",                    0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "Freeze"},
    {live,                    "LIVE",                      0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "LIVE"},
    {normalize,               "Normalize",                 0.0f,    1.0f,     1.0f,   linear, 1.0f,      "",          continuous, "Normalize"},
    {scanSync,                "Scan Sync",                 0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "ScanSync"},
    {measures,                "measures",                  1.0f,   64.0f,     1.0f,   linear, 1.0f,      "",          whole,      "Mesures Sample"},
    {quarters,                "quarters",                  0.0f,   16.0f,     4.0f,   linear, 1.0f,      "",          whole,      "Mesures Quarter"},
    {echoSync,                "Echo Sync",                 0.0f,    1.0f,     0.0f,   linear, 1.0f,      "",          switching,  "DelaySync"},
    {leftSubdivision,         "Subdiv Left",  0.0f, kLastSubdivision,         7.0f,   linear, 1.0f,      "",          choice,     "DelaySubLeft"},
    {rightSubdivision,        "Subdiv Right", 0.0f, kLastSubdivision,         7.0f,   linear, 1.0f,      "",          choice,     "DelaySubRight"},
    {fadeIn,                  "fade in",                   0.0f,   10.0f,     0.05f,  linear, 1.0f,      "s",         continuous, "FadeInTime"},
    {fadeOut,                 "fade out",                  0.0f,   10.0f,     0.25f,  linear, 1.0f,      "s",         continuous, "FadeOutTime"},
    {envelope,                "envelope",                  0.0f, kLastEnvelope,
     static_cast<float>(kDefaultEnvelope),                                            linear, 1.0f,      "",          choice,     "Envelope"},
}};
// clang-format on

static_assert(
    [] {
        for (std::size_t i = 0; i < kRanges.size(); ++i)
            if (static_cast<std::size_t>(kRanges[i].id) != i) return false;
        return true;
    }(),
    "the table is in the order of ControlId");

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
    return bendInRange(linearValue, range.minimum, range.maximum, double{range.stepness});
}

float linearFromDisplayed(const ControlRange& range, float displayed) noexcept {
    if (range.curve == linear) return std::clamp(displayed, range.minimum, range.maximum);
    return bendInRange(displayed, range.minimum, range.maximum, 1.0 / double{range.stepness});
}

} // namespace zephyra
