#include "audiounit/control_text.h"

#include "audiounit/control_names.h"
#include "audiounit/parameter_table.h"
#include "controls/note_values.h"
#include "controls/state_keys.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"

#include <array>
#include <optional>

namespace zephyra {

namespace {

constexpr std::array<ControlId, kControlCount - 1> kSettable = [] {
    std::array<ControlId, kControlCount - 1> ids{};
    std::size_t count = 0;
    for (std::size_t i = 0; i < kControlCount; ++i)
        if (const auto id = static_cast<ControlId>(i); id != ControlId::envelope) ids[count++] = id;
    return ids;
}();

constexpr std::span<const ControlId> kParameters(kSettable.data(), kParameterCount);

std::string withUnit(const std::string& number, const char* unit) {
    return *unit ? number + " " + unit : number;
}

/// The one among known that name means, or which may be meant.
Result<ControlId> parseName(std::string_view name, std::span<const ControlId> known,
                            const char* kind) {
    const auto [controls, isCertain] = matchControl(name, known);
    if (isCertain) return controls.front();
    std::vector<std::string> meant;
    for (const ControlId id : controls) meant.emplace_back(controlRange(id).name);
    const std::string none = std::string("there is no ") + kind + " " + inQuotes(name) + "; ";
    if (meant.size() > 1) return Failure{none + "which is meant, " + spokenList(meant, "or") + "?"};
    if (!meant.empty()) return Failure{none + "it is called " + meant.front()};
    std::vector<std::string_view> names;
    for (const ControlId id : known) names.emplace_back(controlRange(id).name);
    return Failure{none + "the nearest is " + inQuotes(nearestName(name, names))};
}

std::optional<float> parseChoice(std::string_view text) {
    const std::string plain = plainName(text);
    for (std::size_t i = 0; i < kNoteValues.size(); ++i)
        if (plainName(kNoteValues[i].name) == plain) return static_cast<float>(i);
    return std::nullopt;
}

/// A number in the control's unit. What has none, and is no count, is a share of a whole, and some
/// of those are levels.
std::optional<double> parseCounted(const ControlRange& range, std::string_view text) {
    if (*range.unit) return parseIn(range.unit, text);
    if (range.id == ControlId::amplitude || range.id == ControlId::leftGain ||
        range.id == ControlId::rightGain)
        return parseLevel(text);
    const bool isShare = range.kind == ControlKind::continuous && range.minimum == 0;
    return isShare ? parseIn("x", text) : parseNumber(text);
}

std::optional<float> parseValue(const ControlRange& range, std::string_view text) {
    if (range.kind == ControlKind::choice) return parseChoice(text);
    if (range.kind == ControlKind::switching) {
        const std::string word = plainName(text);
        if (word == "on" || word == "1") return 1.0f;
        if (word == "off" || word == "0") return 0.0f;
        return std::nullopt;
    }
    const std::optional<double> number = parseCounted(range, text);
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
    if (range.kind == ControlKind::choice)
        return std::string(kNoteValues.front().name) + " to " + kNoteValues.back().name;
    return formatNumber(range.minimum) + " to " + withUnit(formatNumber(range.maximum), range.unit);
}

std::string valueText(const ControlRange& range, float value) {
    if (range.kind == ControlKind::switching) return value != 0 ? "on" : "off";
    if (range.kind == ControlKind::choice) return kNoteValues[static_cast<std::size_t>(value)].name;
    // A curve's rounding is nothing to read: 50, not 50.000004.
    return withUnit(formatShort(double{value}), range.unit);
}

std::string settingText(const ControlSetting& setting) {
    const ControlRange& range = controlRange(setting.control);
    return std::string(range.name) + " " + valueText(range, setting.value);
}

Result<ControlId> parseControlName(std::string_view name) {
    return parseName(name, kSettable, "control");
}

Result<ControlId> parseParameterName(std::string_view name) {
    for (const ParameterRow& row : parameterTable())
        if (parameterIdentifier(row, kStreamSuffix) == name) return row.id;
    return parseName(name, kParameters, "parameter");
}

Result<float> parseControlValue(ControlId control, std::string_view text) {
    const ControlRange& range = controlRange(control);
    if (const std::optional<float> value = parseValue(range, text)) return *value;
    return Failure{std::string(range.name) + " takes " + rangeText(range) + ", not " +
                   inQuotes(text)};
}

} // namespace zephyra
