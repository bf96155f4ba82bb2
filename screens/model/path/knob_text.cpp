#include "screens/model/path/knob_text.h"

#include "audiounit/control_text.h"
#include "controls/note_values.h"
#include "hosting/plugin_parameters.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

using enum ControlId;

constexpr std::string_view kMinus = "\u2212", kTimes = "\u00D7";

std::string withTrueMinus(const std::string& number) {
    if (!number.starts_with('-')) return number;
    return std::string(kMinus).append(number, 1);
}

/// Three digits: 5.00, 30.0, 620.
std::string threeDigits(double value) {
    const double size = std::fabs(value);
    return formatFixed(value, size < 9.995 ? 2 : size < 99.95 ? 1 : 0);
}

/// In the smaller unit below a thousand of them.
KnobText scaled(double small, const char* unit, const char* thousandfold) {
    return small < 999.5 ? KnobText{threeDigits(small), unit}
                         : KnobText{threeDigits(small / 1000), thousandfold};
}

KnobText signedTenths(double value, const char* unit, bool withPlus) {
    std::string number = formatFixed(value, 1);
    if (number == "-0.0") number = "0.0";
    if (withPlus && number != "0.0" && value > 0) number.insert(number.begin(), '+');
    return {withTrueMinus(number), unit};
}

KnobText panText(double pan) {
    const int side = static_cast<int>(std::lround(std::fabs(pan) * 100));
    return side == 0 ? KnobText{"C", ""} : KnobText{std::to_string(side), pan < 0 ? "L" : "R"};
}

bool isPercent(ControlId id) {
    return id == leftGain || id == rightGain || id == ringModulationAmount;
}

/// text as keyboards have it.
std::string typeable(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const bool minus = text.starts_with(kMinus), times = text.starts_with(kTimes);
        plain += minus ? '-' : times ? 'x' : text.front();
        text.remove_prefix(minus ? kMinus.size() : times ? kTimes.size() : 1);
    }
    return plain;
}

} // namespace

KnobText knobText(const ControlRange& range, float displayed) {
    const double value = double{displayed};
    const std::string_view unit = range.unit;
    if (range.kind == ControlKind::choice) {
        const auto at = static_cast<std::size_t>(std::max(0L, std::lround(value)));
        return {kNoteValues[std::min(at, kNoteValues.size() - 1)].name, ""};
    }
    if (range.kind == ControlKind::whole) return {formatFixed(std::trunc(value), 0), ""};
    if (range.id == pan) return panText(value);
    if (isPercent(range.id)) return {formatFixed(value * 100, 0), "%"};
    if (unit == "%") return {formatFixed(value, 0), "%"};
    if (unit == "Hz") return scaled(value, "Hz", "kHz");
    if (unit == "ms") return scaled(value, "ms", "s");
    if (unit == "s") return scaled(value * 1000, "ms", "s");
    if (unit == "semitones") return signedTenths(value, "st", range.minimum < 0);
    std::string number = formatFixed(value, 2);
    if (number == "-0.00") number = "0.00";
    return {withTrueMinus(number), std::string(unit == "x" ? kTimes : unit)};
}

Result<float> linearFromTyped(const ControlRange& range, std::string_view text) {
    const std::string plain = typeable(text);
    const auto parameter = static_cast<std::size_t>(range.id);
    if (parameter < kParameterCount)
        if (const auto linear = parameterFromText(pluginParameters()[parameter], plain))
            return *linear;
    const Result<float> value = parseControlValue(range.id, plain);
    if (!value) return Failure{value.message()};
    return linearFromDisplayed(range, value.value());
}

} // namespace zephyra
