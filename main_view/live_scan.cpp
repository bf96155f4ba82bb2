#include "main_view/live_scan.h"

#include "main_view/host_link.h"
#include "stream/stream_controller.h"

#include <algorithm>

namespace zephyra {

namespace {

/// How long ago the scan reads.
constexpr double kBehindInput = 0.2; // seconds

} // namespace

LiveScan::LiveScan(MOK_SCRUB_GRANULATOR& stream, HostLink& link) : stream_(stream), link_(link) {
    stream_.controls._scanning.addTarget(this, "scanSpeedWasSet:", control_event::valueChanged,
                                         [this](Control&) { speedWasSet_ = true; });
}

LiveScan::~LiveScan() {
    stream_.controls._scanning.removeTarget(this, {}, control_event::all);
}

bool LiveScan::wasChosen() const {
    return speedWasSet_ || choices_ != stream_.scanChoices();
}

void LiveScan::standBehindInput() {
    if (!stream_.isLive() || wasChosen()) return;
    // The newest frame stands five below the size, where the engine's reading wraps.
    constexpr auto kSize = static_cast<double>(WaveForm::kLiveFrames);
    constexpr double kNewest = kSize - 5.0;
    const double rate = stream_.instance().session.sampleRate;
    const double behind = std::min(kBehindInput * rate, kNewest);
    if (stream_.linear(ControlId::scanning) != 0.0f) stream_.setLinear(ControlId::scanning, 0.0f);
    stream_.setScrubNormalizedValue(static_cast<float>((kNewest - behind) / kSize));
    link_.refresh(ControlId::scrubbingWave);
    standsBehindInput_ = true;
    forgetChoices();
}

void LiveScan::standAgain() {
    if (standsBehindInput_) standBehindInput();
}

/// Once it is known what plays instead.
void LiveScan::leaveInput() {
    stream_.instance().runLoop.post([this, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) leave();
    });
}

void LiveScan::leave() {
    if (!standsBehindInput_ || stream_.waveForm().isLiveCurrent() ||
        choices_ != stream_.scanChoices())
        return;
    if (!speedWasSet_)
        stream_.setDisplayed(ControlId::scanning, controlRange(ControlId::scanning).defaultValue);
    stream_.setTimePointer(0.0);
    link_.refresh(ControlId::scrubbingWave);
    standsBehindInput_ = false;
    forgetChoices();
}

void LiveScan::forgetChoices() {
    speedWasSet_ = false;
    choices_ = stream_.scanChoices();
}

} // namespace zephyra
