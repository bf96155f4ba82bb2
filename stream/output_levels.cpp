#include "stream/output_levels.h"

#include "platform/threads/flush_denormals.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

void OutputLevels::sumUp(std::size_t channel, const float* samples,
                         std::uint32_t count) ZEPHYRA_NONBLOCKING {
    if (!samples) return;
    Sum sum = sums_[channel];
    for (std::uint32_t i = 0; i < count; ++i) {
        const float magnitude = std::fabs(samples[i]);
        const float level = magnitude < kMostLevel ? magnitude : kMostLevel;
        sum.peak = std::max(sum.peak, level);
        sum.squares += level * level;
    }
    sums_[channel] = sum;
}

void OutputLevels::goOn(std::uint32_t count) ZEPHYRA_NONBLOCKING {
    summed_ += count;
    if (summed_ < kPiece) return;
    const std::uint64_t number = pieces_.load(std::memory_order_relaxed);
    Piece& piece = ring_[number % kPieces];
    for (std::size_t c = 0; c < sums_.size(); ++c) {
        piece.peak[c] = sums_[c].peak;
        piece.squares[c] = sums_[c].squares;
    }
    pieces_.store(number + 1, std::memory_order_release);
    sums_ = {};
    summed_ = 0;
}

void OutputLevels::add(const AudioBufferList& list, std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    if (!watchers.isWatched()) { // whoever looks next sees nothing of what was before
        sums_ = {};
        summed_ = 0;
        return;
    }
    const FlushDenormals flush;
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t count = std::min(frames - done, kPiece - summed_);
        for (std::uint32_t c = 0; c < sums_.size(); ++c) {
            const float* const from = c < list.mNumberBuffers ? list.floats(c) : nullptr;
            sumUp(c, from ? from + done : nullptr, count);
        }
        goOn(count);
        done += count;
    }
}

LevelReading OutputLevels::read(Place& place) const noexcept {
    const std::uint64_t end = pieces_.load(std::memory_order_acquire);
    const std::uint64_t first = std::max(place, end > kPieces ? end - kPieces : 0);
    place = end;
    LevelReading reading{.channels = {}, .frames = (end - first) * kPiece};
    if (first >= end) return reading;
    for (std::size_t c = 0; c < reading.channels.size(); ++c) {
        float peak = 0.0f, squares = 0.0f;
        for (std::uint64_t i = first; i < end; ++i) {
            peak = std::max(peak, ring_[i % kPieces].peak[c].load());
            squares += ring_[i % kPieces].squares[c];
        }
        reading.channels[c] = {.peak = peak,
                               .meanSquare = squares / static_cast<float>(reading.frames),
                               .clipped = peak > 1.0f};
    }
    return reading;
}

} // namespace zephyra
