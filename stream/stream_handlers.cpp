// How each control of MOK_SCRUB_GRANULATOR reaches the engine.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "stream/echo_sync.h"
#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

namespace echo = delay_stereo_forward;
using enum ControlId;

void setEchoDelay(CommonState* module, echo::Parameter parameter, float& kept, double seconds,
                  double rate) {
    const auto milliseconds = static_cast<float>(seconds * 1000.0);
    if (!std::isfinite(milliseconds)) return;
    kept = milliseconds;
    echo::setparameter(module, parameter, double{milliseconds} * rate * 0.001);
}

void setEchoGain(CommonState* module, echo::Parameter parameter, float& kept, float gain) {
    kept = gain;
    echo::setparameter(module, parameter, double{gain});
}

} // namespace

void MOK_SCRUB_GRANULATOR::ui_setAmplitude(Control*) {
    if (!_isFading) engine_.setLevel(controls._volume.value());
}

void MOK_SCRUB_GRANULATOR::ui_setWidth(Control*) {
    engine_.setWidth(controls._width.value());
}

void MOK_SCRUB_GRANULATOR::ui_setPan(Control*) {
    engine_.setPan(controls._pan.value());
}

void MOK_SCRUB_GRANULATOR::ui_setDensity(Control*) {
    engine_.setDensity(controls._density.valueExp());
}

void MOK_SCRUB_GRANULATOR::ui_setLength(Control*) {
    engine_.setLength(controls._length.valueExp());
}

void MOK_SCRUB_GRANULATOR::ui_setJittering(Control*) {
    engine_.setJittering(controls._jitter.valueExp());
}

void MOK_SCRUB_GRANULATOR::ui_setPitch(Control*) {
    engine_.setPitch(controls._pitch.value());
}

void MOK_SCRUB_GRANULATOR::ui_setRndDensity(Control*) {
    engine_.setRndDensity(controls._rnd_density.value());
}

void MOK_SCRUB_GRANULATOR::ui_setRndLength(Control*) {
    engine_.setRndLength(controls._rnd_len.value());
}

void MOK_SCRUB_GRANULATOR::ui_setRndPitch(Control*) {
    engine_.setRndPitch(controls._rnd_pitch.value());
}

void MOK_SCRUB_GRANULATOR::ui_setSpeed(Control*) {
    scanWasMoved();
    realScanningValue = scanSpeed() * isFreezed;
    if (_isFading) return;
    engine_.setSpeed(scrubArea.stands() ? 0.0f : static_cast<float>(realScanningValue));
}

/// Synced, the whole sound is scanned once in so many measures of so many quarters.
double MOK_SCRUB_GRANULATOR::scanSpeed() const {
    if (!controls.syncSampler.isOn()) return double{controls._scanning.value()};
    const double measureCount = std::trunc(double{controls.sampler_mesure.value()});
    const double quarterCount = std::trunc(double{controls.sampler_quarter.value()});
    if (quarterCount == 0.0) return 0.0;
    const double fileBpm = 60.0 / (waveForm_.getFileDuration() / (measureCount * quarterCount));
    return CURRENT_CLOCK_BPM / fileBpm;
}

double MOK_SCRUB_GRANULATOR::echoSeconds(const MOK_KNOB& delay,
                                         const MokKnobEnum& subdivision) const {
    if (!controls.syncDelay.isOn()) return double{delay.value()};
    return syncedEchoSeconds(CURRENT_CLOCK_BPM, static_cast<std::size_t>(subdivision.index()));
}

double MOK_SCRUB_GRANULATOR::echoRate() const {
    constexpr double kFixedRate = 44100.0;
    return echoAtOutputRate_ ? engine_.echoModule()->sampleRate : kFixedRate;
}

void MOK_SCRUB_GRANULATOR::setEchoAtOutputRate(bool atOutputRate) {
    echoAtOutputRate_ = atOutputRate;
    setEchoDelayLeft();
    setEchoDelayRight();
}

void MOK_SCRUB_GRANULATOR::setEchoDelayLeft(Control*) {
    setEchoDelay(engine_.echoModule(), echo::kTimeL, engine_.echoTimeL,
                 echoSeconds(controls._echoDelayLeft, controls.delay_subdivisionLeft), echoRate());
}

void MOK_SCRUB_GRANULATOR::setEchoDelayRight(Control*) {
    setEchoDelay(engine_.echoModule(), echo::kTimeR, engine_.echoTimeR,
                 echoSeconds(controls._echoDelayRight, controls.delay_subdivisionRight),
                 echoRate());
}

// By name, not by place: the echo lists the right feedback before the left, and the times the other
// way round.

void MOK_SCRUB_GRANULATOR::setEchoGainLeft(Control*) {
    setEchoGain(engine_.echoModule(), echo::kFeedbackL, engine_.echoGainL,
                controls._echoGainLeft.value());
}

void MOK_SCRUB_GRANULATOR::setEchoGainRight(Control*) {
    setEchoGain(engine_.echoModule(), echo::kFeedbackR, engine_.echoGainR,
                controls._echoGainRight.value());
}

void MOK_SCRUB_GRANULATOR::setRmFrequency(Control*) {
    RM::setparameter(engine_.ringModulatorModule(), RM::kFreq,
                     double{controls._rmFrequency.valueExp()});
}

void MOK_SCRUB_GRANULATOR::setRmAmount(Control*) {
    RM::setparameter(engine_.ringModulatorModule(), RM::kDryWet,
                     double{controls._rmAmount.value()});
}

void MOK_SCRUB_GRANULATOR::enableEcho(Control*) {
    engine_.echoOn = controls._echoSwitch.isOn();
}

void MOK_SCRUB_GRANULATOR::enableRM(Control*) {
    engine_.ringOn = controls._rmSwitch.isOn();
}

Control* MOK_SCRUB_GRANULATOR::control(ControlId id) {
    return id == scrubbingWave ? &scrubArea : controls.control(id);
}

bool MOK_SCRUB_GRANULATOR::setDisplayed(ControlId id, float displayedValue) {
    const ControlRange& range = controlRange(id);
    return acceptsValue(range, displayedValue) &&
           setLinear(id, linearFromDisplayed(range, displayedValue));
}

bool MOK_SCRUB_GRANULATOR::setLinear(ControlId id, float value) {
    if (!std::isfinite(value)) return false;
    const ControlRange& range = controlRange(id);
    const float held = std::clamp(value, range.minimum, range.maximum);
    if (MOK_KNOB* const knob = controls.knob(id)) {
        knob->setValue(held);
        knob->sendEventValueChanged();
        return true;
    }
    if (Toggle* const toggle = controls.toggle(id)) {
        toggle->setOn(held != 0.0f);
        toggle->sendEventValueChanged();
        return true;
    }
    if (controls.button(id)) return switchButton(id, held != 0.0f);
    switch (id) {
    case scrubbingWave:
        setScrubNormalizedValue(held);
        return true;
    case ControlId::envelope:
        return pickEnvelope(static_cast<std::size_t>(held));
    default:
        return false;
    }
}

float MOK_SCRUB_GRANULATOR::displayed(ControlId id) const {
    const MOK_KNOB* const knob = controls.knob(id);
    return knob ? knob->displayedValue() : linear(id);
}

float MOK_SCRUB_GRANULATOR::linear(ControlId id) const {
    if (const MOK_KNOB* const knob = controls.knob(id)) return knob->value();
    if (const Toggle* const toggle = controls.toggle(id)) return toggle->isOn() ? 1.0f : 0.0f;
    switch (id) {
    case scrubbingWave:
        return getTimePhasor();
    case ControlId::envelope:
        return static_cast<float>(envelope_);
    default:
        return buttonShows(id) ? 1.0f : 0.0f;
    }
}

bool MOK_SCRUB_GRANULATOR::buttonShows(ControlId id) const {
    if (id == playStop) return controls._playToggle.tag != 0 || shouldPlayOnTime || startQueued_;
    const Button* const button = controls.button(id);
    return button && button->tag == 1;
}

bool MOK_SCRUB_GRANULATOR::switchButton(ControlId id, bool on) {
    if (id == playStop && startQueued_) { // the button cannot stop what it does not show yet
        onMain([this, on] { switchButton(playStop, on); });
        return true;
    }
    if (buttonShows(id) != on) controls.button(id)->trigger();
    return id != live || isLive() == on;
}

} // namespace zephyra
