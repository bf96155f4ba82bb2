// WindowTouches: the fingers on a window, and what they are on.
#pragma once

#include "screens/desktop/finger_as_mouse.h"
#include "screens/desktop/touch_screen.h"
#include "screens/model/touch/touch_clock.h"
#include "screens/model/touch/touch_router.h"

namespace zephyra {

/// Reads the touch screen of the display on which content is shown. A component under a finger that
/// is a TouchTarget follows that finger; any other, also around content, has it as the mouse.
/// Message thread.
class WindowTouches final : public TouchScene {
public:
    /// content outlives it.
    explicit WindowTouches(juce::Component& content) : content_(content) {}

    /// content may stand in another window now, or in none: its fingers are gone.
    void followWindow();
    void setScale(double pixels) { router_.setScale(pixels); }
    /// now: juce::Time::getMillisecondCounterHiRes(), in seconds.
    void frame(double now) { router_.frame(now); }
    /// Something covers the window.
    void cancelAll() { router_.cancelAll(); }

    /// From a source of touches: places of the window's own component, times on the clock of frame.
    void take(const TouchEvent& event);

    Hit touchTargetAt(Point at) override;

private:
    juce::Component* componentAt(Point at) const;
    void focus(Point at);

    juce::Component& content_;
    juce::Component* window_ = nullptr;
    juce::ComponentPeer* peer_ = nullptr;
    void* handle_ = nullptr; // a peer that is made anew may stand where the last one did
    std::unique_ptr<FingerAsMouse> mouse_;
    TouchRouter router_{*this};
    TouchClock clock_;
    std::unique_ptr<TouchScreen> screen_;
};

} // namespace zephyra
