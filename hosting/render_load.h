// RenderLoad: which share of a block's time its rendering takes.
#pragma once

#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"
#include "platform/threads/render_clock.h"

#include <cstdint>

namespace zephyra {

/// Time in a block over the block's own length, 1 for a processor that just keeps up, smoothed over
/// kSmoothing seconds of sound. RENDER writes it, any thread reads it.
class RenderLoad {
public:
    static constexpr double kSmoothing = 0.3; ///< seconds

    /// Measures one block, from construction to destruction. RENDER.
    class Block {
    public:
        Block(RenderLoad& load, std::uint32_t frames, double sampleRate) ZEPHYRA_NONBLOCKING
            : load_(load),
              length_(frames / sampleRate),
              began_(renderSeconds()) {}
        ~Block() ZEPHYRA_NONBLOCKING { load_.add(renderSeconds() - began_, length_); }
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;

    private:
        RenderLoad& load_;
        double length_, began_;
    };

    /// A block of length seconds took so many; one of no length says nothing. RENDER.
    void add(double taken, double length) ZEPHYRA_NONBLOCKING {
        if (!(length > 0.0)) return;
        const double share = share_, weight = length / (length + kSmoothing);
        share_ = share + weight * (taken / length - share);
    }
    /// Begins anew at 0. RENDER or OFF.
    void reset() noexcept { share_ = 0.0; }

    /// Any thread.
    double share() const noexcept { return share_; }

private:
    Relaxed<double> share_ = 0.0;
};

} // namespace zephyra
