#include "screens/model/touch/touch_router.h"

#include <cmath>

namespace zephyra {

namespace {

double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

TouchTarget* targetOf(const std::weak_ptr<TouchTarget*>& watched) {
    const auto target = watched.lock();
    return target ? *target : nullptr;
}

bool isSame(const std::weak_ptr<TouchTarget*>& a, const std::weak_ptr<TouchTarget*>& b) {
    return !a.owner_before(b) && !b.owner_before(a);
}

} // namespace

void TouchRouter::take(const TouchEvent& event) {
    if (std::isfinite(event.time)) lastTime_ = event.time;
    switch (event.phase) {
    case TouchPhase::began:
        return begin(event);
    case TouchPhase::moved:
        return move(event);
    case TouchPhase::ended:
    case TouchPhase::cancelled:
        return finish(event);
    }
}

/// As the target is told of it: a movement begins at the edge of a tap's circle.
TouchEvent TouchRouter::local(const Finger& finger, const TouchEvent& event) const {
    TouchEvent told = event;
    if (!std::isfinite(told.time)) told.time = lastTime_;
    told.at = {finger.at.x - finger.origin.x, finger.at.y - finger.origin.y};
    return told;
}

void TouchRouter::begin(const TouchEvent& event) {
    finish({event.id, TouchPhase::cancelled, event.at, event.time});
    if (!isFinite(event.at) || !std::isfinite(event.time) || fingers_.size() == kMostFingers)
        return;
    const TouchScene::Hit hit = scene_.touchTargetAt(event.at);
    Finger& finger = fingers_[event.id];
    finger = {.origin = hit.origin, .start = event.at, .at = event.at, .began = event.time};
    if (!hit.target) return;
    finger.target = hit.target->watch();
    const bool wanted = hit.target->touchBegan(local(finger, event));
    const auto found = fingers_.find(event.id); // what it began may have taken it away
    if (!wanted && found != fingers_.end()) found->second.target.reset();
}

void TouchRouter::move(const TouchEvent& event) {
    const auto found = fingers_.find(event.id);
    if (found == fingers_.end() || !isFinite(event.at)) return;
    Finger& finger = found->second;
    TouchTarget* const target = targetOf(finger.target);
    if (finger.mayTap && distance(event.at, finger.start) > tapPixels()) {
        finger.mayTap = false;
        if (target && !target->followsAtOnce()) {
            finger.origin.x += event.at.x - finger.start.x;
            finger.origin.y += event.at.y - finger.start.y;
        }
    }
    if (finger.mayTap && target && !target->followsAtOnce()) return;
    finger.at = event.at;
    if (target) target->touchMoved(local(finger, event));
}

int TouchRouter::countTap(const Finger& finger, double time) {
    const bool follows = isSame(finger.target, lastTap_.target) &&
                         time - lastTap_.time <= kTapSeconds &&
                         distance(finger.start, lastTap_.at) <= kTapsApart * tapPixels();
    lastTap_ = {finger.target, finger.start, time, follows ? lastTap_.count + 1 : 1};
    return lastTap_.count;
}

void TouchRouter::finish(const TouchEvent& event) {
    if (event.phase == TouchPhase::ended) move(event); // some screens tell the last place only here
    const auto found = fingers_.find(event.id);        // which may have taken it away
    if (found == fingers_.end()) return;
    const Finger finger = found->second;
    fingers_.erase(found);
    TouchTarget* const target = targetOf(finger.target);
    if (!target) return;
    if (event.phase == TouchPhase::cancelled) return target->touchCancelled(local(finger, event));
    target->touchEnded(local(finger, event), finger.mayTap ? countTap(finger, event.time) : 0);
}

void TouchRouter::frame(double now) {
    if (fingers_.size() != 1) return;
    auto& [id, finger] = *fingers_.begin();
    if (!finger.mayTap || now - finger.began < kRestSeconds) return;
    finger.mayTap = false;
    if (TouchTarget* const target = targetOf(finger.target))
        target->touchRested(local(finger, {id, TouchPhase::moved, {}, now}));
}

void TouchRouter::cancelAll() {
    while (!fingers_.empty())
        finish({fingers_.begin()->first, TouchPhase::cancelled, {}, lastTime_});
}

} // namespace zephyra
