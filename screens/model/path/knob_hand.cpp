// Pointers and steps. What acts at once is in knob_commands.cpp.
#include "screens/model/path/knob_hand.h"

#include "controls/knob.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

constexpr double kFine = 0.1;
constexpr float kHalfTurn = 135.0f;    // degrees: what is drawn is what a finger follows
constexpr double kNotch = 1.0 / 50;    // of the turn
constexpr double kStepsEndAfter = 0.4; // seconds

double angleOf(Point p, Point centre) {
    return std::atan2(p.y - centre.y, p.x - centre.x);
}

/// told turned around centre as from turned to to, share of it.
Point turned(Point told, Point centre, Point from, Point to, double share) {
    const double angle =
        angleOf(told, centre) +
        share * std::remainder(angleOf(to, centre) - angleOf(from, centre), 2.0 * std::numbers::pi);
    const double radius = std::hypot(to.x - centre.x, to.y - centre.y);
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

bool hasPositions(const ControlRange& range) {
    return range.kind == ControlKind::whole || range.kind == ControlKind::choice;
}

/// Linear values in a notch.
double notchOf(const ControlRange& range, const MOK_KNOB& knob) {
    const bool semitones = std::string_view(range.unit) == "semitones";
    if (semitones || hasPositions(range)) return 1.0;
    return kNotch * (double{knob.maximumValue()} - double{knob.minimumValue()});
}

} // namespace

KnobHand::KnobHand(ScreenContext& context) : context_(context) {
    context_.hands.push_back(this);
}

KnobHand::~KnobHand() {
    std::erase(context_.hands, this);
    while (!held_.empty()) cancel(held_.begin()->first);
    endSteps();
}

void KnobHand::beginEdit(const std::string& name) {
    if (context_.beginEdit) context_.beginEdit(name);
}

void KnobHand::endEdit() {
    if (context_.endEdit) context_.endEdit();
}

bool KnobHand::begin(TouchId pointer, ControlId id, Point at, Point centre) {
    const bool isTaken = std::any_of(held_.begin(), held_.end(),
                                     [id](const auto& held) { return held.second.id == id; });
    if (isTaken || held_.contains(pointer) || !isFinite(at) || !isFinite(centre)) return false;
    endSteps();
    beginEdit(controlRange(id).name);
    const bool begun = context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB* const knob = view.knob(id);
        if (!knob || knob->isTracking()) return false;
        knob->MaxAngle = kHalfTurn;
        knob->setCenter(centre);
        knob->beginTracking(at);
        return knob->isTracking();
    });
    if (begun)
        held_[pointer] = {id, centre, at, at};
    else
        endEdit();
    return begun;
}

/// The knob is told of a pointer that moves less where it is fine, and that goes on from there.
void KnobHand::move(TouchId pointer, Point to, Fineness fineness) {
    const auto found = held_.find(pointer);
    if (found == held_.end() || !isFinite(to)) return;
    Held& held = found->second;
    if (to == held.real) return;
    const double share = fineness == Fineness::fine ? kFine : 1.0;
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB& knob = *view.knob(held.id);
        if (knob._interactionStyle == kRotary)
            held.told = turned(held.told, held.centre, held.real, to, share);
        else
            held.told = {held.told.x + share * (to.x - held.real.x),
                         held.told.y + share * (to.y - held.real.y)};
        knob.continueTracking(held.told);
    });
    held.real = to;
    held.moved = true;
}

void KnobHand::finish(TouchId pointer, bool cancelled) {
    const auto found = held_.find(pointer);
    if (found == held_.end()) return;
    const Held held = found->second;
    held_.erase(found);
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB& knob = *view.knob(held.id);
        if (cancelled)
            knob.cancelTracking();
        else
            knob.endTracking(held.told);
    });
    endEdit();
}

void KnobHand::end(TouchId pointer) {
    finish(pointer, false);
}

void KnobHand::cancel(TouchId pointer) {
    finish(pointer, true);
}

bool KnobHand::isTapping(TouchId pointer) const {
    const auto found = held_.find(pointer);
    return found != held_.end() && !found->second.moved;
}

void KnobHand::beginSteps(ControlId id, double now) {
    if (steps_ && steps_->id != id) endSteps();
    if (!steps_) {
        beginEdit(controlRange(id).name);
        steps_ = Steps{.id = id};
        context_.source.asMain([id](AudioUnitViewController& view) {
            if (MOK_KNOB* const knob = view.knob(id))
                knob->sendActionsForControlEvents(control_event::touchDown);
        });
    }
    steps_->until = now + kStepsEndAfter;
}

void KnobHand::endSteps() {
    if (!steps_) return;
    const ControlId id = steps_->id;
    steps_.reset();
    context_.source.asMain([id](AudioUnitViewController& view) {
        if (MOK_KNOB* const knob = view.knob(id))
            knob->sendActionsForControlEvents(control_event::touchUpInside);
    });
    endEdit();
}

void KnobHand::frame(double now) {
    if (steps_ && !(now < steps_->until)) endSteps();
}

void KnobHand::turn(ControlId id, double notches, Fineness fineness, double now) {
    if (!std::isfinite(notches)) return;
    beginSteps(id, now);
    const ControlRange& range = controlRange(id);
    const bool positions = hasPositions(range);
    if (fineness == Fineness::fine && !positions) notches *= kFine;
    if (positions) { // a smooth wheel adds up to whole ones
        steps_->rest += notches;
        notches = std::trunc(steps_->rest);
        steps_->rest -= notches;
    }
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB* const knob = view.knob(id);
        if (!knob || knob->isTracking()) return;
        const float before = knob->value(); // which an LFO may have carried off
        knob->setValue(static_cast<float>(view.baseValue(*knob) + notches * notchOf(range, *knob)));
        if (knob->value() != before) knob->sendEventValueChanged();
    });
}

void KnobHand::turnTo(ControlId id, float linear, double now) {
    if (!std::isfinite(linear)) return;
    beginSteps(id, now);
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB* const knob = view.knob(id);
        if (!knob || knob->isTracking()) return;
        const float before = knob->value();
        knob->setValue(linear);
        if (knob->value() != before) knob->sendEventValueChanged();
    });
}

void KnobHand::turnToEnd(ControlId id, bool maximum, double now) {
    constexpr double kPastEveryEnd = 1e6; // notches
    turn(id, maximum ? kPastEveryEnd : -kPastEveryEnd, Fineness::coarse, now);
}

} // namespace zephyra
