// parseNumber and formatNumber: numbers as people type and read them, in every locale alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zephyra {

/// The whole text as a finite decimal number ("12", "-0.5", "+3", "1e3"); none for anything else.
std::optional<double> parseNumber(std::string_view text);

/// The whole text as a whole number from 0 up; none for anything else, signs included.
std::optional<std::uint64_t> parseWhole(std::string_view text);

/// The byte of two hexadecimal digits, in either case; none for anything else.
std::optional<char> parseHexByte(std::string_view digits);

/// The shortest text that reads back as value: "0.5", "220", "1e-07".
std::string formatNumber(double value);
std::string formatNumber(float value);

/// At most six significant digits: "50", "0.979989".
std::string formatShort(double value);

/// value with a fixed number of decimals (0 to 100) and a point.
std::string formatFixed(double value, int decimals);

/// Whole seconds as on a clock: "4:05", "1:02:03".
std::string formatClock(long long seconds);

/// Seconds as a length for people: "0.25 s", "12.3 s", "4:05 min", "1:02:03 h".
std::string formatDuration(double seconds);

/// text as a cell of a table: filled with blanks to width characters, at least two of them.
std::string padded(std::string text, std::size_t width);

} // namespace zephyra
