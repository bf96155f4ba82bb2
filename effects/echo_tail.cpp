#include "effects/echo_tail.h"

#include "effects/stereo_echo.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kInaudible = 0.001; // -60 dB

double sideTail(const EchoSide& side, double sampleRate) ZEPHYRA_NONBLOCKING {
    const double delay = std::clamp(side.delay, 1.0, delay_stereo_forward::kMaxDelay) / sampleRate;
    // The first repeat has unity gain; the n-th has gain to the power of n - 1.
    const double repeats =
        side.gain > 0 ? 1 + std::floor(std::log(kInaudible) / std::log(side.gain)) : 1;
    return delay * repeats;
}

} // namespace

double echoTail(const EchoSide& left, const EchoSide& right,
                double sampleRate) ZEPHYRA_NONBLOCKING {
    return std::min(std::max(sideTail(left, sampleRate), sideTail(right, sampleRate)),
                    kLongestEchoTail);
}

} // namespace zephyra
