#include "controls/tap_tempo.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kMinute = 60.0; // seconds
constexpr double kBeatsOfMemory = 2.0;
constexpr double kSteps = 4.0; // fine steps in one beat a minute

} // namespace

MOK_TAP::MOK_TAP(RunLoop& runLoop, std::string key) : Control(std::move(key)), runLoop_(runLoop) {}

MOK_TAP::~MOK_TAP() {
    runLoop_.cancel(forgetting_);
    runLoop_.cancel(repeating_);
}

void MOK_TAP::setValue(double bpm) {
    if (!std::isfinite(bpm)) return;
    value_ = std::clamp(bpm, kLowestTempo, kHighestTempo);
    setNeedsDisplay();
}

/// What a hand does: whoever is told sees a tempo that differs from the last one.
void MOK_TAP::change(double bpm) {
    const double former = value_;
    setValue(bpm);
    if (value_ != former) sendEventValueChanged();
}

std::string MOK_TAP::label() const {
    std::string text = formatFixed(value_, 2);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

// --- Taps ---

void MOK_TAP::TapTimeSync(double now) {
    if (!std::isfinite(now)) return;
    // The run loop may be late in forgetting, or follow another clock than the taps.
    if (lastTap_ >= 0.0 && now - lastTap_ > memory_) resetTapCounter();
    double memory = kFirstTapMemory;
    if (lastTap_ >= 0.0) {
        const double interval = now - lastTap_;
        if (interval <= 0.0) return;
        setValue(std::round(kMinute / interval));
        memory = kBeatsOfMemory * kMinute / value_;
        sendEventValueChanged();
    }
    rememberTap(now, memory);
}

void MOK_TAP::rememberTap(double now, double seconds) {
    resetTapCounter();
    lastTap_ = now;
    memory_ = seconds;
    forgetting_ = runLoop_.performAfter(seconds, [this] { resetTapCounter(); });
}

void MOK_TAP::resetTapCounter() {
    runLoop_.cancel(forgetting_);
    forgetting_ = 0;
    lastTap_ = -1.0;
}

// --- Fine steps ---

void MOK_TAP::incrBPMFrac() {
    if (value_ < kHighestTempo) change((std::floor(value_ * kSteps) + 1.0) / kSteps);
}

void MOK_TAP::decrBPMFrac() {
    if (value_ > kLowestTempo) change((std::ceil(value_ * kSteps) - 1.0) / kSteps);
}

void MOK_TAP::longPressEvent_plus(bool begins) {
    longPress(&MOK_TAP::incrBPMFrac, begins);
}

void MOK_TAP::longPressEvent_minus(bool begins) {
    longPress(&MOK_TAP::decrBPMFrac, begins);
}

/// A press that begins takes the place of the other button's; the end of that one then means
/// nothing.
void MOK_TAP::longPress(Step step, bool begins) {
    if (!begins && step != repeated_) return;
    runLoop_.cancel(repeating_);
    repeating_ = 0;
    repeated_ = nullptr;
    if (!begins) return;
    repeated_ = step;
    repeating_ = runLoop_.addTimer(kRepeat, [this, step] { (this->*step)(); });
    (this->*step)();
}

// --- Drags ---

void MOK_TAP::beginTempoDrag() {
    dragStart_ = value_;
}

void MOK_TAP::tempoDrag(double pointsUp) {
    change(dragStart_ + pointsUp / kPointsPerBeat);
}

} // namespace zephyra
