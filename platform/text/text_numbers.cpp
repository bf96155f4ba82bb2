#include "platform/text/text_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace zephyra {

namespace {

/// The number that fills the whole text.
template <typename Number, typename... Base>
std::optional<Number> parseAll(std::string_view text, Base... base) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value, base...);
    if (error != std::errc() || stopped != end) return std::nullopt;
    return value;
}

template <typename Number, typename... Format>
std::string formatChars(Number value, Format... format) {
    char text[500]; // a double in fixed notation has up to 309 digits before the point
    const auto [end, error] = std::to_chars(text, text + sizeof text, value, format...);
    return error == std::errc() ? std::string(text, end) : std::string();
}

} // namespace

std::optional<double> parseNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const auto value = parseAll<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<std::uint64_t> parseWhole(std::string_view text) {
    return parseAll<std::uint64_t>(text);
}

std::optional<char> parseHexByte(std::string_view digits) {
    const auto byte = parseAll<unsigned char>(digits, 16);
    return byte && digits.size() == 2 ? std::optional(static_cast<char>(*byte)) : std::nullopt;
}

std::string formatNumber(double value) {
    return formatChars(value);
}

std::string formatNumber(float value) {
    return formatChars(value);
}

std::string formatShort(double value) {
    return formatChars(value, std::chars_format::general, 6);
}

std::string formatFixed(double value, int decimals) {
    return formatChars(value, std::chars_format::fixed, std::clamp(decimals, 0, 100));
}

std::string formatClock(long long seconds) {
    char text[64];
    if (seconds < 3600)
        std::snprintf(text, sizeof text, "%lld:%02lld", seconds / 60, seconds % 60);
    else
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
    return text;
}

std::string formatDuration(double seconds) {
    if (seconds < 9.995) return formatFixed(seconds, 2) + " s";
    if (seconds < 59.95) return formatFixed(seconds, 1) + " s";
    const long long whole = std::llround(seconds);
    return formatClock(whole) + (whole < 3600 ? " min" : " h");
}

std::string padded(std::string text, std::size_t width) {
    const auto inside = std::count_if(text.begin(), text.end(),
                                      [](unsigned char byte) { return (byte & 0xC0) == 0x80; });
    const std::size_t wide = width + static_cast<std::size_t>(inside); // a character, many bytes
    text.resize(std::max(text.size() + 2, wide), ' ');
    return text;
}

} // namespace zephyra
