// mokPhasor: the 0..1 ramp that sweeps the scan position.
#pragma once

#include "platform/threads/relaxed.h"

namespace zephyra {

/// A ramp generator. Its frequency is set on MAIN while RENDER runs it; a jump of the phase is
/// handed over as a pending word and taken at the start of the next block.
class mokPhasor {
public:
    /// Phase 0, standing still. sampleRate in Hz. MAIN.
    explicit mokPhasor(float sampleRate) noexcept;
    virtual ~mokPhasor() = default;

    /// f in Hz; negative runs the ramp downwards. One whose increment would not be finite is
    /// ignored (the answer is false). MAIN.
    bool setFrequency(const float& f) noexcept;

    /// The phase becomes min(|p|, 1) at the start of the next block; one that is not finite is
    /// ignored. MAIN.
    void setPhase(const double& p) noexcept;

    /// Hz. Applies the frequency again, so that the increment follows; a rate that is not above 0
    /// or not finite is ignored. OFF.
    void setSampleRate(float rate) noexcept;

    /// Fills out with count phases, each as it was before its step. RENDER.
    void Processing(float* out, int count) ZEPHYRA_NONBLOCKING;

    /// Back to phase 0, unless it stands. RENDER.
    void startAnew() ZEPHYRA_NONBLOCKING {
        if (increment != 0.0f) phase = 0.0;
    }
    /// The ramp goes on by count samples that nobody hears; where it then stands may differ in the
    /// last bits from what Processing would have left. RENDER.
    void pass(int count) ZEPHYRA_NONBLOCKING;

    /// Whether the last sample of the latest block wrapped. RENDER.
    bool hasWrapped() const ZEPHYRA_NONBLOCKING { return wrapped; }
    /// The latest output. RENDER.
    float latest() const ZEPHYRA_NONBLOCKING { return lastOutput; }
    /// What the next output will be if the frequency is 0 by then. RENDER.
    float next() const ZEPHYRA_NONBLOCKING { return static_cast<float>(phase); }
    /// A jump that no block has taken yet, NaN for none. Any thread.
    double waitingJump() const noexcept { return pendingPhase.load(std::memory_order_relaxed); }
    /// Hz. Any thread.
    float currentFrequency() const noexcept { return frequency; }

private:
    void takeJump() ZEPHYRA_NONBLOCKING;
    friend struct PhasorProbe; // tests read the fields

    bool wrapped = false;
    double phase = 0.0;              ///< 0..1, RENDER's own
    Relaxed<float> increment = 0.0f; ///< frequency / sampleRate
    Relaxed<float> frequency = 0.0f; ///< Hz
    float sampleRate;                ///< Hz
    float lastOutput = 0.0f;
    std::atomic<double> pendingPhase; ///< a jump not yet taken, NaN for none
    static_assert(std::atomic<double>::is_always_lock_free);
};

} // namespace zephyra
