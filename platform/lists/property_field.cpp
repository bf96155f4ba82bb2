#include "platform/lists/property_field.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace zephyra::property_field {

namespace {

using namespace std::chrono;

constexpr sys_days kEpoch = year{2001} / 1 / 1;
constexpr double kFirstSecond = duration<double>(sys_days(year{1} / 1 / 1) - kEpoch).count();
constexpr double kEndSecond = duration<double>(sys_days(year{10000} / 1 / 1) - kEpoch).count();

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// text without a plus at its beginning, which std::from_chars does not know.
std::string_view withoutPlus(std::string_view text) {
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return hasPlus ? text.substr(1) : text;
}

/// The text in quotes, if it is short and plain enough to be shown.
std::string shown(std::string_view text) {
    const auto isPlain = [](char byte) { return byte >= 0x20 && byte < 0x7f; };
    if (text.size() > 40 || !std::all_of(text.begin(), text.end(), isPlain)) return {};
    return " \"" + std::string(text) + "\"";
}

/// The bytes of the character that begins text, 0 for none that UTF-8 has.
std::size_t decodeUtf8(std::string_view text, char32_t& character) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    if ((lead >= 0x80 && lead < 0xc2) || lead > 0xf4 || text.size() < length) return 0;
    character = length == 1 ? lead : lead & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
        character = character << 6 | (byte(i) & 0x3fu);
    }
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xd800 && character < 0xe000;
    return character >= least[length] && character <= 0x10ffff && !isSurrogate ? length : 0;
}

constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// By byte: what a digit of base64 stands for, 64 for what is none.
constexpr auto kBase64Values = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(64);
    for (std::size_t i = 0; i < kBase64Digits.size(); ++i)
        values[static_cast<unsigned char>(kBase64Digits[i])] = static_cast<std::uint8_t>(i);
    return values;
}();

} // namespace

Result<std::int64_t> parseWhole(std::string_view text) {
    const std::string_view digits = withoutPlus(text);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc::invalid_argument || end != digits.data() + digits.size())
        return Failure{"the whole number" + shown(text) + " cannot be read; use decimal digits"};
    if (error != std::errc())
        return Failure{"the whole number" + shown(text) +
                       " is too large; -9223372036854775808 to 9223372036854775807 would be right"};
    return number;
}

Result<double> parseReal(std::string_view text) {
    const std::string_view digits = withoutPlus(text);
    double real = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), real);
    if (error == std::errc::invalid_argument || end != digits.data() + digits.size())
        return Failure{"the real" + shown(text) + " cannot be read; use a decimal number"};
    if (error != std::errc())
        return Failure{"the real" + shown(text) +
                       " is beyond what 64 bits can hold; use one within"};
    return finiteReal(real);
}

Result<double> finiteReal(double real) {
    if (std::isfinite(real)) return real;
    return Failure{"a real that is not finite cannot be kept; use a number"};
}

Result<std::string> formatReal(double real) {
    if (const auto finite = finiteReal(real); !finite) return Failure{finite.message()};
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, real);
    return std::string(text, error == std::errc() ? end : text);
}

Result<PropertyDate> parseDate(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    bool isPlain = text.size() == form.size();
    for (std::size_t i = 0; isPlain && i < form.size(); ++i)
        isPlain = form[i] == '0' ? isDigit(text[i]) : text[i] == form[i];
    const auto number = [&](std::size_t at, std::size_t digits) {
        int value = 0;
        for (const char digit : text.substr(at, digits)) value = value * 10 + (digit - '0');
        return value;
    };
    if (isPlain) {
        const year_month_day day(year{number(0, 4)}, month(static_cast<unsigned>(number(5, 2))),
                                 std::chrono::day(static_cast<unsigned>(number(8, 2))));
        const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
        if (day.ok() && number(0, 4) > 0 && hour < 24 && minute < 60 && second < 60) {
            const auto time = sys_days(day) - kEpoch + hours(hour) + minutes(minute);
            return PropertyDate{duration<double>(time + seconds(second)).count()};
        }
    }
    return Failure{"the date" + shown(text) + " cannot be read; use one like 2001-02-28T23:59:59Z"};
}

Result<PropertyDate> wholeSeconds(double seconds) {
    const double whole = std::floor(seconds);
    if (!(whole >= kFirstSecond && whole < kEndSecond)) // also for what is no number
        return Failure{"a date outside the years 1 to 9999 cannot be kept; use one within"};
    return PropertyDate{whole};
}

Result<std::string> formatDate(PropertyDate date) {
    const auto whole = wholeSeconds(date.seconds);
    if (!whole) return Failure{whole.message()};
    const auto time = kEpoch + seconds(static_cast<std::int64_t>(whole.value().seconds));
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return std::string(text);
}

Result<PropertyData> parseBase64(std::string_view text) {
    PropertyData::Bytes data;
    data.reserve(text.size() / 4 * 3 + 3);
    std::size_t digits = 0, padding = 0;
    std::uint32_t bits = 0;
    bool isPlain = true;
    for (const char byte : text) {
        if (byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r') continue;
        if (byte == '=') {
            ++padding;
            continue;
        }
        const std::uint32_t digit = kBase64Values[static_cast<unsigned char>(byte)];
        isPlain &= digit < 64 && padding == 0;
        bits = bits << 6 | digit;
        if (++digits % 4 != 0) continue;
        for (const int shift : {16, 8, 0}) data.push_back(static_cast<std::byte>(bits >> shift));
    }
    if (!isPlain || padding > 2 || (digits + padding) % 4 != 0)
        return Failure{"the data cannot be read; it must be base64, in fours of its digits"};
    if (padding > 0) data.push_back(static_cast<std::byte>(bits >> (padding == 1 ? 10 : 4)));
    if (padding == 1) data.push_back(static_cast<std::byte>(bits >> 2));
    return PropertyData(std::move(data));
}

std::string formatBase64(const PropertyData& data) {
    constexpr std::size_t bytesPerLine = 57; // 76 digits
    std::string text;
    for (std::size_t at = 0; at < data.size(); at += 3) {
        if (at > 0 && at % bytesPerLine == 0) text += '\n';
        const std::size_t left = data.size() - at;
        std::uint32_t three = 0;
        for (std::size_t i = 0; i < 3; ++i)
            three = three << 8 | (i < left ? std::to_integer<std::uint32_t>(data[at + i]) : 0);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= left ? kBase64Digits[three >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

bool isTextCharacter(char32_t character) noexcept {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    const bool isSurrogate = character >= 0xd800 && character < 0xe000;
    return !isSurrogate && character != 0xfffe && character != 0xffff && character <= 0x10ffff;
}

Result<void> checkText(std::string_view text) {
    while (!text.empty()) {
        char32_t character = 0;
        const std::size_t length = decodeUtf8(text, character);
        if (length == 0) return Failure{"text that is not UTF-8 cannot be kept; use UTF-8"};
        if (!isTextCharacter(character))
            return Failure{"text with control characters cannot be kept; only tab, line feed and "
                           "carriage return can"};
        text.remove_prefix(length);
    }
    return {};
}

void appendUtf8(char32_t character, std::string& text) {
    const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
    const auto appendTail = [&](int bits) { append(0x80 | (character >> bits & 0x3f)); };
    if (character < 0x80) return append(character);
    if (character < 0x800) {
        append(0xc0 | character >> 6);
    } else if (character < 0x10000) {
        append(0xe0 | character >> 12);
        appendTail(6);
    } else {
        append(0xf0 | character >> 18);
        appendTail(12);
        appendTail(6);
    }
    appendTail(0);
}

} // namespace zephyra::property_field
