// mokGranulatorSF: one stream's granular engine, from scheduled grains to a stereo block.
#pragma once

#include "effects/common_state.h"
#include "engine/grain_mix.h"
#include "engine/grain_trace.h"
#include "engine/grain_voice.h"
#include "engine/mix_gain.h"
#include "engine/scan_phasor.h"
#include "engine/stage_fade.h"
#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/relaxed.h"
#include "platform/threads/render_cycle.h"

#include <atomic>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

namespace zephyra {

/// Cuts a sample into short overlapping grains and mixes them, then runs the echo and the ring
/// modulator over the mix. A fixed pool of voices is made at construction; nothing is allocated
/// while rendering. Setters are MAIN and store single words that the next block reads; a result
/// that is not finite keeps the old value. Samples and windows are not owned: they cross as
/// pointers, and the caller keeps the old one until renderCycle() has moved on and holds() lets it
/// go (see Retirement). While grains sound, another sample or window comes through a seam: for
/// MixGain::kSeamSeconds they go down on the tables that they have, and none starts; then they end,
/// and the mix comes up with the newest tables. Where none sounds it comes at once.
class mokGranulatorSF {
public:
    /// The longest block rendered at once; a longer one is split.
    static constexpr int kMaxBlockFrames = 4096;
    /// Seconds that an effect fades in or out for when it is switched.
    static constexpr float kStageFade = 0.01f;
    /// What a stream is built with.
    static constexpr std::int32_t kVoices = 24;

    /// A null sample becomes an own placeholder of silence, a null window an own Hanning. maxGrains
    /// below 1 gives no voices: grains are scheduled and none sounds. sampleRate in Hz. seed: see
    /// setRandomSeed(). log hears of problems, standard error when it is null, and outlives this.
    /// MAIN.
    mokGranulatorSF(const mokSample* sample, const mokWindow* window, std::int32_t maxGrains,
                    float sampleRate, std::uint32_t seed, Log* log = nullptr);
    /// OFF.
    virtual ~mokGranulatorSF();
    mokGranulatorSF(const mokGranulatorSF&) = delete;
    mokGranulatorSF& operator=(const mokGranulatorSF&) = delete;

    /// Every setting to its start value: the amounts stored as they stand, pitch, pan, speed, start
    /// and end through their setters.
    void setDefaults() noexcept;
    void setLevel(const float& v) noexcept;      ///< gain of new grains, unchecked
    void setWidth(const float& v) noexcept;      ///< stereo spread; min(|v|, 1)
    void setPan(const float& p) noexcept;        ///< -1..1, 0 centre; clamped
    void setLength(const float& ms) noexcept;    ///< |ms|
    void setDensity(const float& d) noexcept;    ///< |d| grains per second
    void setRndLength(const float& r) noexcept;  ///< 0..1; half of it is the deviation either way
    void setRndDensity(const float& r) noexcept; ///< 0..1; half of it is the deviation either way
    void setPitch(const float& semitones) noexcept; ///< ignored on the placeholder
    void
    setStart(const float& s) noexcept;    ///< fraction; above the end the scan runs towards the end
    void setEnd(const float& e) noexcept; ///< fraction; the span is the distance from the start
    void setRndPitch(const float& r) noexcept;   ///< range in semitones, half of it each side
    void setJittering(const float& ms) noexcept; ///< |ms|, at most 1000; ignored on the placeholder
    void setSpeed(const float& v) noexcept; ///< scan-rate factor: 1 crosses the region in real time

    /// Grains read from sample, after a seam where one is needed; grains that sound on the sample
    /// that it is a copy of read on in it. Null is ignored. The pitch is dropped: set pitch, speed
    /// and jitter again afterwards. MAIN.
    void setSample(const mokSample* sample) noexcept;

    /// Shapes grains by window, after a seam where one is needed; null is ignored. MAIN.
    void setWindow(const mokWindow* window) noexcept;

    /// Whether RENDER reads this sample or window until a seam has passed. MAIN.
    bool holds(const void* table) const noexcept {
        return table == blockSample_.load() || table == blockWindow_.load();
    }

    /// Scales the mix before the effects, 0..1, and gets there within a tick. From 0 a stream that
    /// is switched off begins anew: what sounded has ended, and the level is 1. MAIN.
    void setMixLevel(float share) noexcept { mixGain_.setLevel(share); }

    /// The scan jumps to a fraction of the region, min(|fraction|, 1), at the next block. MAIN.
    void setScanPhase(const double& fraction) noexcept { scanPhasor.setPhase(fraction); }

    /// Whether new grains get the level that keeps the cloud's loudness (steadyLevel); off at
    /// first. MAIN.
    void setSteadyLevel(bool on) noexcept { steady_ = on; }
    bool isLevelSteady() const noexcept { return steady_; }

    /// Hz; recomputes every grain's increments and the phasor's. One that is not above 0 or not
    /// finite is ignored. The effect modules have their own rates. OFF.
    void setSampleRate(float rate) noexcept;

    /// The generator's state; an even one has a short period and 0 none. OFF.
    void setRandomSeed(std::uint32_t seed) noexcept { randomSeed = firstSeed_ = seed; }
    std::uint32_t currentRandomSeed() const noexcept { return randomSeed; }
    /// The same from the next block on; 0 is ignored. MAIN.
    void requestRandomSeed(std::uint32_t seed) noexcept {
        if (seed == 0) return;
        firstSeed_ = seed;
        pendingSeed_.store(seed, std::memory_order_relaxed);
    }

    /// The generator stands at the seed that was set last, the next frame starts a grain, and a
    /// scan that runs begins at its region's start. What sounds goes on. RENDER.
    void startAnew() ZEPHYRA_NONBLOCKING;
    /// Ends the grains that sound, at once. RENDER.
    void endGrains() ZEPHYRA_NONBLOCKING;

    /// Reports every grain scheduled from the next block on to trace; null, as at first, reports to
    /// nobody. The caller keeps the one before until renderCycle() has moved on. MAIN.
    void setTrace(GrainTrace* trace) noexcept { trace_.exchange(trace); }

    /// How grains that start from the next block on read their source; sounding ones keep theirs.
    /// The first choice of a quality makes its tables. MAIN.
    void setQuality(GrainQuality quality) noexcept { taps_.store(GrainTapSet::of(quality)); }

    /// Renders with another inner body than the one chosen for this processor. OFF.
    void setMixer(GrainMixer mixer) noexcept { mixer_ = mixer; }

    /// Renders frames samples into the first two buffers of outputList, which are overwritten.
    /// Fewer than two buffers, one without memory, or no frames: nothing happens. RENDER.
    void GranularStreamProcessing(int frames,
                                  const AudioBufferList& outputList) ZEPHYRA_NONBLOCKING;

    /// Whether a cycle in which no grain sounds would be silent, and would move nothing that is
    /// heard later: each effect is off and has faded out, or is on, has come to rest and has
    /// nothing left in its lines. RENDER.
    bool effectsRest() const ZEPHYRA_NONBLOCKING;
    /// Passes over frames in which nothing is heard: only the scan and the ring modulator's cosine
    /// go on. RENDER.
    void pass(int frames) ZEPHYRA_NONBLOCKING;
    /// Whether grains are cut from sound, which is only compared, or will be after a seam. Any
    /// thread.
    bool isCutFrom(const mokSample* sound) const ZEPHYRA_NONBLOCKING {
        return sample.load() == sound;
    }
    /// The same, and no grain sounds on another one. RENDER.
    bool soundsOnlyOf(const mokSample* sound) const ZEPHYRA_NONBLOCKING {
        return isCutFrom(sound) && (blockSample_.load() == sound || soundingGrains() == 0);
    }

    /// The effect modules; their parameters may be set on any thread. Never null.
    CommonState* echoModule() const noexcept { return echo; }
    CommonState* ringModulatorModule() const noexcept { return ringModulator; }

    /// Counts render calls, for whoever replaces samples and windows. Any thread.
    const RenderCycle& renderCycle() const noexcept { return cycle_; }

    /// Grains started, and scheduled ones dropped for want of a voice, since construction. Any
    /// thread.
    std::uint64_t startedGrains() const noexcept { return started_; }
    std::uint64_t droppedGrains() const noexcept { return dropped_; }
    /// Samples that grains have sounded for, all grains together, since construction: over
    /// renderedFrames() the mean number that sounds. Any thread.
    std::uint64_t soundedSamples() const noexcept { return sounded_; }
    /// Frames rendered since construction: the clock of GrainRecord::frame, a whole block further
    /// after each, and still while nothing is rendered or a silent stream rests. Any thread.
    std::uint64_t renderedFrames() const noexcept { return rendered_; }
    /// The read position of the latest frame, and of the next one if the scan stands, in the region
    /// as it is now; or where a jump that no block has taken yet will set it. A fraction of the
    /// sample. Any thread.
    float currentScanPosition() const noexcept;
    float nextScanPosition() const noexcept;
    /// The scan phasor's latest value. Any thread.
    float currentScanPhase() const noexcept { return scanPhase; }
    /// Where in the region the next block's scan begins, 0..1, and how often a second it crosses
    /// the region. Any thread.
    double nextScanPhase() const noexcept;
    float scanFrequency() const noexcept { return scanPhasor.currentFrequency(); }
    /// The region that the scan crosses, fractions of the sample; the span is negative where it
    /// runs backwards. Any thread.
    float scanRegionStart() const noexcept { return scanStart; }
    float scanRegionSpan() const noexcept { return scanSpan; }
    /// Seconds that a new grain lasts at most. Any thread.
    double longestGrain() const ZEPHYRA_NONBLOCKING {
        return double{grainLength} * (1.0 + std::abs(double{rndLength}));
    }
    /// The gain that new grains get. Any thread.
    float currentLevel() const noexcept { return level; }
    /// Voices that sound now. RENDER, or OFF.
    std::int32_t soundingGrains() const ZEPHYRA_NONBLOCKING;
    /// Whether the engine still stands on its own silent placeholder. MAIN.
    bool onPlaceholder() const noexcept { return ownsSample; }

    /// Stage switches, off after construction; set by the owner. An effect that is switched fades
    /// from the next block on; only the first block, of all or after startAnew() or
    /// setSampleRate(), takes its switch at once. An echo that was off is empty when it comes back.
    /// MAIN.
    Relaxed<bool> granularOn = false, echoOn = false, ringOn = false;

    /// Echo times in ms and feedback amounts as last set by the owner. MAIN.
    float echoTimeL = 300.0f, echoTimeR = 250.0f, echoGainL = 0.341f, echoGainR = 0.231f;

private:
    friend struct StreamProbe; // tests read the fields

    /// The settings as one block reads them.
    struct Settings {
        float level, width, panA, panB, panRestA, panRestB;
        float grainLength, density, playbackRate, rndLength, rndDensity, rndPitch, jitter;
        float scanSpan, scanStart;
    };

    Settings blockSettings() const ZEPHYRA_NONBLOCKING;
    void takeChange() ZEPHYRA_NONBLOCKING;
    GrainTables takeTables() ZEPHYRA_NONBLOCKING;
    void restSwitchedOff() ZEPHYRA_NONBLOCKING;
    int takeGain(int frames) ZEPHYRA_NONBLOCKING;
    void passStarts(int frames) ZEPHYRA_NONBLOCKING;
    void processBlock(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING;
    void countQuiet(int frames, StereoSpan echoes) ZEPHYRA_NONBLOCKING;
    void emptyEcho() ZEPHYRA_NONBLOCKING;
    int takeSwitches(int frames) ZEPHYRA_NONBLOCKING;
    std::int32_t fadeEcho(int frames, StereoSpan out, StereoSpan to) ZEPHYRA_NONBLOCKING;
    void fadeRing(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING;
    void applyEffects(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING;
    void scheduleGrains(int frames, const Settings& settings) ZEPHYRA_NONBLOCKING;
    float scanPosition(float phase, const Settings& settings) const ZEPHYRA_NONBLOCKING;
    double scanPhaseFrom(float renderedPhase) const noexcept;
    float scanPositionFrom(float renderedPhase) const noexcept;
    void initializeGrain(int frame, float position, const Settings& settings) ZEPHYRA_NONBLOCKING;
    void renderGrains(int frames, const GrainTables& tables) ZEPHYRA_NONBLOCKING;
    void takeRequestedSeed() ZEPHYRA_NONBLOCKING;
    void allocateWorkArrays(int frames);
    void setSpanAndStart(float span, float start, float end) noexcept;
    float sampleDuration() const noexcept;
    float steadyFactor(const Settings& settings) const ZEPHYRA_NONBLOCKING;

    std::vector<std::unique_ptr<mokGrain>> grains;
    mokPhasor scanPhasor;
    std::atomic<const mokSample*> sample; // sequentially consistent, see RenderCycle
    std::atomic<const mokWindow*> window;
    CommonState* echo;
    CommonState* ringModulator;
    std::int32_t maxGrains;
    std::uint32_t randomSeed;
    float sampleRate;
    std::uint64_t grainInterval = 0; // samples; 0 starts a grain at the very first frame
    std::uint64_t grainCounter = 0;
    bool ownsSample = false;
    bool ownsWindow = false;
    float lastJitterOffset = 0.0f; // fraction of the sample
    float lastLengthOffset = 0.0f; // seconds
    Relaxed<float> scanSpan = 1.0f, scanStart = 0.0f, scanEnd = 1.0f, speed = 1.0f;
    Relaxed<float> scanPhase = 0.0f, nextScanPhase_ = 0.0f;
    std::vector<float> grainGainL, grainGainR;
    Relaxed<float> level, width, panA, panB, panRestA, panRestB;
    float spareA = 0.25f, spareB = 0.25f; // read by nothing
    Relaxed<float> grainLength, density, playbackRate;
    Relaxed<float> rndLength, rndDensity, rndPitch, jitter;
    Relaxed<bool> steady_ = false;
    Relaxed<float> windowEnergy_ = 0.0f; // mean square of the envelope
    std::vector<float> phaseBuffer;
    std::vector<float> mixMemory_; // of the two below
    float *mixL = nullptr, *mixR = nullptr;
    std::vector<std::int32_t> grainStartOffset;

    // The engine's own sample and window, and where they wait once replaced.
    std::shared_ptr<mokSample> placeholder_;
    std::shared_ptr<mokWindow> ownWindow_;
    RenderCycle cycle_;
    Retirement retired_{cycle_, [this](const void* table) { return holds(table); }};

    Relaxed<std::uint32_t> firstSeed_;
    std::atomic<std::uint32_t> pendingSeed_ = 0; // not yet taken; 0 for none
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
    GrainMixer mixer_;
    std::atomic<GrainTrace*> trace_ = nullptr;       // sequentially consistent, see RenderCycle
    GrainTrace* blockTrace_ = nullptr;               // the block's snapshot; RENDER's own
    std::atomic<const GrainTapSet*> taps_ = nullptr; // never freed
    const GrainTapSet* blockTaps_ = nullptr;         // the block's snapshot; RENDER's own
    StageFade echoFade_, ringFade_;                  // RENDER's own
    MixGain mixGain_;
    // What sounding grains read, until a seam lets go of it; null where none can sound. Written by
    // RENDER, sequentially consistent, see Retirement.
    std::atomic<const mokSample*> blockSample_ = nullptr;
    std::atomic<const mokWindow*> blockWindow_ = nullptr;
    // Of the latest block, RENDER's own.
    bool blockSounds_ = false;
    std::uint64_t anewAt_ = 0;     // where the frame stands that takes the switches at once
    std::int64_t quietEchoes_ = 0; // how many of the echo's newest frames were nothing
    std::uint64_t blockSourceSize_ = 0;
    Relaxed<std::uint64_t> started_ = 0, dropped_ = 0, sounded_ = 0, rendered_ = 0;
};

} // namespace zephyra
