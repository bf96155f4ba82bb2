#include "screens/model/stage/stage_fingers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

void StageFingers::setStage(double width, double height, double soundSeconds) {
    width_ = std::max(1.0, width);
    height_ = std::max(1.0, height);
    soundSeconds_ = soundSeconds;
}

StageFingers::Finger* StageFingers::find(TouchId id) {
    const auto found = std::find_if(fingers_.begin(), fingers_.end(),
                                    [id](const Finger& finger) { return finger.id == id; });
    return found == fingers_.end() ? nullptr : &*found;
}

bool StageFingers::isZooming() const {
    return std::any_of(fingers_.begin(), fingers_.end(),
                       [](const Finger& finger) { return finger.does == Does::zoom; });
}

bool StageFingers::beginsZoom(double time) const {
    return fingers_.size() == 1 && fingers_.front().does == Does::scrub &&
           time - beganAt_ <= kTogetherSeconds;
}

void StageFingers::began(TouchId id, Point at, double time) {
    if (isZooming()) return; // nothing is for a third
    if (beginsZoom(time)) return beginZoom({id, at, Does::zoom}, time);
    if (fingers_.empty()) {
        scanBefore_ = hands_.scan();
        beganAt_ = time;
    }
    fingers_.push_back({id, at, Does::scrub});
    hands_.pressed(id, at.x / width_, at.y / height_, time, false);
}

void StageFingers::beginZoom(const Finger& second, double time) {
    Finger& first = fingers_.front();
    hands_.cancelled(first.id, time);
    hands_.returnScan(scanBefore_);
    first.does = Does::zoom;
    fingers_.push_back(second);
}

void StageFingers::moved(TouchId id, Point at, double time) {
    Finger* const finger = find(id);
    if (!finger) return;
    if (finger->does == Does::zoom) return zoom(*finger, at);
    finger->at = at;
    if (finger->does == Does::scrub) hands_.dragged(id, at.x / width_, at.y / height_, time);
}

/// What is between the two fingers stays between them.
void StageFingers::zoom(Finger& finger, Point to) {
    const auto other = std::find_if(fingers_.begin(), fingers_.end(), [&](const Finger& one) {
        return one.does == Does::zoom && one.id != finger.id;
    });
    const auto apart = [&other](Point at) {
        return std::max(kLeastApart, std::hypot(at.x - other->at.x, at.y - other->at.y));
    };
    const auto middle = [&other](Point at) { return (at.x + other->at.x) / 2.0; };
    hands_.pinched(middle(finger.at) / width_, apart(finger.at) / apart(to), soundSeconds_);
    hands_.pan((middle(finger.at) - middle(to)) / width_);
    finger.at = to;
}

StageFingers::Does StageFingers::forget(TouchId id) {
    const Finger* const finger = find(id);
    if (!finger) return Does::nothing;
    const Does did = finger->does;
    fingers_.erase(fingers_.begin() + (finger - fingers_.data()));
    if (did == Does::zoom) // the other one has nothing to zoom with
        for (Finger& left : fingers_) left.does = Does::nothing;
    return did;
}

void StageFingers::ended(TouchId id, double time) {
    if (forget(id) == Does::scrub) hands_.released(id, time);
}

void StageFingers::cancelled(TouchId id, double time) {
    if (forget(id) == Does::scrub) hands_.cancelled(id, time);
}

} // namespace zephyra
