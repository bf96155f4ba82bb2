#include "stream/scrub_area.h"

#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

ScrubArea::ScrubArea(MOK_SCRUB_GRANULATOR& stream, RunLoop& runLoop, std::string key)
    : ScanTarget(std::move(key)), stream_(stream), runLoop_(runLoop) {}

ScrubArea::~ScrubArea() {
    runLoop_.cancel(resting_);
    runLoop_.cancel(driven_);
}

void ScrubArea::touchesBegan(TouchId id, Point at, double time) {
    if (!isFinite(at) || !std::isfinite(time)) return;
    lastTime_ = time;
    end(id, time);
    if (!userInteractionEnabled || (first_ && second_)) return;
    const Finger finger = first_ ? Finger::second : Finger::first;
    if (finger == Finger::first)
        beginFirst(id, at);
    else
        second_ = id;
    tellListeners([&](TouchListener& listener) { listener.touchBegan(finger, at, time); });
}

void ScrubArea::beginFirst(TouchId id, Point at) {
    first_ = id;
    origin_ = at;
    pressAndHold_ = false;
    stream_.ui_setSpeed();
    putScan(at);
    resting_ = runLoop_.performAfter(kRestSeconds, [this] {
        resting_ = 0;
        pressAndHold_ = true;
        setNeedsDisplay();
    });
    stream_.scrubRecorder.handScrubs();
    if (StreamSettings* const settings = stream_.settings())
        settings->AUv3_Parameter_scrub_from_DSP(control_event::touchDown);
}

void ScrubArea::touchesMoved(TouchId id, Point at, double time) {
    const bool first = first_ == id;
    if ((!first && second_ != id) || !isFinite(at) || !std::isfinite(time)) return;
    lastTime_ = time;
    if (first) {
        if (std::hypot(at.x - origin_.x, at.y - origin_.y) >= kRestTravel) stopResting();
        stream_.scrubRecorder.handScrubs(); // recording may have been armed under the finger
        putScan(at);
        if (StreamSettings* const settings = stream_.settings())
            settings->AUv3_Parameter_scrub_from_DSP(control_event::valueChanged);
    }
    const Finger finger = first ? Finger::first : Finger::second;
    tellListeners([&](TouchListener& listener) { listener.touchMoved(finger, at, time); });
}

void ScrubArea::touchesEnded(TouchId id, double time) {
    end(id, time);
}

void ScrubArea::touchesCancelled(TouchId id, double time) {
    if (first_ == id) pressAndHold_ = false;
    end(id, time);
}

/// An end counts whatever its time, or the finger would touch for ever.
void ScrubArea::end(TouchId id, double time) {
    if (std::isfinite(time)) lastTime_ = time;
    if (first_ == id) return endFirst(lastTime_);
    if (second_ != id) return;
    second_.reset();
    tellListeners([&](TouchListener& listener) { listener.touchEnded(Finger::second, lastTime_); });
}

void ScrubArea::endFirst(double time) {
    stopResting();
    first_.reset();
    stream_.scrubRecorder.handEnds();
    stream_.ui_setSpeed();
    setNeedsDisplay();
    if (StreamSettings* const settings = stream_.settings())
        settings->AUv3_Parameter_scrub_from_DSP(control_event::touchUpInside);
    tellListeners([&](TouchListener& listener) { listener.touchEnded(Finger::first, time); });
}

void ScrubArea::longPressFirstFingerGesture() {
    if (!pressAndHold_) return;
    endPressAndHold();
    if (first_) endFirst(lastTime_);
}

bool ScrubArea::letGoForRewind() {
    if (first_) return false;
    if (pressAndHold_) endPressAndHold();
    return true;
}

void ScrubArea::endPressAndHold() {
    pressAndHold_ = false;
    stream_.ui_setSpeed();
    setNeedsDisplay();
}

void ScrubArea::putScan(Point at) {
    stream_.scrubTo(static_cast<float>(std::clamp(at.x, 0.0, 1.0)));
    setNeedsDisplay();
}

void ScrubArea::stopResting() {
    runLoop_.cancel(std::exchange(resting_, 0));
}

float ScrubArea::scanPosition() const {
    return stream_.getTimePhasor();
}

void ScrubArea::driveScan(float position, double seconds) {
    if (stream_.isScrubbing() || !std::isfinite(position) || !std::isfinite(seconds)) return;
    if (seconds > 0.0 && stream_.scrubRecorder.movesScan()) return;
    stream_.setScrubNormalizedValue(position);
    if (!(seconds > 0.0)) return;
    const bool stood = driven_ != 0;
    runLoop_.cancel(driven_);
    driven_ = runLoop_.performAfter(seconds, [this] {
        driven_ = 0;
        stream_.ui_setSpeed();
    });
    if (!stood) stream_.ui_setSpeed();
}

void ScrubArea::endDriving() {
    runLoop_.cancel(std::exchange(driven_, 0));
    stream_.ui_setSpeed();
}

void ScrubArea::addListener(TouchListener* listener) {
    if (listener && std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end())
        listeners_.push_back(listener);
}

void ScrubArea::removeListener(TouchListener* listener) {
    std::erase(listeners_, listener);
}

/// A listener may take itself or another one away.
template <typename Tell>
void ScrubArea::tellListeners(Tell tell) {
    for (TouchListener* const listener : std::vector(listeners_))
        if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end())
            tell(*listener);
}

} // namespace zephyra
