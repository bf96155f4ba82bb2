// StageView: which part of the sound the stage shows.
#pragma once

#include <algorithm>

namespace zephyra {

/// Fractions of the sound; a pointer's place is a fraction of the stage's width. Plain data with
/// its rules.
class StageView {
public:
    static constexpr double kLeastSeconds = 0.005; ///< shown at most zoom

    double first() const noexcept { return first_; }
    double span() const noexcept { return span_; }
    double last() const noexcept { return first_ + span_; }
    bool isWhole() const noexcept { return span_ >= 1.0; }

    double at(double place) const noexcept { return first_ + place * span_; }
    double placeOf(double fraction) const noexcept { return (fraction - first_) / span_; }

    /// Shows times as much around what is at place, which stays there where the ends allow it.
    /// soundSeconds: the sound's length. A factor that is not above 0 is ignored.
    void zoom(double place, double times, double soundSeconds) noexcept {
        if (!(times > 0.0) || !(soundSeconds > 0.0)) return;
        const double least = std::min(1.0, kLeastSeconds / soundSeconds), kept = at(place);
        span_ = std::clamp(span_ * times, least, 1.0);
        moveTo(kept - place * span_);
    }
    /// So that first is at the left, as far as the ends allow it.
    void moveTo(double first) noexcept {
        if (first == first) first_ = std::clamp(first, 0.0, 1.0 - span_);
    }
    void reset() noexcept { *this = {}; }

    bool operator==(const StageView&) const = default;

private:
    double first_ = 0.0, span_ = 1.0;
};

} // namespace zephyra
