// MixGain: the gain of a stream's mix, which hides a change of tables and lets a stop end in
// silence.
#pragma once

#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"

#include <algorithm>

namespace zephyra {

/// 1, but for two ramps that are counted in frames and so do not depend on blocks: the seam, down
/// to 0 and up again, and the level that a stop tells, which takes a tick to arrive. RENDER unless
/// said otherwise.
class MixGain {
public:
    static constexpr float kSeamSeconds = 0.01f;  // down, and as long up
    static constexpr float kTickSeconds = 0.017f; // from one told level to the next

    /// Hz, above 0. Ends a seam. OFF.
    void setSampleRate(float rate) noexcept {
        seamFrames_ = std::max(1, static_cast<int>(rate * kSeamSeconds));
        tickFrames_ = std::max(1, static_cast<int>(rate * kTickSeconds));
        standAtFull();
    }

    /// 0..1, taken at the start of the next block. MAIN.
    void setLevel(float level) noexcept { told_ = level; }

    /// At 1, without a seam, until the next block.
    void standAtFull() ZEPHYRA_NONBLOCKING {
        seam_ = seamFrames_;
        falls_ = false;
        level_ = 1.0f;
        left_ = 0;
    }

    /// Goes down from where it stands.
    void beginSeam() ZEPHYRA_NONBLOCKING { falls_ = true; }
    bool falls() const ZEPHYRA_NONBLOCKING { return falls_; }
    /// Whether a stop has ended in silence.
    bool isSilent() const ZEPHYRA_NONBLOCKING { return level_ == 0.0f && left_ == 0; }

    /// Takes the level that was told, and answers how many of frames pass before the seam turns.
    int take(int frames) ZEPHYRA_NONBLOCKING {
        if (const float told = told_; told != level_) {
            from_ = level();
            level_ = told;
            left_ = tickFrames_;
        }
        return falls_ ? std::clamp(seam_, 1, frames) : frames;
    }

    /// Scales the next frames of both channels, at most those of take(). True where the seam turns:
    /// what comes next is not heard yet.
    bool apply(int frames, float* left, float* right) ZEPHYRA_NONBLOCKING {
        if (seam_ == seamFrames_ && !falls_ && left_ == 0 && level_ == 1.0f) return false;
        for (int n = 0; n < frames; ++n) {
            seam_ = falls_ ? std::max(seam_ - 1, 0) : std::min(seam_ + 1, seamFrames_);
            left_ = std::max(left_ - 1, 0);
            const float gain =
                level() * (static_cast<float>(seam_) / static_cast<float>(seamFrames_));
            left[n] *= gain;
            right[n] *= gain;
        }
        const bool turns = falls_ && seam_ == 0;
        if (turns) falls_ = false;
        return turns;
    }

private:
    float level() const ZEPHYRA_NONBLOCKING {
        return level_ +
               (from_ - level_) * (static_cast<float>(left_) / static_cast<float>(tickFrames_));
    }

    Relaxed<float> told_ = 1.0f;
    int seamFrames_ = 1, tickFrames_ = 1;
    int seam_ = 1; // 0 at its deepest, seamFrames_ where nothing is to hide
    bool falls_ = false;
    float from_ = 1.0f, level_ = 1.0f;
    int left_ = 0; // frames until level_ is reached
};

} // namespace zephyra
