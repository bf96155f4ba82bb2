// WavePyramid: a sound of any length, reduced so that columns of any zoom come at once.
#pragma once

#include "engine/sample_buffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace zephyra {

/// What a column of pixels shows of a sound: its extremes and its energy, linear.
struct WaveColumn {
    float low = 0, high = 0, rms = 0;
    bool operator==(const WaveColumn&) const = default;
};

/// Extremes and energy of blocks of frames, and of blocks of those; a close view reads the frames
/// themselves. It grows in slices, so that an hour of sound holds up nobody: what is not reached
/// yet shows as silence. Message thread.
class WavePyramid {
public:
    static constexpr std::size_t kBlock = 256; ///< frames
    static constexpr std::size_t kGroup = 32;  ///< blocks

    /// Begins anew; null shows silence. sound never changes.
    void setSound(std::shared_ptr<const mokSample> sound);
    const std::shared_ptr<const mokSample>& sound() const noexcept { return sound_; }

    /// Goes on for about so many seconds. True when there is more to be shown than before.
    bool build(double seconds);
    bool isComplete() const noexcept { return !sound_ || reached_ >= sound_->size; }

    /// The part from first to last (fractions of the sound, beyond it is silence) as columns.
    void show(double first, double last, std::span<WaveColumn> columns) const;

    std::uint64_t frames() const noexcept { return sound_ ? sound_->size : 0; }
    /// The largest magnitude that was reached.
    float peak() const noexcept { return peak_; }

private:
    struct Block {
        float low = 0, high = 0, squares = 0; ///< squares: their mean
    };
    static Block measure(const float* frames, std::size_t count);
    void addBlock(const Block& block);
    WaveColumn column(double from, double to) const;

    std::shared_ptr<const mokSample> sound_;
    std::vector<Block> blocks_, groups_;
    std::uint64_t reached_ = 0; // frames
    float peak_ = 0.0f;
};

} // namespace zephyra
