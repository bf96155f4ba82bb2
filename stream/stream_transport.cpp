// How MOK_SCRUB_GRANULATOR starts, stops, rewinds and freezes.

#include "stream/stream_controller.h"

#include <utility>

namespace zephyra {

void MOK_SCRUB_GRANULATOR::ui_playStop(Control*) {
    if (startQueued_) return onMain([this] { ui_playStop(); }); // stops what does not show yet
    if (controls._playToggle.tag == 0) {
        if (controls.syncSampler.isOn())
            setArmed(!shouldPlayOnTime);
        else
            ____play();
        return;
    }
    stopWithin(fadeTime(ControlId::fadeOut));
}

void MOK_SCRUB_GRANULATOR::stopWithin(double seconds) {
    if (startQueued_) return onMain([this, seconds] { stopWithin(seconds); });
    setArmed(false);
    if (controls._playToggle.tag == 0 && !isPlaying()) return;
    controls._playToggle.tag = 0;
    data_.isPlaying = false;
    controls._playToggle.title = kStoppedIcon;
    controls._playToggle.tintColor.reset();
    controls._playToggle.setNeedsDisplay();
    scrubArea.animation.scrubAnimation(seconds, ScrubAnimation::Cursor::goes,
                                       instance_.runLoop.now());
    instance_.runLoop.cancel(std::exchange(pendingStop_, 0)); // of a longer fade
    fade_.beginOut(seconds);
    engine_.setSpeed(0.0f);
    _isFading = true;
    stopHolds_ = true;
    fadeOut();
    if (settings_) settings_->AUv3_Parameter_playToggle_from_DSP();
}

void MOK_SCRUB_GRANULATOR::____play() {
    startQueued_ = true;
    ++starts_;
    onMain([this] { showPlaying(); });
    handFadedLevel(); // or a block that comes right now would begin at the full volume
    engine_.setMixLevel(1.0f);
    std::string error;
    if (!play(&error)) instance_.log.write("Could not play player: " + error);
    const double seconds = fadeTime(ControlId::fadeIn);
    scrubArea.animation.scrubAnimation(seconds, ScrubAnimation::Cursor::comes,
                                       instance_.runLoop.now());
    fade_.beginIn(seconds);
    instance_.runLoop.cancel(std::exchange(pendingStop_, 0));
    fadeIn();
}

void MOK_SCRUB_GRANULATOR::showPlaying() {
    startQueued_ = hostWaits_ = false;
    shouldPlayOnTime = false;
    controls._playToggle.tag = 1;
    data_.isPlaying = true;
    controls._playToggle.title = kPlayingIcon;
    controls._playToggle.tintColor = kActiveRed;
    controls._playToggle.setNeedsDisplay();
    if (settings_) settings_->AUv3_Parameter_playToggle_from_DSP();
}

void MOK_SCRUB_GRANULATOR::setArmed(bool armed) {
    const bool changed = std::exchange(shouldPlayOnTime, armed) != armed;
    hostArmed_ = false;
    showArmed(controls._playToggle, armed);
    // Armed counts as on.
    if (changed && settings_) settings_->AUv3_Parameter_playToggle_from_DSP();
}

void MOK_SCRUB_GRANULATOR::switchEngine(bool on) {
    engine_.granularOn = on;
    _isFading = false;
    ui_setSpeed(&controls._scanning);
    stopHolds_ = false;
}

bool MOK_SCRUB_GRANULATOR::play(std::string*) {
    switchEngine(true);
    return engine_.granularOn;
}

bool MOK_SCRUB_GRANULATOR::stop(std::string*) {
    switchEngine(false);
    return !engine_.granularOn;
}

void MOK_SCRUB_GRANULATOR::fadeIn() {
    switch (fade_.tickIn([this] { fadeIn(); })) {
    case StreamFade::Outcome::aborted:
        return;
    case StreamFade::Outcome::running:
        return handFadedLevel();
    case StreamFade::Outcome::ended:
        return ui_setAmplitude(&controls._volume);
    }
}

void MOK_SCRUB_GRANULATOR::fadeOut() {
    switch (fade_.tickOut([this] { fadeOut(); })) {
    case StreamFade::Outcome::aborted:
        return;
    case StreamFade::Outcome::running:
        engine_.setMixLevel(static_cast<float>(fade_.multiplier()));
        return handFadedLevel();
    case StreamFade::Outcome::ended:
        engine_.setMixLevel(0.0f); // a level acts when a grain starts, and long ones sound on
        engine_.setLevel(0.0f);
        pendingStop_ = instance_.runLoop.performAfter(getDelayedStopTime(), [this] { stop(); });
    }
}

void MOK_SCRUB_GRANULATOR::handFadedLevel() {
    const auto level = static_cast<float>(fade_.multiplier() * double{controls._volume.value()});
    engine_.setLevel(level > 0.0f ? level : 0.0f); // never a negative zero
}

double MOK_SCRUB_GRANULATOR::fadeTime(ControlId id) const {
    if (!settings_) return double{controlRange(id).defaultValue};
    return id == ControlId::fadeIn ? settings_->fadeInTime() : settings_->fadeOutTime();
}

void MOK_SCRUB_GRANULATOR::ui_rewind(Control*) {
    shouldRewindOnTime = false;
    ____rewind();
}

void MOK_SCRUB_GRANULATOR::ui_armRewind(Control*) {
    if (!controls.syncSampler.isOn()) return;
    shouldRewindOnTime = !shouldRewindOnTime;
    showArmed(controls._rewind, shouldRewindOnTime);
}

void MOK_SCRUB_GRANULATOR::____rewind() {
    if (scrubArea.letGoForRewind()) {
        setTimePointer(0.0);
        scrubArea.animation.updateGraphicallyScrubPosition(0.0);
    }
    shouldRewindOnTime = false;
    clearBackgroundLater(controls._rewind);
}

void MOK_SCRUB_GRANULATOR::ui_freeze(Control*) {
    const bool frozen = controls._freeze.tag != 1;
    showActive(controls._freeze, frozen);
    isFreezed = frozen ? 0.0 : 1.0;
    waveForm_.freeze(frozen);
    ui_setSpeed(&controls._scanning);
    if (settings_) settings_->AUv3_Parameter_freezeToggle_from_DSP();
}

} // namespace zephyra
