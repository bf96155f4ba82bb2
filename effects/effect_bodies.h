// EffectBodies: the inner loops of the echo and the ring modulator, built per instruction-set
// level.
#pragma once

#include "platform/cpu_level.h"
#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra {

/// Doubles in one line of the echo: the power of two above its longest delay.
inline constexpr std::int64_t kEchoLineSize = 262144;

/// What one block of the echo reads and leaves changed. Index 0 is left, 1 right.
struct EchoBlock {
    double* line[2];            ///< kEchoLineSize values
    std::int64_t writeIndex[2]; ///< 0 to kEchoLineSize - 1
    /// Where times (samples; left, right) and feedbacks (left, right) stand and where they go.
    double smoothed[4];
    double target[4];
    const float* in[2];
    float* out[2];
    std::int32_t frames;
    /// Frames that the lines hold, up to kEchoLineSize; what lies further back reads as 0.
    std::int64_t written = kEchoLineSize;
};

/// What one block of the ring modulator reads and leaves changed.
struct RingBlock {
    const double* table; ///< RM::kTableSize values and the first one again
    double phase;        ///< 0 to 1, both included
    double increment;    ///< per sample
    double smoothed;     ///< dry/wet amount
    double target;
    const float* in[2];
    float* out[2];
    std::int32_t frames;
};

/// The two loops of one level. Every level gives the same bits as the plain per-sample loop.
/// RENDER.
struct EffectBodies {
    void (*echo)(EchoBlock&) ZEPHYRA_NONBLOCKING;
    void (*ring)(RingBlock&) ZEPHYRA_NONBLOCKING;
};

/// The loops for a level that this processor offers. Any thread.
EffectBodies effectBodiesFor(CpuLevel level) noexcept;

} // namespace zephyra
