// TouchClock: times of a display on the clock of a window.
#pragma once

#include <optional>

namespace zephyra {

/// Keeps the distances between the display's times, which are more even than the moments at which a
/// window hears of them. Seconds. Plain data with its rules.
class TouchClock {
public:
    static constexpr double kMostLate = 1.0; ///< later ones mean that a clock has jumped

    /// at: on the display's clock, heard of at now.
    double onWindow(double at, double now) noexcept {
        const double apart = now - at;
        if (!apart_ || apart < *apart_ || apart > *apart_ + kMostLate) apart_ = apart;
        return at + *apart_;
    }

private:
    std::optional<double> apart_; // the least so far
};

} // namespace zephyra
