// StageContents: one moment of the sound, its scan and its region, as the stage shows them.
#pragma once

#include "engine/sample_buffer.h"
#include "screens/model/screen_source.h"
#include "screens/model/stage/grain_clock.h"
#include "screens/model/stage/grain_cloud.h"
#include "screens/model/stage/live_wave.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// Positions are fractions of the sound. Plain data.
struct StageContents {
    std::shared_ptr<const mokSample> sound; ///< the file's, as it was loaded; never null once read
    double seconds = 0.0;                   ///< of the sound that is heard
    float gain = 1.0f;                      ///< by which that is louder than sound
    bool isNormalized = false;              ///< its peak was chosen
    std::string name, missing;              ///< file names; missing is empty while none is
    std::optional<double> loading;          ///< share of a file that is being read

    bool isLive = false, isWriting = false; ///< the live sound is heard; input comes into it
    std::uint64_t liveFrames = 0;           ///< of its buffer

    double scan = 0.0, scanSpeed = 0.0; ///< 1: as fast as the sound was recorded
    double regionStart = 0.0, regionEnd = 1.0;
    double jitter = 0.0; ///< either way
    bool isPlaying = false, isArmed = false, isFrozen = false, isHeld = false;
    bool staysHeld = false; ///< by a press-and-hold, whether or not the finger is still there
    bool isSynced = false;  ///< the scan crosses the sound in measures of quarters
    int measures = 1, quarters = 4;
    double pitch = 0.0, rndPitch = 0.0; ///< semitones, as set
    std::size_t envelope = 0;

    /// By itself, now or as soon as the host's bar begins.
    bool scanMoves() const { return (isPlaying || isArmed) && !isFrozen; }
};

/// Copies them once a frame, and takes the grains that started. It watches grains from construction
/// to destruction. Message thread.
class StageReader final : public ScreenPart {
public:
    explicit StageReader(ScreenSource& source);
    ~StageReader() override;

    void read(AudioUnitViewController& view, const FrameTime& time) override;

    const StageContents& contents() const noexcept { return contents_; }
    const GrainCloud& grains() const noexcept { return grains_; }
    const LiveWave& live() const noexcept { return live_; }
    /// Whether more live sound came in since this was asked last.
    bool takeLiveNews() noexcept { return std::exchange(liveNews_, false); }

    /// What bars take of the stage, for grains that start from now on.
    void setBarSize(const BarSize& bar) { bar_ = bar; }
    /// Ended grains stay a while and fade.
    void setFades(bool fades) { fades_ = fades; }

private:
    void readSound(MOK_SCRUB_GRANULATOR& stream, AudioUnitViewController& view);
    void readLive(MOK_SCRUB_GRANULATOR& stream, double now);
    void readScan(MOK_SCRUB_GRANULATOR& stream, double lag);
    void readGrains(MOK_SCRUB_GRANULATOR& stream, const FrameTime& time, double rate);

    ScreenSource& source_;
    StageContents contents_;
    GrainCloud grains_;
    LiveWave live_;
    bool liveNews_ = false;
    double liveReadAt_ = 0.0; // on the window's clock
    GrainClock clock_;
    BarSize bar_;
    bool fades_ = true;
    std::vector<float> envelope_; // of contents_.envelope
    std::optional<std::size_t> shownEnvelope_;
    std::optional<GrainWatch::Watcher> started_;
};

} // namespace zephyra
