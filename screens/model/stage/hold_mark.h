// HoldMark: the mark of a press-and-hold, which grows while a finger rests and stands while the
// sound is held.
#pragma once

#include "screens/model/stage/stage_hands.h"
#include "stream/scrub_area.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zephyra {

/// Message thread.
class HoldMark {
public:
    static constexpr double kHidden = 0.15; ///< seconds: a click shows nothing

    /// As it is drawn. Plain data.
    struct Shown {
        double scan = 0.0; ///< where it stands, a fraction of the sound
        double y = 0.5;    ///< of the stage, from its top
        double growth = 1.0;
        bool stands = false; ///< the sound is held: it stays where the finger lifts
        bool operator==(const Shown&) const = default;
    };

    /// A frame. finger: that scrubs; at: where in the sound that is; isHeld: by a press-and-hold;
    /// grows: else it is there at once, and still.
    void advance(const std::optional<StageHands::Finger>& finger, double at, double scan,
                 bool isHeld, double elapsed, bool grows) {
        follow(finger, at, elapsed);
        if (isHeld)
            shown_ = {.scan = scan, .y = y_, .growth = 1.0, .stands = true};
        else if (rested_ < kHidden)
            shown_.reset();
        else
            shown_ = {.scan = scan,
                      .y = y_,
                      .growth = grows ? std::min(1.0, (rested_ - kHidden) / kGrowth) : 1.0};
    }

    const std::optional<Shown>& shown() const noexcept { return shown_; }

private:
    static constexpr double kGrowth = ScrubArea::kRestSeconds - kHidden;

    /// How long the finger has rested where it came down, as ScrubArea counts it; 0 once it moved.
    void follow(const std::optional<StageHands::Finger>& finger, double at, double elapsed) {
        if (!finger) {
            id_.reset();
            rested_ = 0.0;
            return;
        }
        y_ = finger->y;
        if (id_ != finger->id) {
            id_ = finger->id;
            origin_ = {at, finger->y};
            rests_ = true;
        }
        if (std::hypot(at - origin_.x, finger->y - origin_.y) >= ScrubArea::kRestTravel)
            rests_ = false;
        rested_ = rests_ ? rested_ + elapsed : 0.0;
    }

    std::optional<TouchId> id_;
    Point origin_;
    double y_ = 0.5; // of the last finger
    double rested_ = 0.0;
    bool rests_ = false;
    std::optional<Shown> shown_;
};

} // namespace zephyra
