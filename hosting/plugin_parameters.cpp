#include "hosting/plugin_parameters.h"

#include "audiounit/control_meaning.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zephyra {

namespace {

constexpr PluginParameterGroup kPlay = {"play", "Play"}, kScan = {"scan", "Scan"},
                               kLevel = {"level", "Level"}, kGrains = {"grains", "Grains"},
                               kPitch = {"pitch", "Pitch"}, kEcho = {"echo", "Echo"},
                               kRing = {"ring", "Ring Modulation"};

struct Names {
    const char *symbol, *shortName, *unit;
    const PluginParameterGroup* group;
};

constexpr Names kNames[kParameterCount] = {
    {"scrubbing_wave", "Scrub", "", &kScan},
    {"amplitude", "Amp", "", &kLevel},
    {"pan", "Pan", "", &kLevel},
    {"dry_wet", "Dry/Wet", "%", &kLevel},
    {"width", "Width", "", &kLevel},
    {"density", "Density", "Hz", &kGrains},
    {"rnd_density", "RndDens", "", &kGrains},
    {"length", "Length", "ms", &kGrains},
    {"rnd_length", "RndLen", "", &kGrains},
    {"pitch", "Pitch", "st", &kPitch},
    {"rnd_pitch", "RndPitch", "st", &kPitch},
    {"scanning", "Scan", "x", &kScan},
    {"jittering", "Jitter", "ms", &kScan},
    {"echo_switch", "Echo", "", &kEcho},
    {"left_delay", "DelayL", "s", &kEcho},
    {"right_delay", "DelayR", "s", &kEcho},
    {"left_gain", "GainL", "", &kEcho},
    {"right_gain", "GainR", "", &kEcho},
    {"ring_switch", "Ring", "", &kRing},
    {"ring_frequency", "RingFreq", "Hz", &kRing},
    {"ring_amount", "RingAmt", "", &kRing},
    {"play_stop", "Play", "", &kPlay},
    {"freeze", "Freeze", "", &kPlay},
    {"live", "LIVE", "", &kPlay},
};

std::array<PluginParameter, kParameterCount> makeParameters() {
    std::array<PluginParameter, kParameterCount> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const ControlRange& range = controlRange(static_cast<ControlId>(i));
        const Names& names = kNames[i];
        all[i] = {.id = range.id,
                  .symbol = names.symbol,
                  .name = range.name,
                  .shortName = names.shortName,
                  .meaning = controlMeaning(range.id),
                  .group = names.group,
                  .unit = names.unit,
                  .minimum = range.minimum,
                  .maximum = range.maximum,
                  .defaultValue = range.defaultValue,
                  .isSwitch = range.kind == ControlKind::switching,
                  .isExponential = range.curve == ControlCurve::exponential};
    }
    return all;
}

} // namespace

std::span<const PluginParameter, kParameterCount> pluginParameters() noexcept {
    static const auto all = makeParameters();
    return all;
}

float linearFromNormalized(const PluginParameter& parameter, float normalized) noexcept {
    if (!(normalized > 0.0f)) return parameter.minimum; // neither does what is no number
    if (parameter.isSwitch) return normalized < 0.5f ? 0.0f : 1.0f;
    return std::lerp(parameter.minimum, parameter.maximum, std::min(normalized, 1.0f));
}

float normalizedFromLinear(const PluginParameter& parameter, float linear) noexcept {
    if (!(linear > parameter.minimum)) return 0.0f;
    return std::min((linear - parameter.minimum) / (parameter.maximum - parameter.minimum), 1.0f);
}

} // namespace zephyra
