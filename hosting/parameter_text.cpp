// The values of PluginParameter as hosts show them, and as people type them into hosts.
#include "audiounit/control_text.h"
#include "hosting/plugin_parameters.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

/// Without the zeros behind the last decimal that says something.
std::string rounded(double value, int decimals) {
    std::string text = formatFixed(value, decimals);
    if (decimals > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.ends_with('.')) text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

/// Four of them, at most three behind the point.
std::string withDigits(double value) {
    const double size = std::fabs(value);
    int decimals = 3;
    for (double limit = 10; decimals > 0 && size >= limit; limit *= 10) --decimals;
    return rounded(value, decimals);
}

/// In the smaller unit below a thousand of them, as it will be read.
std::string scaled(double small, const char* unit, const char* thousandfold) {
    return small < 999.95 ? withDigits(small) + " " + unit
                          : withDigits(small / 1000) + " " + thousandfold;
}

bool isShare(const PluginParameter& parameter) {
    return !*parameter.unit && parameter.minimum == 0 && !parameter.isSwitch;
}

std::string panText(double pan) {
    const std::string side = rounded(std::fabs(pan) * 100, 1);
    return side == "0" ? "C" : side + (pan < 0 ? " L" : " R");
}

std::string_view trimmed(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    text.remove_prefix(begin);
    text.remove_suffix(text.size() - (text.find_last_not_of(" \t\r\n") + 1));
    return text;
}

/// "1,5" with a point. What may be thousands stays, and is no number.
std::string withPoint(std::string_view text) {
    std::string point(text);
    const std::size_t comma = point.find(',');
    if (comma == std::string::npos) return point;
    const std::size_t end =
        std::min(point.find_first_not_of("0123456789", comma + 1), point.size());
    if (end - comma - 1 != 3 && point.find_first_of(".,", comma + 1) == std::string::npos)
        point[comma] = '.';
    return point;
}

/// "50 L", "r20", "left", "C": none for anything else.
std::optional<float> panFromText(std::string_view text) {
    std::string plain(text);
    std::erase_if(plain, [](char c) { return c == ' ' || c == '%'; });
    for (char& c : plain) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    for (const char* const middle : {"c", "center", "centre", "middle", "mid"})
        if (plain == middle) return 0.0f;
    for (const std::string_view word : {"left", "right", "l", "r"}) {
        if (plain.starts_with(word))
            plain.erase(0, word.size());
        else if (plain.ends_with(word))
            plain.erase(plain.size() - word.size());
        else
            continue;
        const auto percent = plain.empty() ? std::optional(100.0) : parseNumber(plain);
        if (!percent || !(*percent >= 0 && *percent <= 100)) return std::nullopt;
        return static_cast<float>(word.starts_with('l') ? -*percent / 100 : *percent / 100);
    }
    return std::nullopt;
}

std::optional<float> switchFromText(std::string_view text) {
    const std::string word = plainName(text);
    if (word == "yes" || word == "true") return 1.0f;
    if (word == "no" || word == "false") return 0.0f;
    const auto number = parseNumber(text);
    return number && (*number == 0 || *number == 1) ? std::optional(static_cast<float>(*number))
                                                    : std::nullopt;
}

/// What people type besides what the control takes everywhere.
std::optional<float> parseLoosely(const PluginParameter& parameter, const std::string& text) {
    if (parameter.isSwitch) return switchFromText(text);
    if (parameter.id == ControlId::pan) return panFromText(text);
    // Beside a text in percent, 50 is no level.
    const auto number = isShare(parameter) ? parseNumber(text) : std::nullopt;
    if (!number || !(*number > 1)) return std::nullopt;
    const auto percent = parseControlValue(parameter.id, text + "%");
    return percent ? std::optional(percent.value()) : std::nullopt;
}

} // namespace

std::string parameterText(const PluginParameter& parameter, float linear) {
    if (parameter.isSwitch) return linear != 0 ? "On" : "Off";
    if (std::isnan(linear)) linear = parameter.minimum;
    const double value = double{displayedFromLinear(controlRange(parameter.id), linear)};
    const std::string_view unit = parameter.unit;
    if (parameter.id == ControlId::pan) return panText(value);
    if (isShare(parameter)) return rounded(value * 100, 1) + " %";
    if (unit == "%") return rounded(value, 1) + " %";
    if (unit == "Hz") return scaled(value, "Hz", "kHz");
    if (unit == "ms") return scaled(value, "ms", "s");
    if (unit == "s") return scaled(value * 1000, "ms", "s");
    if (unit == "st") return rounded(value, 2) + " st";
    return withDigits(value) + " " + parameter.unit;
}

std::optional<float> parameterFromText(const PluginParameter& parameter, std::string_view text) {
    const std::string typed = withPoint(trimmed(text));
    std::optional<float> value;
    if (const auto parsed = parseControlValue(parameter.id, typed))
        value = parsed.value();
    else
        value = parseLoosely(parameter, typed);
    if (!value) return std::nullopt;
    return linearFromDisplayed(controlRange(parameter.id), *value);
}

} // namespace zephyra
