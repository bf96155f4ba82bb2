// ScrubArea: the picture of a stream's sound, where fingers hold and move its scan.
#pragma once

#include "controls/scan_target.h"
#include "controls/touch_listener.h"
#include "platform/threads/run_loop.h"
#include "stream/scrub_animation.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

class MOK_SCRUB_GRANULATOR;

/// A finger holds the scan where it is: it stands there and follows the finger, and nothing else
/// moves it. A second finger moves nothing here, listeners follow it. More are ignored until one of
/// the two ends; the second never becomes the first. Points are fractions of the area, x of the
/// sound, and times seconds on the screen's clock; what is not finite is ignored, as are identities
/// that do not touch. A finger that begins with an identity in use ends the old one. MAIN.
class ScrubArea final : public ScanTarget {
public:
    static constexpr double kRestSeconds = 0.5; ///< until a finger that rests stays behind
    static constexpr double kRestTravel = 0.01; ///< a fraction of the area: less is no movement

    /// key: the stream's suffix. Both must outlive this.
    ScrubArea(MOK_SCRUB_GRANULATOR& stream, RunLoop& runLoop, std::string key);
    ~ScrubArea() override;

    void touchesBegan(TouchId id, Point at, double time);
    void touchesMoved(TouchId id, Point at, double time);
    void touchesEnded(TouchId id, double time);
    /// Ends the finger too, and leaves nothing held.
    void touchesCancelled(TouchId id, double time);

    /// Told of both fingers, after the scan has moved. Null and one that is there already are
    /// ignored; it must outlive this or be taken away before.
    void addListener(TouchListener* listener);
    void removeListener(TouchListener* listener);

    /// Whether the first finger began with a rest: the scan goes on standing where it lifts, until
    /// the next touch, a rewind, or longPressFirstFingerGesture().
    bool isPressAndHold() const noexcept { return pressAndHold_; }
    /// Ends a press-and-hold, and lets go of the finger that is still pressing.
    void longPressFirstFingerGesture();
    /// What a rewind asks: ends a press-and-hold that no finger presses any more. False while a
    /// finger holds the scan.
    bool letGoForRewind();

    // ScanTarget
    float scanPosition() const override;
    void driveScan(float position, double seconds) override;
    bool isHeld() const override { return first_ || pressAndHold_; }

    /// Whether the scan's own speed is kept from it: it is held, or was driven a moment ago.
    bool stands() const noexcept { return isHeld() || driven_ != 0; }

    ScrubAnimation animation;

    /// What drives the scan lets go of it.
    void endDriving();

private:
    void beginFirst(TouchId id, Point at);
    void end(TouchId id, double time);
    void endFirst(double time);
    void endPressAndHold();
    void putScan(Point at);
    void stopResting();
    template <typename Tell>
    void tellListeners(Tell tell);

    MOK_SCRUB_GRANULATOR& stream_;
    RunLoop& runLoop_;
    std::vector<TouchListener*> listeners_;
    std::optional<TouchId> first_, second_;
    Point origin_;          // of the first finger
    double lastTime_ = 0.0; // of any finger
    bool pressAndHold_ = false;
    RunLoop::Token resting_ = 0; // while the first finger has not moved
    RunLoop::Token driven_ = 0;  // gives the scan its speed back
};

} // namespace zephyra
