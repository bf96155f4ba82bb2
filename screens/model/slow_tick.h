// SlowTick: when what glows and fades is drawn again, more slowly than grains move.
#pragma once

namespace zephyra {

/// Twenty times a second unless told otherwise: a light needs no more to the eye, and it covers
/// much. Message thread.
class SlowTick {
public:
    static constexpr double kSeconds = 1.0 / 20.0;

    explicit SlowTick(double seconds = kSeconds) : seconds_(seconds), since_(seconds) {}

    void advance(double elapsed) {
        since_ += elapsed;
        isNow_ = since_ >= seconds_ * kEarly;
        if (isNow_) since_ = 0.0;
    }
    /// Whether the frame is one at which they are drawn.
    bool isNow() const noexcept { return isNow_; }
    double since() const noexcept { return since_; } ///< seconds

private:
    static constexpr double kEarly = 0.9; // frames come unevenly

    double seconds_, since_;
    bool isNow_ = true;
};

} // namespace zephyra
