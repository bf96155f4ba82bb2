// GrainClock: the stream's frames as time that goes evenly from picture to picture.
#pragma once

#include <algorithm>
#include <cstdint>

namespace zephyra {

/// RENDER counts its frames a whole block at once; a picture between two blocks wants the moment
/// between them. It runs at the sample rate a block behind, is drawn to what was counted, and
/// stands when nothing is rendered. Message thread.
class GrainClock {
public:
    /// rendered: frames counted by now. elapsed: seconds since the last call. rate in Hz. The
    /// frame that is heard about now; it never goes back but where rendering jumps.
    double advance(std::uint64_t rendered, double elapsed, double rate) noexcept {
        const double counted = static_cast<double>(rendered);
        stoodFor_ = rendered == rendered_ ? stoodFor_ + elapsed : 0.0;
        rendered_ = rendered;
        const double next = frame_ + elapsed * rate;
        const double off = counted - next;
        if (off > kMostOff * rate || off < -kMostOff * rate || stoodFor_ > kStandsAfter)
            return frame_ = counted;
        return frame_ = std::max(frame_, next + off * std::min(1.0, elapsed * kPull));
    }
    double frame() const noexcept { return frame_; }

private:
    static constexpr double kMostOff = 0.25, kStandsAfter = 0.15; // seconds
    static constexpr double kPull = 3.0;                          // of what it is off, a second

    std::uint64_t rendered_ = 0;
    double frame_ = 0.0, stoodFor_ = 0.0;
};

} // namespace zephyra
