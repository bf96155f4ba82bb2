// VoicesFace: the grains that sound now, a dot each.
#pragma once

#include "engine/granular_stream.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zephyra {

/// The voices of a stream.
inline constexpr std::size_t kVoices = mokGranulatorSF::kVoices;

/// A grain as its voice shows it.
struct SoundingVoice {
    std::uint64_t id;      ///< of the grain, as long as it sounds
    float semitones;       ///< one that is not finite counts as 0
    float envelope = 1.0f; ///< its gain now, 0..1
};

/// Who knows the grains that sound now. Message thread.
class SoundingVoices {
public:
    virtual ~SoundingVoices() = default;
    /// Calls for what sounds, oldest first; at most kVoices are shown.
    virtual std::size_t sounding(std::span<SoundingVoice> into) const = 0;
    /// Grains that found no voice, since the beginning.
    virtual std::uint64_t dropped() const = 0;
};

struct VoicesFace {
    struct Dot {
        float semitones = 0.0f;
        int light = 0; ///< 0: nothing sounds, else 1..kMostLight
        bool operator==(const Dot&) const = default;
    };
    static constexpr int kMostLight = 8;

    std::array<Dot, kVoices> dots{};
    std::size_t count = 0;
    bool dropped = false; ///< one found no voice in the last 300 ms

    std::string name() const; ///< "17 grains"
    bool operator==(const VoicesFace&) const = default;
};

/// Keeps each grain at its dot while it sounds. Message thread.
class VoiceDots {
public:
    /// now: seconds on the window's clock; dropped: as SoundingVoices has it.
    void show(std::span<const SoundingVoice> sounding, std::uint64_t dropped, double now);
    const VoicesFace& face() const { return face_; }

private:
    std::array<std::optional<std::uint64_t>, kVoices> grains_; // by dot
    VoicesFace face_;
    std::optional<std::uint64_t> dropped_;
    double droppedUntil_ = 0.0;
};

} // namespace zephyra
