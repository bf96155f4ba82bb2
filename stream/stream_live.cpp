// How live input goes on and off, and what becomes of what it heard.

#include "stream/normalized_sample.h"
#include "stream/stream_controller.h"

namespace zephyra {

void MOK_SCRUB_GRANULATOR::ui_enableLiveInput(Control*) {
    Button& button = controls._enableLIVE;
    const bool on = !isLive();
    if (on && !liveAllowed_) return;
    button.tag = on ? 1 : 0;
    // First, so that the sound just plays on when there is no room for a buffer.
    if (!waveForm_.enableLIVE(on)) {
        button.tag = 0;
        instance_.log.write(
            "LIVE stays off: no buffer for its input at the rate of the audio session; free "
            "some memory, or set a rate above 0 Hz");
        if (settings_) settings_->AUv3_Parameter_LiveToggle_from_DSP();
        return;
    }
    const bool isHeld = waveForm_.isHeld(); // plays on, whatever becomes of the input behind it
    const bool restarts = isPlaying() && !isHeld;
    if (on) {
        ++liveStarts_;
        waveForm_.makeLiveCurrent();
        controls._normalizeGain.setValue(1.0f);
        ui_normalizeBuffer(&controls._normalizeGain);
    } else {
        waveForm_.stopLiveTimer();
    }
    button.setNeedsDisplay();
    if (!isHeld) handToEngine(waveForm_.mSample());
    if (restarts) play();
    if (settings_) settings_->AUv3_Parameter_LiveToggle_from_DSP();
}

void MOK_SCRUB_GRANULATOR::setLiveAllowed(bool allowed) {
    if (!allowed && isLive()) ui_enableLiveInput();
    liveAllowed_ = allowed;
}

/// LIVE off without a word to the engine or the host, for when another sound takes its place.
void MOK_SCRUB_GRANULATOR::leaveLive() {
    if (!isLive()) return;
    controls._enableLIVE.tag = 0;
    controls._enableLIVE.setNeedsDisplay();
    waveForm_.enableLIVE(false);
    waveForm_.stopLiveTimer();
}

void MOK_SCRUB_GRANULATOR::ui_liveClear(Control*) {
    if (!waveForm_.clearBuffer())
        instance_.log.write(
            "what LIVE heard is still there: no memory for an empty buffer; free some");
}

bool MOK_SCRUB_GRANULATOR::setCaptured(std::span<const float> samples, double rate) {
    if (!isPlayable(samples)) return false;
    const bool writing = waveForm_.data().isLiveEnabled.load();
    waveForm_.data().isLiveEnabled = false; // or the next block would overwrite the oldest frames
    if (!waveForm_.setLiveContent(samples, rate)) {
        waveForm_.data().isLiveEnabled = writing;
        return false;
    }
    leaveLive();
    waveForm_.makeLiveCurrent();
    if (settings_) settings_->AUv3_Parameter_LiveToggle_from_DSP();
    return true;
}

} // namespace zephyra
