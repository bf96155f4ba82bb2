#include "cli/control_names.h"

#include "cli/nearest_name.h"
#include "cli/text_numbers.h"

#include <algorithm>
#include <array>
#include <optional>

namespace zephyra {

namespace {

// What the audio unit adds around a stream; a single stream has nothing to apply them to.
constexpr std::array<std::string_view, 4> kAudioUnitNames = {"Dry/Wet", "Play Stop", "Freeze",
                                                             "LIVE"};

constexpr std::array<ControlId, 21> kSettable = {
    ControlId::scrubbingWave,
    ControlId::amplitude,
    ControlId::pan,
    ControlId::width,
    ControlId::density,
    ControlId::rndDensity,
    ControlId::length,
    ControlId::rndLength,
    ControlId::pitch,
    ControlId::rndPitch,
    ControlId::scanning,
    ControlId::jittering,
    ControlId::echoSwitch,
    ControlId::leftDelay,
    ControlId::rightDelay,
    ControlId::leftGain,
    ControlId::rightGain,
    ControlId::ringModulationSwitch,
    ControlId::ringModulationFrequency,
    ControlId::ringModulationAmount,
    ControlId::normalize,
};

std::string withUnit(const std::string& number, const char* unit) {
    return *unit ? number + " " + unit : number;
}

Failure unknownName(std::string_view name) {
    std::vector<std::string_view> names;
    for (const ControlId id : kSettable) names.emplace_back(controlRange(id).name);
    return {"there is no control " + inQuotes(name) + "; the nearest is " +
            inQuotes(nearestName(name, names))};
}

Result<ControlId> findControl(std::string_view name) {
    const std::string plain = plainName(name);
    for (const ControlId id : kSettable)
        if (plainName(controlRange(id).name) == plain) return id;
    for (const std::string_view unitName : kAudioUnitNames)
        if (plainName(unitName) == plain)
            return Failure{inQuotes(unitName) +
                           " comes with the audio unit and cannot be set in a render"};
    if (plain == "envelope") return Failure{"the envelope is chosen with --envelope NAME"};
    return unknownName(name);
}

std::optional<float> parseValue(const ControlRange& range, std::string_view text) {
    if (range.kind == ControlKind::switching) {
        const std::string word = plainName(text);
        if (word == "on" || word == "1") return 1.0f;
        if (word == "off" || word == "0") return 0.0f;
        return std::nullopt;
    }
    const std::optional<double> number = parseNumber(text);
    if (!number) return std::nullopt;
    // The ends belong to the range, also where single precision rounds them inwards.
    const auto value = static_cast<float>(*number);
    return acceptsValue(range, value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::span<const ControlId> settableControls() {
    return kSettable;
}

std::string rangeText(const ControlRange& range) {
    if (range.kind == ControlKind::switching) return "on or off";
    return formatNumber(range.minimum) + " to " + withUnit(formatNumber(range.maximum), range.unit);
}

std::string settingText(const ControlSetting& setting) {
    const ControlRange& range = controlRange(setting.control);
    const std::string value = range.kind == ControlKind::switching
                                  ? (setting.value != 0 ? "on" : "off")
                                  : withUnit(formatNumber(setting.value), range.unit);
    return std::string(range.name) + " " + value;
}

Result<ControlSetting> parseSetting(std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos || sign == 0)
        return Failure{inQuotes(text) + " is no setting; write NAME=VALUE, as in Density=80"};
    const Result<ControlId> control = findControl(text.substr(0, sign));
    if (!control) return Failure{control.message()};

    const ControlRange& range = controlRange(control.value());
    const std::string_view typed = text.substr(sign + 1);
    const std::optional<float> value = parseValue(range, typed);
    if (!value)
        return Failure{std::string(range.name) + " takes " + rangeText(range) + ", not " +
                       inQuotes(typed)};
    return ControlSetting{control.value(), *value};
}

Result<TimedSetting> parseTimedSetting(std::string_view text) {
    const std::size_t colon = text.find(':');
    const std::optional<double> seconds =
        colon == std::string_view::npos ? std::nullopt : parseNumber(text.substr(0, colon));
    if (!seconds || *seconds < 0)
        return Failure{inQuotes(text) +
                       " has no time; write SECONDS:NAME=VALUE, as in 2.5:Pitch=7"};
    const Result<ControlSetting> setting = parseSetting(text.substr(colon + 1));
    if (!setting) return Failure{setting.message()};
    return TimedSetting{*seconds, setting.value()};
}

} // namespace zephyra
