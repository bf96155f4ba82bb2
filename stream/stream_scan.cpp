// Which part of the sound MOK_SCRUB_GRANULATOR scans, where it stands, and how its grains are
// drawn.

#include "engine/envelope_menu.h"
#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

// A phase of 1 would wrap to the region's other end after one frame, though the scan stands still.
constexpr double kLastPhase = 1.0 - 0x1p-24;

} // namespace

bool MOK_SCRUB_GRANULATOR::moveScan(double position) {
    if (!std::isfinite(position)) return false;
    const double span = double{engine_.scanRegionSpan()};
    scanWasMoved();
    const double phase = span == 0.0 ? 0.0 : (position - double{engine_.scanRegionStart()}) / span;
    engine_.setScanPhase(std::clamp(phase, 0.0, kLastPhase));
    return true;
}

/// Somebody moves it; a host's bounce does not count.
void MOK_SCRUB_GRANULATOR::scanWasMoved() {
    if (instance_.runLoop.clock() == RunLoop::Clock::wall) forgetScanHome();
}

void MOK_SCRUB_GRANULATOR::setScrubNormalizedValue(float position) {
    if (!scrubArea.isHeld()) scrubTo(position);
}

void MOK_SCRUB_GRANULATOR::scrubTo(float position) {
    if (!moveScan(double{position})) return;
    ++scanChoices_;
    scrubArea.animation.updateGraphicallyScrubPosition(double{position});
}

void MOK_SCRUB_GRANULATOR::setTimePointer(double milliseconds) {
    scanWasMoved();
    if (milliseconds == 0.0)
        engine_.setScanPhase(0.0);
    else
        moveScan(milliseconds * 0.001 / waveForm_.getFileDuration());
}

bool MOK_SCRUB_GRANULATOR::setRegion(float start, float end) {
    const auto isFraction = [](float x) { return x >= 0.0f && x <= 1.0f; };
    if (!isFraction(start) || !isFraction(end)) return false;
    if (start != regionStart_ || end != regionEnd_) ++scanChoices_;
    scanWasMoved();
    engine_.setEnd(end);
    engine_.setStart(start); // last, because it alone keeps the sign of the span
    regionStart_ = start;
    regionEnd_ = end;
    if (scrubArea.isHeld()) moveScan(scrubArea.animation.position()); // stays under the hand
    return true;
}

bool MOK_SCRUB_GRANULATOR::pickEnvelope(std::size_t menuIndex) {
    auto next = makeEnvelope(menuIndex, instance_.random);
    if (!next) return false;
    next.swap(window_);
    engine_.setWindow(window_.get());
    retirement_.retire(std::move(next));
    envelope_ = menuIndex;
    return true;
}

void MOK_SCRUB_GRANULATOR::setSeed(std::uint32_t seed) {
    if (seed == 0) return;
    seed_ = seed;
    engine_.requestRandomSeed(seed);
}

void MOK_SCRUB_GRANULATOR::setQuality(GrainQuality quality) {
    quality_ = quality;
    engine_.setQuality(isLive() ? std::min(quality, GrainQuality::fine) : quality);
}

} // namespace zephyra
