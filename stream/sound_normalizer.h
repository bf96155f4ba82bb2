// SoundNormalizer: keeps the file's sound scaled to the peak that Normalize asks for.
#pragma once

#include "platform/instance.h"
#include "platform/threads/run_loop.h"
#include "platform/threads/worker.h"
#include "stream/live_buffer.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace zephyra {

/// Scales short sounds at once and long ones on WORKER, while the copy before plays on. Everything
/// is MAIN.
class SoundNormalizer {
public:
    static constexpr double kLeastInterval = 0.1; ///< seconds between two copies that a turn makes
    /// Frames that MAIN copies itself, in about half a millisecond.
    static constexpr std::uint64_t kMostFramesAtOnce = std::uint64_t{1} << 18;

    /// The peak that the sound is to play at; as it is without one.
    using Wanted = std::function<std::optional<float>()>;

    /// instance and waveForm must outlive this; wanted must not be empty.
    SoundNormalizer(Instance& instance, WaveForm& waveForm, Wanted wanted);
    ~SoundNormalizer();
    SoundNormalizer(const SoundNormalizer&) = delete;
    SoundNormalizer& operator=(const SoundNormalizer&) = delete;

    /// The wanted peak moves, maybe many times a second: its last value always gets its own copy.
    void turned();
    /// The wanted peak is another one from now on. Short memory is a log line, and what played goes
    /// on.
    void apply();
    /// Another sound has come, which already plays at this peak.
    void tookSound(std::optional<float> peak);
    /// Whether a copy is being made.
    bool isBusy() const { return worker_.busy(); }

private:
    void scale(float peak);
    void playScaled(std::shared_ptr<const mokSample> scaled, float peak);
    void memoryIsShort();

    Instance& instance_;
    WaveForm& waveForm_;
    const Wanted wanted_;
    double appliedAt_ = -kLeastInterval;
    RunLoop::Token waiting_ = 0;              // the next copy, which waits for its time
    std::shared_ptr<const mokSample> scaled_; // what WORKER makes a copy of
    Worker worker_;                           // last: its thread ends before what it uses
};

} // namespace zephyra
