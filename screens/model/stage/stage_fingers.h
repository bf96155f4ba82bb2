// StageFingers: whether fingers on the stage scrub or zoom.
#pragma once

#include "screens/model/stage/stage_hands.h"

#include <vector>

namespace zephyra {

/// Two fingers that come down together zoom, and move what is shown; a second one that comes later
/// plays what is assigned to it. So the first one scrubs at once: where a second makes it a zoom,
/// the scan goes back to where it was. Places are pixels from the stage's left and top. Message
/// thread.
class StageFingers {
public:
    static constexpr double kTogetherSeconds = 0.15;
    static constexpr double kLeastApart = 24.0; ///< pixels: closer fingers zoom as if so far apart

    /// hands outlives it.
    explicit StageFingers(StageHands& hands) : hands_(hands) {}

    /// The stage's pixels, and the seconds of the sound on it.
    void setStage(double width, double height, double soundSeconds);

    /// id: of a finger that is not on it, as TouchRouter sees to.
    void began(TouchId id, Point at, double time);
    void moved(TouchId id, Point at, double time);
    void ended(TouchId id, double time);
    void cancelled(TouchId id, double time);

private:
    enum class Does { scrub, zoom, nothing };
    struct Finger {
        TouchId id;
        Point at;
        Does does;
    };
    Finger* find(TouchId id);
    bool isZooming() const;
    bool beginsZoom(double time) const;
    void beginZoom(const Finger& second, double time);
    void zoom(Finger& finger, Point to);
    /// What it did; nothing for an unknown one.
    Does forget(TouchId id);

    StageHands& hands_;
    double width_ = 1.0, height_ = 1.0, soundSeconds_ = 0.0;
    std::vector<Finger> fingers_;
    double scanBefore_ = 0.0, beganAt_ = 0.0; // of the first finger
};

} // namespace zephyra
