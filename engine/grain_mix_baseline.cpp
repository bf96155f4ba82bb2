// The inner body for processors without wide registers: plain C++, for the compiler to arrange.

#include "engine/grain_mix.h"
#include "engine/grain_mix_levels.h"

#include <cstdint>
#include <cstring>

namespace zephyra {
namespace {

/// std::fma in single precision without its library call: the product is exact in double, and a sum
/// rounded to odd there rounds to single as the exact sum would (Boldo and Melquiond, "Emulation of
/// a FMA and correctly rounded sums", 2008).
inline float fusedMultiplyAdd(float a, float b, float c) ZEPHYRA_NONBLOCKING {
    const double product = double{a} * double{b};
    const double addend = double{c};
    double sum = product + addend;
    const double part = sum - product;
    const double lost = (product - (sum - part)) + (addend - part);
    if (lost > 0.0 || lost < 0.0) {
        std::int64_t bits;
        std::memcpy(&bits, &sum, sizeof bits);
        if ((bits & 1) == 0) bits += (lost > 0.0) == (sum > 0.0) ? 1 : -1;
        std::memcpy(&sum, &bits, sizeof sum);
    }
    return static_cast<float>(sum);
}

struct StraightMix;

struct Lanes {
    static constexpr int width = 4;
    static void mixStraight(const StraightMix& run) ZEPHYRA_NONBLOCKING;
    static void mixRare(const StraightMix& run) ZEPHYRA_NONBLOCKING;
};

} // namespace
} // namespace zephyra

#include "engine/grain_mix.inl"

namespace zephyra {
namespace {

inline float nearFrame(const StraightMix& run, double position) ZEPHYRA_NONBLOCKING {
    const auto p = static_cast<float>(position);
    const auto i = static_cast<std::int32_t>(p);
    const float* frame = run.source + i;
    return frame[0] + (frame[1] - frame[0]) * (p - static_cast<float>(i));
}

inline float farFrame(const StraightMix& run, double position) ZEPHYRA_NONBLOCKING {
    return nearFrame(run, position - run.origin);
}

inline float throughTaps(const StraightMix& run, double position) ZEPHYRA_NONBLOCKING {
    const double p = position - run.origin;
    const auto i = static_cast<std::int32_t>(p);
    return grain_step::throughTaps(run.source + i + 1 - run.taps->reach(),
                                   static_cast<float>(p - i), *run.taps);
}

template <auto& kRead>
void mixReads(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    for (int n = 0; n < run.count; ++n) {
        const float steps = static_cast<float>(n + 1);
        const float s = kRead(run, (run.readPhase + double{steps} * run.readStep) * run.sourceSize);
        const float q = (run.envelopePhase + steps * run.envelopeStep) * run.envelopeSize;
        const auto j = static_cast<std::int32_t>(q);
        const float* point = run.envelope + j;
        const float e = point[0] + (point[1] - point[0]) * (q - static_cast<float>(j));
        const float sample = run.amplitude * (s * e);
        run.left[n] = fusedMultiplyAdd(sample, run.gainL, run.left[n]);
        run.right[n] = fusedMultiplyAdd(sample, run.gainR, run.right[n]);
    }
}

void Lanes::mixStraight(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    mixReads<nearFrame>(run);
}

void Lanes::mixRare(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    run.taps ? mixReads<throughTaps>(run) : mixReads<farFrame>(run);
}

} // namespace

int mixGrainBaseline(mokGrain& grain, const GrainTables& tables,
                     const GrainMix& mix) ZEPHYRA_NONBLOCKING {
    return mixGrain(grain, tables, mix);
}

} // namespace zephyra
