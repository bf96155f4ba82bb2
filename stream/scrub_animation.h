// ScrubAnimation: the playhead as a screen draws it, a cursor where a stream's scan stands.
#pragma once

#include <algorithm>
#include <cmath>

namespace zephyra {

/// A cursor that a screen draws over the sound: it comes as the stream starts and goes as it stops.
/// Times are the run loop's. MAIN.
class ScrubAnimation {
public:
    enum class Cursor { comes, goes };

    /// Begins a fade of so many seconds; one that is not above 0 is over at once.
    void scrubAnimation(double seconds, Cursor way, double now) {
        seconds_ = std::max(seconds, 0.0);
        begun_ = now;
        way_ = way;
    }
    /// The share of the fade that is over, 0..1.
    double progress(double now) const {
        return now - begun_ < seconds_ ? std::max(now - begun_, 0.0) / seconds_ : 1.0;
    }
    /// How much of the cursor is to be seen, 0..1; none before the first start.
    double opacity(double now) const {
        return way_ == Cursor::comes ? progress(now) : 1.0 - progress(now);
    }

    /// A fraction of the sound, held to 0..1; not finite is ignored.
    void updateGraphicallyScrubPosition(double position) {
        if (std::isfinite(position)) position_ = std::clamp(position, 0.0, 1.0);
    }
    /// Where the scan was last put; a stream that plays has moved on since.
    double position() const noexcept { return position_; }

private:
    double seconds_ = 0.0, begun_ = 0.0, position_ = 0.0;
    Cursor way_ = Cursor::goes;
};

} // namespace zephyra
