// GrainCloud: the grains that sound now, and those that just did, as a picture shows them.
#pragma once

#include "engine/grain_trace.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zephyra {

/// Positions are fractions of the sound: a grain that reads over its end goes on beyond 1.
struct ShownGrain {
    std::uint64_t id = 0;      ///< grows with each grain
    double from = 0, to = 0;   ///< where it begins to read, and ends
    double head = 0;           ///< where it reads
    double through = 0;        ///< 0..1
    double endedFor = 0;       ///< seconds since; 0 while it sounds
    float envelope = 0;        ///< its gain now by the envelope, 0..1
    float semitones = 0;       ///< against the sound's own pitch
    float left = 0, right = 0; ///< gains, 0..1
    int lane = 0;              ///< stacked so many bars above (below 0: below) its pitch
};

/// What a bar takes of the stage, so that bars that would cover each other are stacked.
struct BarSize {
    double semitones = 1.0; ///< that a bar and its gap are high
    double source = 0.0;    ///< fraction of the sound that a bar is wide at least
    double most = 36.0;     ///< semitones either way that the stage has room for
};

/// The sound that grains read.
struct GrainSource {
    double seconds = 1.0;       ///< its length
    double driftPerFrame = 0.0; ///< fraction that it moves to the left in a frame: live input
};

/// A fixed number of grains, nothing is allocated. Message thread.
class GrainCloud {
public:
    static constexpr double kFadeSeconds = 1.2;
    static constexpr std::size_t kMostSounding = 64, kMostEnded = 128;
    static constexpr int kMostLane = 12;

    /// A grain that was scheduled. Where too many sound, the oldest ends.
    void add(const GrainRecord& record, const GrainSource& source, const BarSize& bar);
    /// To the moment of frame (see GrainClock), elapsed seconds after the last one. rate in Hz.
    /// envelope: evenly over a grain's length; empty counts as 1. fades: ended grains stay a while.
    void advance(double frame, double elapsed, double rate, const GrainSource& source,
                 std::span<const float> envelope, bool fades);
    /// The stream was stopped: what sounds has ended.
    void endAll();
    /// Another sound: nothing is left of the grains before.
    void clear() { soundingCount_ = endedCount_ = shownCount_ = 0; }

    /// Those that have begun, oldest first.
    std::span<const ShownGrain> sounding() const { return {shown_.data(), shownCount_}; }
    std::span<const ShownGrain> ended() const { return {ended_.data(), endedCount_}; }
    /// Grains that found no voice, since the beginning.
    std::uint64_t dropped() const noexcept { return dropped_; }

private:
    struct Sounding {
        ShownGrain grain;
        std::uint64_t frame;
        double rate, seconds; ///< sounds a second, and how long it lasts
    };
    int freeLane(const ShownGrain& grain, const BarSize& bar) const;
    void fade(double elapsed, double drift);
    void end(const ShownGrain& grain);

    std::array<Sounding, kMostSounding> sounding_{};
    std::array<ShownGrain, kMostSounding> shown_{};
    std::array<ShownGrain, kMostEnded> ended_{};
    std::size_t soundingCount_ = 0, shownCount_ = 0, endedCount_ = 0;
    std::uint64_t next_ = 1, dropped_ = 0;
    double frame_ = 0.0; // of the last advance
};

} // namespace zephyra
