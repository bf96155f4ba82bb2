// SoundArrival: whether an output that a meter looks at goes on.
#pragma once

#include "screens/model/screen_source.h"

#include <cstdint>

namespace zephyra {

/// A host's block may be longer than a frame of the window; but a host that no longer renders sends
/// nothing at all, and then a meter shows silence. Message thread.
class SoundArrival {
public:
    explicit SoundArrival(std::uint64_t begins = 0) : begins_(begins), count_(begins) {}

    static constexpr double kLongestBlock = 0.25; ///< seconds

    enum class State {
        fresh,   ///< there is more than the last time
        waiting, ///< there is not, and what was there still counts
        silence, ///< nothing came for longer than a block lasts
    };

    /// Looks from now on: what came before, count by now, is nobody's.
    void begin(std::uint64_t count) { *this = SoundArrival(count); }
    std::uint64_t begins() const noexcept { return begins_; }

    /// count: of frames or pieces that ever came.
    State look(std::uint64_t count, const FrameTime& time) {
        if (count != count_) {
            count_ = count;
            since_ = 0.0;
            return State::fresh;
        }
        since_ += time.elapsed;
        return since_ < kLongestBlock ? State::waiting : State::silence;
    }

private:
    std::uint64_t begins_, count_;
    double since_ = kLongestBlock; // seconds; at first nothing has come
};

} // namespace zephyra
