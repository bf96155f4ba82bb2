// LevelMeter: what a stereo level meter shows, in decibels.
#pragma once

#include "screens/model/sound_arrival.h"
#include "stream/output_levels.h"

#include <array>

namespace zephyra {

/// Ballistics of both channels: the rms is integrated over kIntegration; a peak rises at once and
/// falls by kPeakFall; it is held for kHold; a clip light stays until it is cleared. Levels are in
/// decibels of full scale, kFloor standing for everything below. Message thread.
class LevelMeter {
public:
    static constexpr double kFloor = -72.0;     ///< dB
    static constexpr double kIntegration = 0.3; ///< seconds, time constant of the mean square
    static constexpr double kPeakFall = 20.0;   ///< dB per second
    static constexpr double kHold = 1.5;        ///< seconds

    struct Channel {
        double rms = kFloor, peak = kFloor, hold = kFloor;
        bool clipped = false;
        bool operator==(const Channel&) const = default;
    };

    /// Reads levels, which somebody must watch, and moves on by time. Whether anything that is
    /// shown changed.
    bool advance(const OutputLevels& levels, const FrameTime& time);
    /// The same for what was read.
    bool advance(const LevelReading& reading, const FrameTime& time);

    const std::array<Channel, 2>& channels() const noexcept { return channels_; }
    /// The highest peak of both channels since the start or since it was cleared; kFloor for none.
    double highestPeak() const noexcept { return highest_; }
    /// Puts the clip lights out and forgets the highest peak.
    void clear();

private:
    struct Past {
        double meanSquare = 0.0; // integrated
        double held = 0.0;       // seconds since the held peak
    };

    void move(Channel& channel, Past& past, const LevelReading::Channel& read, double seconds);

    OutputLevels::Place place_ = 0;
    bool isPlaced_ = false;
    std::uint64_t frames_ = 0; // ever read
    SoundArrival arrival_;
    LevelReading last_;
    std::array<Channel, 2> channels_;
    std::array<Past, 2> past_;
    double highest_ = kFloor;
};

} // namespace zephyra
