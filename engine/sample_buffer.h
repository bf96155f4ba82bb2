// mokBuffer and mokSample: the float arrays that grains read, with guard points behind the end.
#pragma once

#include "platform/threads/relaxed.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zephyra {

/// A mono float array whose first three frames stand again behind its end, so that interpolation
/// may read one point past the last frame without a bounds test: data[size + k] == data[k],
/// restored by writeGuardPoint() after any write to the first three frames. Not copied: what RENDER
/// can see is replaced, never changed under it.
class mokBuffer {
public:
    static constexpr std::int32_t kGuardPoints = 3;
    /// Allocated floats behind the guard: wide loads may read them, and no sound depends on them.
    static constexpr std::uint64_t kReadAhead = 16;

    /// size frames of silence; 0 becomes 10. Throws std::bad_alloc when memory is short. MAIN.
    explicit mokBuffer(const unsigned long& size);
    mokBuffer(const mokBuffer&) = delete;
    mokBuffer& operator=(const mokBuffer&) = delete;

    /// Copies data[0..2] to data[size..size + 2]; a buffer of fewer than three frames repeats them
    /// modulo its size. OFF, or before RENDER sees the buffer.
    void writeGuardPoint() noexcept;

    /// The first frame. Any thread; RENDER may only read through it.
    float* getPtr() const noexcept { return data.get(); }

    /// size - guardCount, the last three frames not counted (0 for a buffer of fewer than three).
    /// Any thread.
    std::uint64_t getSize() const ZEPHYRA_NONBLOCKING {
        const auto guard = static_cast<std::uint64_t>(guardCount);
        return size > guard ? size - guard : 0;
    }

    /// Silence everywhere, guard included. OFF.
    void clear() noexcept;

    /// The largest magnitude over size frames, 0 for none. MAIN, while nobody writes.
    float getPeak() const noexcept;

    /// Multiplies every frame by gain and rewrites the guard. A gain that is not finite is ignored.
    /// OFF, or before RENDER sees the buffer.
    void rescale(const float& gain) noexcept;

    std::uint64_t size;            ///< frames, excluding the guard points
    std::unique_ptr<float[]> data; ///< size + guardCount floats (and kReadAhead)
    std::int32_t guardCount;       ///< 3
    float guardRatio;              ///< 1 + guardCount / size; read by nothing
    Relaxed<std::uint64_t> offset; ///< frames added to every read index: a live buffer's seam
    Relaxed<bool> ready;           ///< a grain that finds it clear stops rendering

protected:
    /// size + guardCount + kReadAhead zeroed floats. Throws std::bad_alloc.
    static std::unique_ptr<float[]> allocateFrames(std::uint64_t size);
};

/// A mokBuffer with the sample rate of its material: a loaded sound, or the live input.
class mokSample : public mokBuffer {
public:
    static constexpr std::uint64_t kSmallestFrames = 16;

    /// 10 frames of silence without a rate. MAIN.
    mokSample();

    /// allocate() at once; memory that is short leaves 10 frames. MAIN.
    mokSample(std::uint64_t frames, float rate);
    virtual ~mokSample() = default;

    /// Replaces the contents by max(frames, 16) frames of silence at rate (Hz; one that is not
    /// finite keeps the rate before). offset becomes 0 and ready is set. The new memory is taken
    /// before the old is freed: when memory is short a line goes to the error stream, the old
    /// contents stay ready, and the answer is false. OFF, or before RENDER sees the sample.
    bool allocate(std::uint64_t frames, float rate) noexcept;

    /// Sound length in seconds as the engine counts it: size / sampleRate in single precision.
    float duration() const ZEPHYRA_NONBLOCKING { return static_cast<float>(size) / sampleRate; }

    float sampleRate = 0.0f;        ///< Hz of the material
    std::int32_t bitsPerSample = 0; ///< 16 once allocated; read by nothing
    /// The sample whose frames stand here at their own indices, so that grains read on without a
    /// step; null for a sound of its own. Only compared, for it may be gone.
    const mokSample* copyOf = nullptr;
};

/// lo + |x| · (hi - lo). Any thread.
constexpr float scale1(float x, float lo, float hi) noexcept {
    return lo + (x < 0 ? -x : x) * (hi - lo);
}

} // namespace zephyra
