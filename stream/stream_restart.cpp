// How MOK_SCRUB_GRANULATOR goes back to where its state has it, so that a bounce repeats.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "stream/stream_controller.h"

#include <utility>

namespace zephyra {

void MOK_SCRUB_GRANULATOR::startAnew(HostBars bars) {
    engine_.endGrains();
    engine_.startAnew();
    delay_stereo_forward::reset(engine_.echoModule());
    RM::reset(engine_.ringModulatorModule());
    if (!waveForm_.startAnew())
        instance_.log.write("LIVE: what it heard before is still there: no memory for an empty "
                            "buffer; free some");
    scrubArea.endDriving();
    applyEffectControls();
    rewindScan();
    scrubRecorder.startAnew(bars);
    fadeInAnew();
}

/// A running scan begins at the region's start; one that stands comes back from where a bounce has
/// moved it.
void MOK_SCRUB_GRANULATOR::rewindScan() {
    if (scrubArea.isHeld()) return;
    if (!scanHome_) scanHome_ = scanStands() ? engine_.nextScanPhase() : 0.0;
    engine_.setScanPhase(*scanHome_);
}

/// As the press on Play would begin it.
void MOK_SCRUB_GRANULATOR::fadeInAnew() {
    instance_.runLoop.cancel(std::exchange(pendingStop_, 0));
    fade_.startAnew();
    switchEngine(data_.isPlaying);
    handFadedLevel();
    if (!data_.isPlaying) return;
    engine_.setMixLevel(1.0f);
    fade_.beginIn(fadeTime(ControlId::fadeIn));
    fadeIn();
}

void MOK_SCRUB_GRANULATOR::stopAtOnce() {
    if (isPlaying() && data_.isPlaying) ui_playStop();
    instance_.runLoop.cancel(std::exchange(pendingStop_, 0));
    fade_.startAnew();
    handFadedLevel();
    switchEngine(false);
}

} // namespace zephyra
