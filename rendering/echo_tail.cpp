#include "rendering/echo_tail.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kEchoRate = 44100.0;      // Hz; the rate that delays are converted to samples at
constexpr double kLongestDelay = 200000.0; // samples; the echo's own limit
constexpr double kInaudible = 0.001;       // -60 dB

double sideTail(const EchoSide& side, double sampleRate) {
    const double delay = std::clamp(side.delay * kEchoRate, 1.0, kLongestDelay) / sampleRate;
    // The first repeat has unity gain; the n-th has gain to the power of n - 1.
    const double repeats =
        side.gain > 0 ? 1 + std::floor(std::log(kInaudible) / std::log(side.gain)) : 1;
    return delay * repeats;
}

} // namespace

double echoTail(const EchoSide& left, const EchoSide& right, double sampleRate) {
    return std::min(std::max(sideTail(left, sampleRate), sideTail(right, sampleRate)),
                    kLongestEchoTail);
}

} // namespace zephyra
