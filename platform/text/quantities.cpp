#include "platform/text/quantities.h"

#include "platform/text/decibels.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace zephyra {

namespace {

enum class Kind { frequency, time, interval, share, level, tempo, beats };

/// One unit is numerator / denominator of its kind's.
struct UnitName {
    std::string_view name;
    Kind kind;
    double numerator = 1, denominator = 1; // apart, so that 300 ms are 0.3 s to the last bit
};

constexpr auto kUnits = std::to_array<UnitName>({
    {"hz", Kind::frequency},
    {"hertz", Kind::frequency},
    {"khz", Kind::frequency, 1000},
    {"k", Kind::frequency, 1000},
    {"s", Kind::time},
    {"sec", Kind::time},
    {"secs", Kind::time},
    {"second", Kind::time},
    {"seconds", Kind::time},
    {"ms", Kind::time, 1, 1000},
    {"msec", Kind::time, 1, 1000},
    {"millisecond", Kind::time, 1, 1000},
    {"milliseconds", Kind::time, 1, 1000},
    {"min", Kind::time, 60},
    {"mins", Kind::time, 60},
    {"minute", Kind::time, 60},
    {"minutes", Kind::time, 60},
    {"h", Kind::time, 3600},
    {"hour", Kind::time, 3600},
    {"hours", Kind::time, 3600},
    {"semitones", Kind::interval},
    {"semitone", Kind::interval},
    {"semi", Kind::interval},
    {"st", Kind::interval},
    {"octave", Kind::interval, 12},
    {"oct", Kind::interval, 12},
    {"octaves", Kind::interval, 12},
    {"cents", Kind::interval, 1, 100},
    {"cent", Kind::interval, 1, 100},
    {"ct", Kind::interval, 1, 100},
    {"x", Kind::share},
    {"times", Kind::share},
    {"%", Kind::share, 1, 100},
    {"percent", Kind::share, 1, 100},
    {"per cent", Kind::share, 1, 100},
    {"db", Kind::level},
    {"bpm", Kind::tempo},
    {"b", Kind::beats},
    {"beat", Kind::beats},
    {"beats", Kind::beats},
});

const UnitName* findUnit(std::string_view name) {
    std::string lower(name);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    const auto unit = std::ranges::find(kUnits, lower, &UnitName::name);
    return unit == kUnits.end() ? nullptr : &*unit;
}

struct Quantity {
    double number;
    std::string_view unit; ///< empty: none was typed
};

/// The number that text begins with, and what follows it.
std::optional<Quantity> parseQuantity(std::string_view text) {
    double ignored = 0;
    const std::size_t sign = text.starts_with('+') ? 1 : 0;
    const auto stopped =
        std::from_chars(text.data() + sign, text.data() + text.size(), ignored).ptr;
    const auto end = static_cast<std::size_t>(stopped - text.data());
    const auto number = parseNumber(text.substr(0, end)); // neither nan nor +-1
    if (!number) return std::nullopt;
    std::string_view unit = text.substr(end);
    if (unit.empty()) return Quantity{*number, unit};
    while (unit.starts_with(' ')) unit.remove_prefix(1);
    return unit.empty() ? std::nullopt : std::optional(Quantity{*number, unit});
}

/// The seconds of "1:30" or "1:02:03.5"; a part after the first is below 60.
std::optional<double> parseClock(std::string_view text) {
    std::optional<double> seconds;
    for (int parts = 1; parts <= 3; ++parts) {
        const std::size_t colon = text.find(':');
        const std::string_view part = text.substr(0, colon);
        const bool last = colon == std::string_view::npos;
        if (part.empty() ||
            part.find_first_not_of(last ? "0123456789." : "0123456789") < part.size())
            return std::nullopt;
        const auto number = parseNumber(part);
        if (!number || (seconds && *number >= 60)) return std::nullopt;
        seconds = seconds.value_or(0) * 60 + *number;
        if (last) return parts > 1 ? seconds : std::nullopt;
        text.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

/// The same with the unit that tells minutes from hours, which its parts say already.
std::optional<double> parseClockAndUnit(std::string_view text) {
    const bool hours = std::ranges::count(text, ':') == 2;
    if (text.ends_with(hours ? " h" : " min")) text.remove_suffix(hours ? 2 : 4);
    return parseClock(text);
}

} // namespace

std::optional<double> parseIn(std::string_view unit, std::string_view text) {
    const auto typed = parseQuantity(text);
    if (!typed) return std::nullopt;
    if (typed->unit.empty()) return typed->number;
    const UnitName* const from = findUnit(typed->unit);
    const UnitName* const to = findUnit(unit);
    if (!from || !to || from->kind != to->kind) return std::nullopt;
    const double number =
        typed->number * (from->numerator * to->denominator) / (from->denominator * to->numerator);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> parseLevel(std::string_view text) {
    if (const auto linear = parseIn("x", text)) return linear;
    const auto decibels = parseIn("dB", text);
    return decibels ? std::optional(factorOf(*decibels)) : std::nullopt;
}

std::optional<TypedTime> parseTime(std::string_view text) {
    if (const auto seconds = parseClockAndUnit(text)) return TypedTime{*seconds, false};
    if (const auto seconds = parseIn("s", text); seconds && *seconds >= 0)
        return TypedTime{*seconds, false};
    const auto beats = parseIn("b", text);
    return beats && *beats >= 0 ? std::optional(TypedTime{*beats, true}) : std::nullopt;
}

} // namespace zephyra
