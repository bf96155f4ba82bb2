// TouchRouter: which finger is on which thing of a window.
#pragma once

#include "screens/model/touch/touch_target.h"

#include <cstddef>
#include <map>
#include <memory>

namespace zephyra {

/// Where the things of a window stand. Message thread.
class TouchScene {
public:
    struct Hit {
        TouchTarget* target = nullptr; ///< null: nothing there
        Point origin;                  ///< where it begins, pixels of the window
    };
    virtual ~TouchScene() = default;
    virtual Hit touchTargetAt(Point at) = 0;
};

/// Each finger stays with what it came down on. A begin with an identity in use cancels the old
/// finger first; what is told of unknown fingers is ignored, and so is a place that is not finite,
/// or a begin at such a time; other such times count as the last one. Message thread.
class TouchRouter {
public:
    static constexpr std::size_t kMostFingers = 16; ///< more are nobody's
    static constexpr double kTapUnits = 8.0; ///< a finger that goes no farther may be tapping
    static constexpr double kRestSeconds = 0.7;
    static constexpr double kTapSeconds = 0.35; ///< from one tap to the next
    static constexpr double kTapsApart = 4.0; ///< of kTapUnits: those farther off are not in a row

    /// scene outlives it.
    explicit TouchRouter(TouchScene& scene) : scene_(scene) {}
    /// Cancels what is down.
    ~TouchRouter() { cancelAll(); }
    TouchRouter(const TouchRouter&) = delete;
    TouchRouter& operator=(const TouchRouter&) = delete;

    /// pixels: of a unit.
    void setScale(double pixels) noexcept { scale_ = pixels; }
    /// Places in pixels of the window.
    void take(const TouchEvent& event);
    /// now: on the clock of the events; tells a finger that has rested.
    void frame(double now);
    /// The window goes, or something covers it; what the fingers do later is nobody's.
    void cancelAll();

    std::size_t fingers() const noexcept { return fingers_.size(); }

private:
    struct Finger {
        std::weak_ptr<TouchTarget*> target = {}; ///< expired: nobody's
        Point origin, start, at;                 ///< window; start: moved on by the circle of a tap
        double began = 0.0;
        bool mayTap = true;
    };
    struct Tap {
        std::weak_ptr<TouchTarget*> target;
        Point at;
        double time = 0.0;
        int count = 0;
    };
    void begin(const TouchEvent& event);
    void move(const TouchEvent& event);
    void finish(const TouchEvent& event);
    int countTap(const Finger& finger, double time);
    TouchEvent local(const Finger& finger, const TouchEvent& event) const;
    double tapPixels() const noexcept { return kTapUnits * scale_; }

    TouchScene& scene_;
    std::map<TouchId, Finger> fingers_;
    Tap lastTap_;
    double scale_ = 1.0;
    double lastTime_ = 0.0; // of any event
};

} // namespace zephyra
