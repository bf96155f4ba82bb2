#include "modulation/lfo_widget_wrapper.h"

#include "controls/knob.h"
#include "controls/note_values.h"
#include "controls/scan_target.h"
#include "controls/state_keys.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

using namespace wrapper_key;

constexpr double kUnknownTempo = 120.0; // beats per minute
constexpr std::int64_t kLastNoteValue = std::int64_t{kNoteValues.size()} - 1;

} // namespace

LfoWidgetWrapper::LfoWidgetWrapper(Control& control, std::unique_ptr<ControlMover> mover,
                                   double bpm, RandomSource& random)
    : WidgetWrapper(control), currentLFO(random), mover_(std::move(mover)) {
    currentLFO.addDelegate(this);
    setTempo(bpm);
    resetPhase();
    base_ = began_;
    followHand();
}

LfoWidgetWrapper::~LfoWidgetWrapper() {
    currentLFO.removeDelegate();
    obj()->removeTarget(this, {}, control_event::all);
}

/// In this order: a control that sends every event at once is touched, set and left.
void LfoWidgetWrapper::followHand() {
    using namespace control_event;
    obj()->addTarget(this, "handCame:", touchDown, [this](Control&) { isTouched_ = true; });
    obj()->addTarget(this, "handMoved:", valueChanged, [this](Control&) {
        if (isTouched_ && !isMoving_) base_ = mover_->value();
    });
    obj()->addTarget(this, "handLeft:", touchUpInside | touchUpOutside | touchCancel,
                     [this](Control&) { isTouched_ = false; });
}

void LfoWidgetWrapper::setLfoShapeFromWrapper(std::int64_t shape) {
    currentLFO.setShape(shape);
    resetPhase();
}

void LfoWidgetWrapper::setHz(double hz) {
    if (!std::isfinite(hz)) return;
    freeHz_ = std::clamp(hz, kLowestLfoRate, kHighestLfoRate);
    applyRate();
}

void LfoWidgetWrapper::setLinkIsEnabled(bool on) {
    linked_ = on;
    applyRate();
}

void LfoWidgetWrapper::setClockSub(int index) {
    clockSub_ = std::clamp(index, 0, static_cast<int>(kLastNoteValue));
    applyRate();
}

void LfoWidgetWrapper::setClockSubMult(double mult) {
    if (!std::isfinite(mult)) return;
    clockSubMult_ = std::clamp(mult, kLeastMult, kMostMult);
    applyRate();
}

void LfoWidgetWrapper::setTempo(double bpm) {
    bpm_ = std::isfinite(bpm) && bpm > 0.0 ? bpm : kUnknownTempo;
    applyRate();
}

void LfoWidgetWrapper::applyRate() {
    const NoteValue& note = kNoteValues[static_cast<std::size_t>(clockSub_)];
    currentLFO.setClockSubRatio(note.repeatsPerBeat / clockSubMult_);
    const double linkedHz = bpm_ / 60.0 * currentLFO.clockSubRatio();
    // A tempo beyond all reason is as fast as possible, not a rate that is refused.
    currentLFO.setHz(linked_ ? std::min(linkedHz, kHighestLfoRate) : freeHz_);
}

void LfoWidgetWrapper::setSuspended(bool on) {
    suspended_ = on;
    mover_->letGo();
}

void LfoWidgetWrapper::lfoValue(double value) {
    if (suspended_) return;
    if (mover_->isHeld()) return mover_->letGo();
    isMoving_ = true;
    mover_->follow(placeInRange(value, *this), *this, kLfoTick);
    isMoving_ = false;
}

void LfoWidgetWrapper::resetPhase() {
    mover_->letGo();
    began_ = mover_->value();
    const double min = double{minRange()}, max = double{maxRange()};
    const double place =
        std::clamp(double{mover_->position()}, std::min(min, max), std::max(min, max));
    currentLFO.resetPhaseAccordingToShape_MinRange_MaxRange_Phase(currentLFO.shape(), min, max,
                                                                  place);
}

void LfoWidgetWrapper::startAnew() {
    currentLFO.startAnew();
    mover_->letGo();
    if (!suspended_ && !mover_->isHeld()) mover_->setValue(began_);
}

PropertyDictionary LfoWidgetWrapper::state() const {
    PropertyDictionary state = WidgetWrapper::state();
    state[kShape] = currentLFO.shape();
    state[kLinkSwitch] = linked_;
    state[kClockSub] = clockSub_;
    state[kClockSubMult] = clockSubMult_;
    state[kHz] = freeHz_;
    return state;
}

void LfoWidgetWrapper::applyState(PropertyReader& state) {
    WidgetWrapper::applyState(state);
    if (const auto shape = state.whole(kShape)) currentLFO.setShape(*shape);
    if (const auto linked = state.boolean(kLinkSwitch)) setLinkIsEnabled(*linked);
    if (const auto sub = state.whole(kClockSub))
        setClockSub(static_cast<int>(std::clamp(*sub, std::int64_t{0}, kLastNoteValue)));
    if (const auto mult = state.real(kClockSubMult)) setClockSubMult(*mult);
    if (const auto hz = state.real(kHz)) setHz(*hz);
    resetPhase();
}

MOK_KNOB_LFO_CONTROL_WRAPPER::MOK_KNOB_LFO_CONTROL_WRAPPER(MOK_KNOB& knob, double bpm,
                                                           RandomSource& random)
    : LfoWidgetWrapper(knob, makeKnobMover(knob), bpm, random) {}

LfoScrubWaveFormWidgetWrapper::LfoScrubWaveFormWidgetWrapper(ScanTarget& scan, double bpm,
                                                             RandomSource& random)
    : LfoWidgetWrapper(scan, makeScanMover(scan), bpm, random) {}

} // namespace zephyra
