#include "modulation/midi_follower.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr float kNear = 0.008f;   // a step of 7 bits: closer than that nobody can come
constexpr float kSame = 1e-4f;    // more than rounding, less than anybody notices
constexpr float kSwitched = 0.5f; // from here on something is on

float switched(float place) {
    return place >= kSwitched ? 1.0f : 0.0f;
}

} // namespace

MidiFollower::MidiFollower(const MidiBinding& binding)
    : binding_(binding), knob_(dynamic_cast<MOK_KNOB*>(binding.control)),
      toggle_(dynamic_cast<Toggle*>(binding.control)),
      button_(dynamic_cast<Button*>(binding.control)),
      scan_(dynamic_cast<ScanTarget*>(binding.control)) {}

float MidiFollower::placeAt(double value) const {
    const double curved = std::pow(value, double{binding_.curve});
    const double min = double{binding_.min}, max = double{binding_.max};
    const auto place = static_cast<float>(min + curved * (max - min));
    return toggle_ ? switched(place) : place;
}

void MidiFollower::take(double value) {
    if (binding_.relative) return bend(value);
    const float place = placeAt(value);
    const std::optional<float> before = std::exchange(place_, place);
    const bool note = binding_.trigger.source == MidiSource::note;
    if (button_) {
        if (note || (place >= kSwitched && before.value_or(0.0f) < kSwitched)) press();
        return;
    }
    if (toggle_ && note) return toggle_->trigger();

    const bool passed =
        before && (reaches(*before) || (*before - stands()) * (place - stands()) <= 0.0f);
    const bool ready =
        follows() || reaches(place) || passed || binding_.takeover == MidiTakeover::jump;
    set_.reset();
    if (!isHeld() && ready) moveTo(place);
}

bool MidiFollower::waits() const {
    if (button_ || binding_.relative || binding_.takeover == MidiTakeover::jump) return false;
    if (toggle_ && binding_.trigger.source == MidiSource::note) return false;
    return !follows();
}

void MidiFollower::startAnew() {
    if (binding_.relative && follows()) moveTo(static_cast<float>(base_));
    place_.reset();
    set_.reset();
}

float MidiFollower::stands() const {
    if (knob_) return knob_->valueNorm();
    if (scan_) return scan_->scanPosition();
    return toggle_ && toggle_->isOn() ? 1.0f : 0.0f;
}

bool MidiFollower::isHeld() const {
    return (knob_ && knob_->isTracking()) || (scan_ && scan_->isHeld());
}

bool MidiFollower::follows() const {
    if (!set_ || isHeld()) return false;
    return scan_ || std::abs(stands() - *set_) <= kSame;
}

bool MidiFollower::reaches(float place) const {
    const auto [low, high] = std::minmax({placeAt(0.0), placeAt(1.0)});
    return std::abs(place - std::clamp(stands(), low, high)) <= kNear;
}

void MidiFollower::moveTo(float place) {
    if (scan_) {
        scan_->driveScan(place, 0.0);
    } else if (toggle_) {
        if (place != stands()) toggle_->trigger();
    } else {
        const float before = knob_->value();
        knob_->setValueNorm(place);
        set_ = stands(); // the events may ask
        if (knob_->value() != before) knob_->sendEventValueChanged();
    }
    set_ = stands(); // with steps, and what the events made of it
}

// Whoever else moves the knob meanwhile chooses the base: letting the wheel go leads back there. A
// note is bent at once, by carry(). At rest the wheel adds nothing, whatever rounding says.
void MidiFollower::bend(double value) {
    const double bent = bentBy(value);
    if (!follows()) base_ = double{stands()};
    set_.reset();
    if (isHeld()) return;
    moveTo(static_cast<float>(std::clamp(base_ + bent, 0.0, 1.0)));
}

void MidiFollower::carry(double value) {
    const double bent = bentBy(value);
    if (bent == 0.0 || isHeld()) return;
    base_ = double{stands()};
    knob_->setValueNorm(static_cast<float>(std::clamp(base_ + bent, 0.0, 1.0)));
    set_ = stands();
}

/// A fraction of the range; 0 for a wheel that rests.
double MidiFollower::bentBy(double value) const {
    const double side = 2.0 * value - 1.0;
    const double most = double{side < 0.0 ? binding_.min : binding_.max};
    return std::copysign(std::pow(std::abs(side), double{binding_.curve}) * most, side);
}

void MidiFollower::press() const {
    if (button_->userInteractionEnabled) button_->trigger();
}

} // namespace zephyra
