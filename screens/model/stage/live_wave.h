// LiveWave: live input as columns that scroll with it.
#pragma once

#include "screens/model/stage/wave_pyramid.h"
#include "stream/live_buffer.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zephyra {

/// Reads what RENDER wrote since the last picture, and nothing twice. Columns stand on whole
/// numbers of frames, so that what scrolls keeps its shape. Message thread.
class LiveWave {
public:
    static constexpr std::size_t kBlock = 64;         ///< frames
    static constexpr std::size_t kMostAtOnce = 32768; ///< frames that a call reads

    /// elapsed: seconds since the last call; where more than a buffer may have come in meanwhile,
    /// it begins anew. True when there is more to be shown. MAIN.
    bool follow(const WaveForm& wave, double elapsed);

    /// From first to last, fractions of the buffer: 0 is its oldest frame, 1 the newest. The number
    /// of the first column, counted from when the buffer was new: how far it scrolled.
    std::int64_t show(double first, double last, std::span<WaveColumn> columns) const;
    /// How many buffers it followed.
    std::uint64_t begins() const noexcept { return begins_; }
    /// Whether what the buffer held was read to its newest frame.
    bool isComplete() const noexcept { return waiting_ == 0; }

private:
    struct Block {
        float low = 0, high = 0, squares = 0; ///< squares: their sum
        std::uint32_t frames = 0;
    };
    void beginAnew(const WaveForm& wave);
    void add(std::uint64_t first, std::span<const float> frames);

    std::vector<Block> blocks_;
    std::vector<float> read_;
    std::uint64_t size_ = 0, index_ = 0, next_ = 0, waiting_ = 0; // frames
    std::uint64_t written_ = 0; // frames since the buffer was new, at index_
    std::uint64_t replacements_ = 0, holds_ = 0;
    std::uint64_t begins_ = 0;
};

} // namespace zephyra
