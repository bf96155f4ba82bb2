// GrainTapSet: the windowed sincs through which grains of higher quality read their source.
#pragma once

#include "platform/threads/realtime.h"

#include <cstdint>
#include <vector>

namespace zephyra {

/// How a grain reads between the frames of its source. classic interpolates linearly. fine takes 8
/// frames: what lies below 14 kHz of a sound at 44100 Hz is as good as free of noise, and a grain
/// that is pitched up still folds what then lies beyond hearing back into it. best takes 32 frames,
/// and more the higher a grain is pitched, so that nothing folds.
enum class GrainQuality { classic, fine, best };

/// Eight neighbouring taps of one phase, and how much each grows up to the next phase.
struct alignas(64) TapGroup {
    static constexpr int kTaps = 8;
    float taps[kTaps];
    float slopes[kTaps];
};

/// One low-pass, as a table of its taps by the fraction of a frame at which a grain reads.
struct GrainTaps {
    int groups; ///< of eight taps; half of them lie at and before the position's whole frame
    int phases; ///< rows for fractions of 0 up to 1; one more row stands behind them
    std::vector<TapGroup> rows; ///< groups of the first phase, of the second, and so on

    int reach() const ZEPHYRA_NONBLOCKING { return groups * TapGroup::kTaps / 2; }
};

/// The low-passes of one quality, one a semitone of transposition where the quality has them.
class GrainTapSet {
public:
    static constexpr int kMostSemitones = 48; ///< what is pitched up further folds again
    static constexpr int kMostTaps = 512;     ///< of the widest low-pass

    /// The quality's set, made at first use (for best some 30 ms, 3.4 MB) and shared by the whole
    /// process; null for classic, which has none, and where memory is short. MAIN.
    static const GrainTapSet* of(GrainQuality quality) noexcept;

    /// The low-pass for a grain that advances by rate frames a sample, forwards or backwards.
    /// RENDER.
    const GrainTaps* forRate(float rate) const ZEPHYRA_NONBLOCKING;

private:
    explicit GrainTapSet(GrainQuality quality); // throws std::bad_alloc

    std::vector<GrainTaps> byRate_;
    std::vector<float> rates_; // the highest of each
};

} // namespace zephyra
