// ScopeTrace: the newest sound as a scope draws it, one lowest and highest level a column.
#pragma once

#include "screens/model/sound_arrival.h"
#include "stream/oscilloscope.h"

#include <cstddef>
#include <span>
#include <vector>

namespace zephyra {

/// The mean of both channels over kShown frames. They begin where the sound rises through 0 behind
/// its deepest trough, so that a steady tone stands still. Message thread.
class ScopeTrace {
public:
    static constexpr std::size_t kShown = 2048;  ///< frames, 46 ms at 44100 Hz
    static constexpr std::size_t kSought = 2048; ///< before those, in which the beginning is sought
    static constexpr float kSilence = 1e-4f;     ///< what is quieter is drawn as a line

    struct Column {
        float low = 0.0f, high = 0.0f; ///< linear, full scale is 1; not held to it
        bool operator==(const Column&) const = default;
    };

    /// How many columns there are, 0 at first; all flat until the next frame.
    void setColumns(std::size_t count);
    /// Shows nothing of what came before, as from when it is switched on.
    void begin(const Oscilloscope& oscilloscope);
    /// Reads oscilloscope, which somebody must watch. Whether a column changed.
    bool advance(const Oscilloscope& oscilloscope, const FrameTime& time);

    std::span<const Column> columns() const noexcept { return columns_; }

private:
    std::size_t beginning() const;
    bool show(std::span<const float> frames);

    std::vector<Column> columns_;
    std::vector<float> frames_, right_;
    SoundArrival arrival_;
};

} // namespace zephyra
