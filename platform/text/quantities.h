// parseIn and parseTime: numbers with the units that people type behind them.
#pragma once

#include <optional>
#include <string_view>

namespace zephyra {

// Case does not matter, nor do blanks before a unit. Any thread but RENDER.

/// The finite number that text says, counted in unit: "1.5kHz" is 1500 in "Hz", "0.3 s" is 300 in
/// "ms". A number alone is in unit already. unit is a spelling that text might have as well; with
/// an empty one only numbers alone are taken. None for anything else, units of another kind
/// included.
std::optional<double> parseIn(std::string_view unit, std::string_view text);

/// A linear level, 1 for full scale: "0.5", "50%", "-6 dB". A number alone is linear.
std::optional<double> parseLevel(std::string_view text);

/// A place in time as typed, which beats leave open until the tempo is known.
struct TypedTime {
    double number; ///< from 0 up
    bool beats;    ///< else seconds

    /// tempo: beats per minute.
    double seconds(double tempo) const { return beats ? number * 60.0 / tempo : number; }
};

/// "2.5", "90s", "500 ms", "2 min", "1:30", "1:02:03.5", and beats as in "4b"; as
/// formatDuration() writes it, too.
std::optional<TypedTime> parseTime(std::string_view text);

} // namespace zephyra
