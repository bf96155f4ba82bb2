// advance and sampleAt: one sample of a grain, to the letter; every faster path must give
// the same bits.
#pragma once

#include "engine/grain_voice.h"

#include <cstring>

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
        grain.origin = 0;
    }
    grain.readPhase = phase;
    return ready ? GrainStep::sounds : GrainStep::notReady;
}

/// The sum of a low-pass's products with the frames around a position, the first of which is given,
/// at a fraction of a frame in 0..1. One order of additions for every level: eight sums side by
/// side, folded at the end.
static inline float throughTaps(const float* first, float fraction,
                                const GrainTaps& taps) ZEPHYRA_NONBLOCKING {
    using Eight = float __attribute__((vector_size(TapGroup::kTaps * sizeof(float))));
    const float phase = fraction * static_cast<float>(taps.phases);
    const auto row = static_cast<std::int32_t>(phase);
    const float between = phase - static_cast<float>(row);
    const TapGroup* group = taps.rows.data() + row * taps.groups;
    Eight sum = {};
    for (int n = 0; n < taps.groups; ++n) {
        Eight frames, tap, slope;
        std::memcpy(&frames, first + n * TapGroup::kTaps, sizeof frames);
        std::memcpy(&tap, group[n].taps, sizeof tap);
        std::memcpy(&slope, group[n].slopes, sizeof slope);
        sum += frames * (tap + slope * between);
    }
    return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7]));
}

/// The source through the grain's taps. Behind its last frame the first follows, and the other way
/// round. Kept out of line, so that it takes no registers from the linear way.
[[gnu::noinline]] static float tappedAt(const mokGrain& grain,
                                        const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    constexpr double kFarthest = 0x1p62;
    double p = grain.readPhase * static_cast<double>(tables.sourceSize) -
               static_cast<double>(grain.origin);
    p = p > kFarthest ? kFarthest : p < -kFarthest ? -kFarthest : p;
    auto i = static_cast<std::int64_t>(p);
    if (static_cast<double>(i) > p) --i;
    const auto fraction = static_cast<float>(p - static_cast<double>(i));
    const std::uint64_t sum = grain.readOffset + static_cast<std::uint64_t>(grain.origin + i);
    const auto index = static_cast<std::int64_t>(modulo(sum, tables.sourceModulus));
    const auto size = static_cast<std::int64_t>(tables.sourceSize);
    const int count = 2 * grain.taps->reach();
    const std::int64_t first = index + 1 - grain.taps->reach();
    if (first >= 0 && first + count <= size)
        return throughTaps(tables.source + first, fraction, *grain.taps);
    float frames[GrainTapSet::kMostTaps];
    std::int64_t from = first % size;
    if (from < 0) from += size;
    for (int n = 0; n < count; ++n) {
        frames[n] = tables.source[from];
        if (++from == size) from = 0;
    }
    return throughTaps(frames, fraction, *grain.taps);
}

/// The source between two frames.
static inline float linearAt(const mokGrain& grain, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    float p = static_cast<float>(grain.readPhase * static_cast<double>(tables.sourceSize) -
                                 static_cast<double>(grain.origin));
    constexpr float kLargest = 3.402823466e+38f;
    p = p > kLargest ? kLargest : p < -kLargest ? -kLargest : p;
    const std::int64_t i = saturatedInteger(p);
    const float whole = static_cast<float>(i);
    const float f = p > 0x1p62f || p < -0x1p62f ? 0.0f : p - whole;
    const std::uint64_t sum =
        grain.readOffset + static_cast<std::uint64_t>(grain.origin) + static_cast<std::uint64_t>(i);
    const float* frame = tables.source + modulo(sum, tables.sourceModulus);
    return frame[0] + (frame[1] - frame[0]) * f;
}

/// The grain's output at its present phases. Indices stay inside the tables whatever the phase.
static inline float sampleAt(const mokGrain& grain, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    const float s = grain.taps ? tappedAt(grain, tables) : linearAt(grain, tables);

    const float q = grain.envelopePhase * static_cast<float>(tables.envelopeSize);
    const auto j = static_cast<std::int64_t>(q);
    const float* point = tables.envelope + j;
    const float e = point[0] + (point[1] - point[0]) * (q - static_cast<float>(j));
    return grain.amplitude * (s * e);
}

} // namespace grain_step
} // namespace zephyra
