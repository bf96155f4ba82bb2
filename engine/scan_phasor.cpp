#include "engine/scan_phasor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zephyra {

namespace {

constexpr double kNoJump = std::numeric_limits<double>::quiet_NaN();

/// Steps of 1 and more outrun the single wrap of a sample and carry the phase away. It is held
/// where whole numbers end: past it a step of 1 no longer changes a double.
constexpr double kFarthestPhase = 0x1p53;

} // namespace

mokPhasor::mokPhasor(float rate) noexcept : sampleRate(rate), pendingPhase(kNoJump) {}

bool mokPhasor::setFrequency(const float& f) noexcept {
    const float next = f / sampleRate;
    if (!std::isfinite(next) || !std::isfinite(f)) return false;
    increment = next;
    frequency = f;
    return true;
}

void mokPhasor::setPhase(const double& p) noexcept {
    if (std::isfinite(p)) pendingPhase.store(std::min(std::abs(p), 1.0));
}

void mokPhasor::setSampleRate(float rate) noexcept {
    if (!std::isfinite(rate) || !(rate > 0.0f)) return;
    sampleRate = rate;
    setFrequency(frequency.load());
}

void mokPhasor::takeJump() ZEPHYRA_NONBLOCKING {
    const double jump = pendingPhase.exchange(kNoJump);
    if (jump == jump) phase = jump; // NaN, no jump, differs from itself
}

void mokPhasor::pass(int count) ZEPHYRA_NONBLOCKING {
    takeJump();
    if (count < 1) return;
    const double now = phase + double{increment} * count;
    phase = now - std::floor(now);
    lastOutput = static_cast<float>(phase) - increment;
}

void mokPhasor::Processing(float* out, int count) ZEPHYRA_NONBLOCKING {
    takeJump();
    const float step = increment;
    double now = phase;
    bool wraps = false;
    for (int n = 0; n < count; ++n) {
        now += double{step};
        out[n] = static_cast<float>(now) - step;
        wraps = now >= 1.0 || now < 0.0;
        if (now >= 1.0)
            now = std::min(now - 1.0, kFarthestPhase);
        else if (now < 0.0)
            now = std::max(now + 1.0, -kFarthestPhase);
    }
    if (count < 1) return;
    phase = now;
    lastOutput = out[count - 1];
    wrapped = wraps;
}

} // namespace zephyra
