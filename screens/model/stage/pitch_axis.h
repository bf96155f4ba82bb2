// PitchAxis: how the stage's height stands for semitones.
#pragma once

#include <span>

namespace zephyra {

/// 0 semitones in the middle, range semitones near both ends. The range is the narrowest of a few
/// that holds what may sound; it widens at once, narrows after a while, and glides there. Message
/// thread.
class PitchAxis {
public:
    static constexpr double kGlideSeconds = 0.3, kNarrowsAfter = 4.0;
    static constexpr double kMostRange = 36.0; ///< +-24 of the knob and half of 24 around it

    /// wanted: the farthest pitch that is set or sounds, in semitones either way. glides: else it
    /// jumps. True when the axis moved.
    bool advance(double wanted, double elapsed, bool glides);

    double range() const noexcept { return range_; }
    /// The range that it stands at, or glides to.
    int target() const noexcept { return target_; }
    /// Where on the stage, 0 at its top and 1 at its bottom.
    double heightOf(double semitones) const noexcept { return 0.5 - semitones / range_ * kShare; }
    /// Semitones above 0 that are labelled, and below it.
    std::span<const int> labels() const;

private:
    static constexpr double kShare = 0.46; // of the height, either way

    int target_ = 24;
    double range_ = 24.0, from_ = 24.0, glide_ = 1.0; // glide_: the share that is over
    bool begun_ = false;
    double narrowFor_ = 0.0; // seconds that less would have done
};

} // namespace zephyra
