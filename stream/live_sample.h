// LiveSample: the circular buffer that live input fills, and copies of what it holds.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/threads/relaxed.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace zephyra {

/// A circular buffer of input. Its offset is the write index, its ready flag enables writing; its
/// guard points are never written, because no live read reaches them. RENDER stores its floats,
/// others read them as relaxed atomics.
struct LiveSample : mokSample {
    /// Frames from the buffer's start up to the last one ever written: everything behind is silence
    /// that nobody played. Written by RENDER, read by any thread.
    Relaxed<std::uint64_t> heard = 0;
    /// How many of the frames before the write index were written as 0, in a row and without a jump
    /// of the index; from size on the whole buffer is silent. RENDER's own.
    std::uint64_t silent = 0;
    bool isSilent() const ZEPHYRA_NONBLOCKING { return silent >= size; }
};

/// The frames of live from index first on, wrapping at its end. The write index tells where old and
/// new meet; it may move meanwhile. All but RENDER.
void copyFrames(const LiveSample& live, std::uint64_t first, std::span<float> frames) noexcept;

/// What live heard, oldest frame first, without the silence of a buffer that is not full yet.
/// Throws std::bad_alloc. All but RENDER.
std::vector<float> framesHeard(const LiveSample& live);

/// live as it is now, each frame at its own index, so that a grain that sounds reads on what it
/// would have read. Of a block that RENDER is writing meanwhile some frames may stand in the place
/// of the oldest ones. Null when memory is short. All but RENDER.
std::shared_ptr<const LiveSample> heldCopy(const LiveSample& live) noexcept;

} // namespace zephyra
