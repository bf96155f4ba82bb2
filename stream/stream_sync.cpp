// How MOK_SCRUB_GRANULATOR follows the host's tempo, bars and transport.

#include "stream/stream_controller.h"

#include <cmath>

namespace zephyra {

/// A start that does not show yet cannot be stopped, nor followed by another one: what the host
/// tells meanwhile comes after that step, in its order.
bool MOK_SCRUB_GRANULATOR::waitsForStart(void (MOK_SCRUB_GRANULATOR::*told)()) {
    if (!startQueued_) return false;
    hostWaits_ = true;
    onMain([this, told] { (this->*told)(); });
    return true;
}

void MOK_SCRUB_GRANULATOR::syncStateTempoForte() {
    if (hostWaits_ && waitsForStart(&MOK_SCRUB_GRANULATOR::syncStateTempoForte)) return;
    if (shouldPlayOnTime) {
        clearBackgroundLater(controls._playToggle);
        ____play();
        scrubArea.longPressFirstFingerGesture();
    }
    scrubRecorder.syncStateTempoForte();
    if (shouldRewindOnTime) {
        clearBackgroundLater(controls._rewind);
        ____rewind();
    }
}

void MOK_SCRUB_GRANULATOR::clearBackgroundLater(Button& button) {
    onMain([&button] { showArmed(button, false); });
}

void MOK_SCRUB_GRANULATOR::syncStateDidChangedWithBPM(double bpm) {
    if (!std::isfinite(bpm)) return;
    CURRENT_CLOCK_BPM = bpm;
    if (controls.syncSampler.isOn()) ui_setSpeed(&controls._scanning);
    if (!controls.syncDelay.isOn()) return;
    setEchoDelayLeft(&controls.delay_subdivisionLeft);
    setEchoDelayRight(&controls.delay_subdivisionRight);
}

void MOK_SCRUB_GRANULATOR::forceToPlayIfShouldPlay() {
    if (waitsForStart(&MOK_SCRUB_GRANULATOR::forceToPlayIfShouldPlay)) return;
    if (controls._playToggle.tag != 0 || !controls.syncSampler.isOn()) return;
    clearBackgroundLater(controls._playToggle); // it may have been armed
    ____play();
}

void MOK_SCRUB_GRANULATOR::shouldPlay() {
    if (waitsForStart(&MOK_SCRUB_GRANULATOR::shouldPlay)) return;
    if (shouldPlayOnTime) return; // it waits for its downbeat: pressing would disarm it
    if (data_.isPlaying || !data_.followsHost) return;
    ui_playStop(&controls._playToggle);
    hostArmed_ = shouldPlayOnTime;
}

void MOK_SCRUB_GRANULATOR::shouldStop() {
    if (waitsForStart(&MOK_SCRUB_GRANULATOR::shouldStop)) return;
    if (hostArmed_) setArmed(false);
    if (data_.isPlaying && data_.followsHost) ui_playStop(&controls._playToggle);
}

void MOK_SCRUB_GRANULATOR::shouldRewind() {
    if (data_.followsHost) ui_rewind(&controls._rewind);
}

void MOK_SCRUB_GRANULATOR::shouldRewindFromHost() {
    if (data_.followsHost) ____rewind();
}

void MOK_SCRUB_GRANULATOR::enableDelaySync(Control*) {
    onMain([this, on = controls.syncDelay.isOn()] {
        StreamControls& c = controls;
        c._echoDelayLeft.hidden = c._echoDelayRight.hidden = on;
        c.delay_subdivisionLeft.hidden = c.delay_subdivisionRight.hidden = !on;
        for (Control* changed :
             {static_cast<Control*>(&c._echoDelayLeft), static_cast<Control*>(&c._echoDelayRight),
              static_cast<Control*>(&c.delay_subdivisionLeft),
              static_cast<Control*>(&c.delay_subdivisionRight)})
            changed->setNeedsDisplay();
    });
    setEchoDelayLeft();
    setEchoDelayRight();
}

/// There is no downbeat to wait for any more.
void MOK_SCRUB_GRANULATOR::dropArmed() {
    setArmed(false);
    shouldRewindOnTime = false;
    showArmed(controls._rewind, false);
    scrubRecorder.disarm();
}

void MOK_SCRUB_GRANULATOR::enableSamplerSync(Control*) {
    data_.followsHost = controls.syncSampler.isOn();
    onMain([this, on = data_.followsHost] {
        StreamControls& c = controls;
        c._scanning.hidden = on;
        c.sampler_mesure.hidden = c.sampler_quarter.hidden = c.syncImg.hidden = !on;
        if (!on) dropArmed();
        for (Control* changed :
             {static_cast<Control*>(&c._scanning), static_cast<Control*>(&c.sampler_mesure),
              static_cast<Control*>(&c.sampler_quarter), &c.syncImg})
            changed->setNeedsDisplay();
    });
    ui_setSpeed(&controls._scanning);
}

} // namespace zephyra
