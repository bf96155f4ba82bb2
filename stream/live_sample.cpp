#include "stream/live_sample.h"

#include <algorithm>
#include <atomic>
#include <new>

namespace zephyra {

void copyFrames(const LiveSample& live, std::uint64_t first, std::span<float> frames) noexcept {
    float* const stored = live.getPtr();
    std::uint64_t from = first % live.size;
    for (float& frame : frames) {
        frame = std::atomic_ref<float>(stored[from]).load(std::memory_order_relaxed);
        if (++from == live.size) from = 0;
    }
}

std::vector<float> framesHeard(const LiveSample& live) {
    const std::uint64_t heard = live.heard;
    const std::uint64_t newest = std::min(live.offset.load(), heard); // ends before this one
    std::vector<float> frames(static_cast<std::size_t>(heard));
    const std::span<float> all(frames);
    copyFrames(live, newest, all.first(heard - newest));
    copyFrames(live, 0, all.last(newest));
    return frames;
}

std::shared_ptr<const LiveSample> heldCopy(const LiveSample& live) noexcept {
    std::shared_ptr<LiveSample> held;
    try {
        held = std::make_shared<LiveSample>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    if (!held->allocate(live.size, live.sampleRate)) return nullptr;
    const std::span<float> frames(held->getPtr(), static_cast<std::size_t>(live.size));
    const auto copy = [&](std::uint64_t from, std::uint64_t to) {
        copyFrames(live, from, frames.subspan(from, to - from));
    };
    std::uint64_t copied = live.offset;
    copy(0, live.size);
    // What came in meanwhile, a block or two; a little of that is left to come in while it is
    // copied, which takes far less time than a block lasts.
    for (std::uint64_t newest = live.offset; newest != copied; newest = live.offset) {
        if (newest < copied) {
            copy(copied, live.size);
            copied = 0;
        }
        copy(copied, newest);
        copied = newest;
    }
    held->heard = live.heard.load();
    held->offset = copied;
    held->copyOf = &live;
    return held;
}

} // namespace zephyra
