// The engine's inner body, compiled once per instruction-set level (grain_mix_<level>.cpp), in an
// anonymous namespace so that no level's code can stand in for another's at link time.
//
// A grain's phases are serial sums of a constant, rounded at every step. While such a sum stays
// inside one binade [2^e, 2^(e+1)) all its values lie on one grid, so the constant is rounded the
// same way every time (unless it lies exactly between two grid points) and the sum advances by an
// exact step: n additions are one product. planStraight() finds how long both phases keep to that,
// and how long neither the read phase nor the read index wraps. In such a run samples no longer
// depend on one another, so Lanes renders them side by side, with the same bits as one by one.
//
// Expects a type Lanes with `static constexpr int width`, `static void mixStraight(const
// StraightMix&)` for what is read linearly from an origin of 0, and `mixRare` for everything.

#include "engine/grain_step.h"

#include <cmath>
#include <cstring>

namespace zephyra {
namespace {

/// A straight run: count samples, a multiple of Lanes::width. Sample k = 1..count has the phases
/// envelopePhase + k · envelopeStep and readPhase + k · readStep, all exact.
struct StraightMix {
    float envelopePhase, envelopeStep;
    double readPhase, readStep;
    const float* source; ///< already moved by the run's base: indexed by the truncated position
    double sourceSize, origin;
    const GrainTaps* taps; ///< null: the source is read linearly
    const float* envelope;
    float envelopeSize;
    float amplitude, gainL, gainR;
    float* left;
    float* right;
    int count;
};

constexpr std::int64_t kEndless = std::int64_t{1} << 40;
constexpr double kIndexMargin =
    6.0; // frames kept from an index seam, for the rounding of positions

/// How far apart single-precision positions lie at the end of a table of size entries, and a little
/// more: two positions differ from the exact ones by no more than this together.
inline double positionRounding(double size) ZEPHYRA_NONBLOCKING {
    return size * 0x1p-23;
}

/// Samples that a phase can take before a limit, a little short so that rounding cannot cross it.
inline std::int64_t stepsWithin(double distance, double step) ZEPHYRA_NONBLOCKING {
    if (step <= 0.0) return kEndless;
    const double steps = distance / step - 2.0;
    return steps <= 0.0                ? 0
           : steps >= double{kEndless} ? kEndless
                                       : static_cast<std::int64_t>(steps);
}

/// Steps of the envelope phase that stay in its binade, and the exact step. 0 where the increment
/// lies between two grid points, because then the first step rounds unlike the others.
inline std::int64_t planEnvelope(const mokGrain& grain, float& step) ZEPHYRA_NONBLOCKING {
    const float phase = grain.envelopePhase;
    const float next = phase + grain.envelopeIncrement;
    std::uint32_t bits;
    std::memcpy(&bits, &phase, sizeof bits);
    const std::uint32_t topBits = (bits & 0x7f800000u) + 0x00800000u;
    float top;
    std::memcpy(&top, &topBits, sizeof top);
    if (phase <= 0.0f || next >= top || top > 1.0f) return 0;
    step = next - phase;
    const float rounding = grain.envelopeIncrement - step;
    const float halfGrid = top * 0x1p-25f;
    if (rounding == halfGrid || rounding == -halfGrid) return 0;
    if (step == 0.0f) return kEndless;
    // Both are whole numbers of the grid below 2^24, so the quotient's integer part is exact.
    const double steps = std::ceil((double{top} - double{phase}) / double{step});
    return static_cast<std::int64_t>(steps) - 1;
}

/// Steps of the read phase that neither wrap nor cross the seam of the index, and the index base.
inline std::int64_t planRead(const mokGrain& grain, const GrainTables& tables,
                             std::int64_t& base) ZEPHYRA_NONBLOCKING {
    const double phase = grain.readPhase;
    const double step = double{grain.phaseIncrement};
    const bool onGrid = (phase + 1.0) - 1.0 == phase && (step + 1.0) - 1.0 == step;
    if (!onGrid || !(phase >= 0.0 && phase < 1.0) || !(step < 1.0 && step > -1.0)) return 0;

    const auto size = static_cast<double>(tables.sourceSize);
    const auto modulus = static_cast<std::int64_t>(tables.sourceModulus);
    const auto offset =
        static_cast<std::int64_t>(grain_step::modulo(grain.readOffset, tables.sourceModulus));
    const double counted = phase * size - static_cast<double>(grain.origin);
    const std::int64_t position =
        grain.origin + static_cast<std::int64_t>(static_cast<float>(counted));
    const bool pastSeam = offset + position >= modulus;
    const std::int64_t turn = pastSeam ? offset - modulus : offset;
    base = turn + grain.origin;
    const double index = static_cast<double>(turn + position);

    const double magnitude = step < 0.0 ? -step : step;
    const double toWrap = step < 0.0 ? phase : 1.0 - phase;
    double toSeam =
        step < 0.0 ? (pastSeam ? index : kEndless) : static_cast<double>(modulus) - index;
    const double margin = kIndexMargin + positionRounding(size);
    if (grain.taps) { // which reach around the index: no seam may lie within
        const double reach = grain.taps->reach();
        if (index < reach + margin || counted < 0.0) return 0;
        toSeam = (step < 0.0 ? index : toSeam) - reach;
    }
    toSeam -= margin;
    const std::int64_t wrap = stepsWithin(toWrap, magnitude);
    const std::int64_t seam = toSeam <= 0.0 ? 0 : stepsWithin(toSeam, magnitude * size);
    return wrap < seam ? wrap : seam;
}

/// Fills grain.straight; answers how many samples to render one by one before asking again.
inline int planStraight(mokGrain& grain, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    constexpr int kAskAgain = 8;
    auto& run = grain.straight;
    run.left = 0;
    const std::int64_t envelope = planEnvelope(grain, run.envelopeStep);
    if (envelope < kAskAgain) return envelope > 0 ? static_cast<int>(envelope) : 1;
    const std::int64_t read = planRead(grain, tables, run.readBase);
    if (read < kAskAgain) return kAskAgain;
    run.left = envelope < read ? envelope : read;
    return kAskAgain;
}

/// Whether a grain is what most are: read linearly, its positions counted from 0.
inline bool isPlain(const mokGrain& grain) ZEPHYRA_NONBLOCKING {
    return !grain.taps && grain.origin == 0;
}

/// Only in a source that has become smaller under the grain.
inline bool isBeforeOrigin(const mokGrain& grain, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    return grain.readPhase * static_cast<double>(tables.sourceSize) <
           static_cast<double>(grain.origin);
}

/// Which grains and tables a sample is for; more of them, more slowly.
enum class Within {
    plain,   ///< a plain grain, a read phase in 0..1, and tables that 32-bit positions can index
    indexed, ///< the same with any origin that the position is not before
    any
};

/// grain_step::sampleAt for less than any grain and table.
template <Within kWithin>
inline float sampleWithin(const mokGrain& grain, const GrainTables& tables, double sourceSize,
                          std::int32_t offset) ZEPHYRA_NONBLOCKING {
    constexpr bool kFromZero = kWithin == Within::plain;
    const double position = grain.readPhase * sourceSize;
    const auto p =
        static_cast<float>(kFromZero ? position : position - static_cast<double>(grain.origin));
    const auto i = static_cast<std::int32_t>(p);
    const auto modulus = static_cast<std::int32_t>(tables.sourceModulus);
    std::int32_t index = offset + i + (kFromZero ? 0 : static_cast<std::int32_t>(grain.origin));
    while (index >= modulus) index -= modulus; // twice at most: both are below modulus + 5
    const float* frame = tables.source + index;
    const float s = frame[0] + (frame[1] - frame[0]) * (p - static_cast<float>(i));
    const float q = grain.envelopePhase * static_cast<float>(tables.envelopeSize);
    const auto j = static_cast<std::int32_t>(q);
    const float* point = tables.envelope + j;
    const float e = point[0] + (point[1] - point[0]) * (q - static_cast<float>(j));
    return grain.amplitude * (s * e);
}

/// One sample after the other; answers how many sounded.
template <Within kWithin>
int mixSerial(mokGrain& grain, const GrainTables& tables, const GrainMix& mix, int from,
              int count) ZEPHYRA_NONBLOCKING {
    const auto sourceSize = static_cast<double>(tables.sourceSize);
    const auto offset =
        static_cast<std::int32_t>(grain_step::modulo(grain.readOffset, tables.sourceModulus));
    for (int n = from; n < from + count; ++n) {
        const GrainStep step = grain_step::advance(grain, tables.ready);
        if (step != GrainStep::sounds) {
            grain.active = step != GrainStep::ended;
            return n - from;
        }
        float sample;
        if constexpr (kWithin == Within::any)
            sample = grain_step::sampleAt(grain, tables);
        else
            sample = sampleWithin<kWithin>(grain, tables, sourceSize, offset);
        mix.left[n] = fusedMultiplyAdd(sample, mix.gainL, mix.left[n]);
        mix.right[n] = fusedMultiplyAdd(sample, mix.gainR, mix.right[n]);
    }
    return count;
}

[[gnu::always_inline]] inline StraightMix straightMix(const mokGrain& grain,
                                                      const GrainTables& tables,
                                                      const GrainMix& mix, int from,
                                                      int count) ZEPHYRA_NONBLOCKING {
    return {.envelopePhase = grain.envelopePhase,
            .envelopeStep = grain.straight.envelopeStep,
            .readPhase = grain.readPhase,
            .readStep = double{grain.phaseIncrement},
            .source = tables.source + grain.straight.readBase,
            .sourceSize = static_cast<double>(tables.sourceSize),
            .origin = static_cast<double>(grain.origin),
            .taps = grain.taps,
            .envelope = tables.envelope,
            .envelopeSize = static_cast<float>(tables.envelopeSize),
            .amplitude = grain.amplitude,
            .gainL = mix.gainL,
            .gainR = mix.gainR,
            .left = mix.left + from,
            .right = mix.right + from,
            .count = count};
}

/// Out of line, so that it takes no registers from what most grains are.
[[gnu::noinline]] void mixRare(const mokGrain& grain, const GrainTables& tables,
                               const GrainMix& mix, int from, int count) ZEPHYRA_NONBLOCKING {
    Lanes::mixRare(straightMix(grain, tables, mix, from, count));
}

[[gnu::always_inline]] inline void mixStraight(mokGrain& grain, const GrainTables& tables,
                                               const GrainMix& mix, int from,
                                               int count) ZEPHYRA_NONBLOCKING {
    if (isPlain(grain)) [[likely]]
        Lanes::mixStraight(straightMix(grain, tables, mix, from, count));
    else
        mixRare(grain, tables, mix, from, count);
    const double readStep = double{grain.phaseIncrement};
    grain.envelopePhase += static_cast<float>(count) * grain.straight.envelopeStep;
    grain.readPhase += count * readStep;
}

int mixGrain(mokGrain& grain, const GrainTables& tables, const GrainMix& mix) ZEPHYRA_NONBLOCKING {
    const float readStep = grain.phaseIncrement;
    const bool within = tables.ready && tables.isIndexable && readStep < 1.0f && readStep > -1.0f &&
                        grain.readPhase >= 0.0 && grain.readPhase <= 1.0;
    auto& run = grain.straight;
    if (!tables.ready) run.left = 0; // its phases go on by one sample, past what was planned
    int done = 0;
    while (done < mix.count) {
        const int room = mix.count - done;
        const auto straight = static_cast<int>(run.left < room ? run.left : room);
        if (straight >= Lanes::width) {
            const int count = straight - straight % Lanes::width;
            mixStraight(grain, tables, mix, done, count);
            run.left -= count;
            done += count;
            continue;
        }
        int serial = room;
        if (straight > 0)
            serial = straight;
        else if (within) {
            const int askAgain = planStraight(grain, tables);
            if (run.left >= Lanes::width && room >= Lanes::width) continue;
            serial = askAgain < room ? askAgain : room;
        }
        const int sounded = within && isPlain(grain)
                                ? mixSerial<Within::plain>(grain, tables, mix, done, serial)
                            : within && !grain.taps && !isBeforeOrigin(grain, tables)
                                ? mixSerial<Within::indexed>(grain, tables, mix, done, serial)
                                : mixSerial<Within::any>(grain, tables, mix, done, serial);
        done += sounded;
        run.left = run.left > sounded ? run.left - sounded : 0;
        if (sounded < serial) break;
    }
    return done;
}

} // namespace
} // namespace zephyra
