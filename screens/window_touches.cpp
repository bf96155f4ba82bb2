#include "screens/window_touches.h"

#include <utility>

namespace zephyra {

void WindowTouches::followWindow() {
    juce::Component* const window = content_.getTopLevelComponent();
    juce::ComponentPeer* const peer = window->getPeer();
    void* const handle = peer ? peer->getNativeHandle() : nullptr;
    if (window == window_ && peer == peer_ && handle == handle_) return;
    screen_.reset();
    router_.cancelAll();
    if (std::exchange(window_, window) != window || !mouse_)
        mouse_ = std::make_unique<FingerAsMouse>(*window);
    peer_ = peer;
    handle_ = handle;
    clock_ = {};
    if (peer)
        screen_ = TouchScreen::of(*peer, [this](TouchEvent event) {
            const double now = juce::Time::getMillisecondCounterHiRes() / 1000.0;
            event.time = clock_.onWindow(event.time, now);
            take(event);
        });
}

void WindowTouches::take(const TouchEvent& event) {
    if (event.phase == TouchPhase::began && peer_) focus(event.at);
    router_.take(event);
}

/// As a click does, so that keys go on where the hand was, and what was typed into is left.
void WindowTouches::focus(Point at) {
    peer_->toFront(true);
    juce::Component* const hit = componentAt(at);
    if (dynamic_cast<TouchTarget*>(hit) && hit->getMouseClickGrabsKeyboardFocus())
        hit->grabKeyboardFocus();
}

juce::Component* WindowTouches::componentAt(Point at) const {
    return window_ ? window_->getComponentAt(juce::Point(at.x, at.y).toFloat()) : nullptr;
}

TouchScene::Hit WindowTouches::touchTargetAt(Point at) {
    juce::Component* const hit = componentAt(at);
    if (!hit) return {};
    auto* const target = dynamic_cast<TouchTarget*>(hit);
    if (!target || hit->isCurrentlyBlockedByAnotherModalComponent()) return {mouse_.get(), {}};
    const auto origin = window_->getLocalPoint(hit, juce::Point<int>());
    return {target, {double(origin.x), double(origin.y)}};
}

} // namespace zephyra
