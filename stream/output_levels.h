// OutputLevels: how loud an output is, kept for meters that look at it.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"
#include "stream/watch_count.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// What one meter reads at once. Plain data.
struct LevelReading {
    struct Channel {
        float peak = 0.0f;       ///< largest magnitude, linear
        float meanSquare = 0.0f; ///< mean of the squares; its root is the rms
        bool clipped = false;    ///< beyond full scale, which converters cut off
    };
    std::array<Channel, 2> channels; ///< left, right; of the frames since the last reading
    std::uint64_t frames = 0;        ///< that those are from; 0: nothing was rendered
};

/// Peaks and squares of both channels, summed up by pieces of kPiece frames while somebody looks,
/// in a ring, so that any number of meters read what came since each one's last reading. RENDER
/// passes it by while nobody looks.
class OutputLevels {
public:
    static constexpr std::uint32_t kPiece = 256; ///< frames; what is read lags by one at most
    static constexpr std::size_t kPieces = 256;  ///< kept: 170 ms at 384 kHz
    static constexpr float kMostLevel = 1e6f;    ///< linear

    /// Who looks; nobody at first.
    WatchCount watchers;

    /// Takes in frames samples of the first two buffers of list, which are only read; a missing one
    /// is silent. Levels beyond kMostLevel, and what is no number, count as that. RENDER.
    void add(const AudioBufferList& list, std::uint32_t frames) ZEPHYRA_NONBLOCKING;

    /// How far one meter has read; begins with newest().
    using Place = std::uint64_t;
    /// Any thread.
    Place newest() const noexcept { return pieces_; }
    /// What came since place, which moves on; of more than kPieces pieces the newest. Any thread
    /// but RENDER.
    LevelReading read(Place& place) const noexcept;

private:
    struct Piece {
        std::array<Relaxed<float>, 2> peak, squares;
    };
    struct Sum {
        float peak = 0.0f, squares = 0.0f;
    };

    void sumUp(std::size_t channel, const float* samples, std::uint32_t count) ZEPHYRA_NONBLOCKING;
    void goOn(std::uint32_t count) ZEPHYRA_NONBLOCKING;

    std::array<Piece, kPieces> ring_;
    std::atomic<std::uint64_t> pieces_{0}; // complete ones ever
    std::array<Sum, 2> sums_;              // of the piece that is not complete; RENDER
    std::uint32_t summed_ = 0;             // frames in it; RENDER
};

} // namespace zephyra
