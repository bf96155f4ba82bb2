// advance and sampleAt: one sample of a grain, to the letter; every faster path must give
// the same bits.
#pragma once

#include "engine/grain_voice.h"

namespace zephyra {

/// How a sample's advance ended.
enum class GrainStep {
    sounds,
    ended,    ///< the envelope is done
    notReady, ///< the source may not be read
};

/// Internal linkage on purpose: the mix is compiled for several instruction-set levels, and the
/// linker must not let one level's copy of these stand in for another's.
namespace grain_step {

/// The 64-bit integer part of a finite value; beyond the integers' range the nearest end of it.
static inline std::int64_t saturatedInteger(float value) ZEPHYRA_NONBLOCKING {
    if (value >= 0x1p63f) return INT64_MAX;
    if (value <= -0x1p63f) return INT64_MIN;
    return static_cast<std::int64_t>(value);
}

/// sum % modulus, without the division where one subtraction does.
static inline std::uint64_t modulo(std::uint64_t sum, std::uint64_t modulus) ZEPHYRA_NONBLOCKING {
    if (sum < modulus) return sum;
    sum -= modulus;
    return sum < modulus ? sum : sum % modulus;
}

/// Both phases one sample on. The read phase wraps once at most, which is cheaper than a modulo:
/// only increments of 1 and more, which no control can ask for, carry it away.
static inline GrainStep advance(mokGrain& grain, bool ready) ZEPHYRA_NONBLOCKING {
    grain.envelopePhase += grain.envelopeIncrement;
    if (grain.envelopePhase >= 1.0f) return GrainStep::ended;
    double phase = grain.readPhase + double{grain.phaseIncrement};
    if (phase >= 1.0 || phase < 0.0) {
        phase += phase < 0.0 ? 1.0 : -1.0;
        grain.origin = 0.0;
    }
    grain.readPhase = phase;
    return ready ? GrainStep::sounds : GrainStep::notReady;
}

/// The grain's output at its present phases. Indices stay inside the tables whatever the phase.
static inline float sampleAt(const mokGrain& grain, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    float p =
        static_cast<float>(grain.readPhase * static_cast<double>(tables.sourceSize) - grain.origin);
    constexpr float kLargest = 3.402823466e+38f;
    p = p > kLargest ? kLargest : p < -kLargest ? -kLargest : p;
    const std::int64_t i = saturatedInteger(p);
    const float whole = static_cast<float>(i);
    const float f = p > 0x1p62f || p < -0x1p62f ? 0.0f : p - whole;
    const std::uint64_t sum =
        grain.readOffset + static_cast<std::uint64_t>(grain.origin) + static_cast<std::uint64_t>(i);
    const float* frame = tables.source + modulo(sum, tables.sourceModulus);
    const float s = frame[0] + (frame[1] - frame[0]) * f;

    const float q = grain.envelopePhase * static_cast<float>(tables.envelopeSize);
    const auto j = static_cast<std::int64_t>(q);
    const float* point = tables.envelope + j;
    const float e = point[0] + (point[1] - point[0]) * (q - static_cast<float>(j));
    return grain.amplitude * (s * e);
}

} // namespace grain_step
} // namespace zephyra
