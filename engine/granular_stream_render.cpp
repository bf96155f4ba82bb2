// The render path of mokGranulatorSF: schedule, start, render, add, output.

#include "effects/dsp_runtime.h"
#include "effects/stereo_echo.h"
#include "engine/granular_stream.h"
#include "engine/steady_level.h"
#include "platform/threads/flush_denormals.h"

#include <algorithm>
#include <limits>

namespace zephyra {

namespace {

// Powers of the generator's multiplier, modulo 2^32: a grain start draws five values at once.
constexpr std::uint32_t kMultiplier = 16807;
constexpr std::uint32_t kM1 = kMultiplier;
constexpr std::uint32_t kM2 = kM1 * kMultiplier;
constexpr std::uint32_t kM3 = kM2 * kMultiplier;
constexpr std::uint32_t kM4 = kM3 * kMultiplier;
constexpr std::uint32_t kM5 = kM4 * kMultiplier;
static_assert(kM2 == 282475249u && kM3 == 1622647863u && kM4 == 3095271137u);

constexpr int kFetchShares = 20;   // a block's; fewer than grains that usually sound
constexpr int kShortestFetch = 32; // frames, so that a call is worth it

constexpr float kLargest = std::numeric_limits<float>::max();

/// Products of two settings may overflow; nothing that is kept may.
float bounded(float value) ZEPHYRA_NONBLOCKING {
    return value != value      ? 0.0f
           : value < -kLargest ? -kLargest
           : value > kLargest  ? kLargest
                               : value;
}

/// The signed product of state and a power, scaled to -1..1.
float signedUnit(std::uint32_t state, std::uint32_t power) ZEPHYRA_NONBLOCKING {
    return static_cast<float>(static_cast<std::int32_t>(state * power)) * 0x1p-31f;
}

/// A value in -1..1; the two additions drop the bits below single precision's 2^-24, and stay.
float randomBipolar(std::uint32_t state, std::uint32_t power) ZEPHYRA_NONBLOCKING {
    return (signedUnit(state, power) + 1.0f) - 1.0f;
}

/// Truncation to the unsigned 64 bits of an interval: negative and none at 0, beyond at the top.
std::uint64_t saturatedInterval(float samples) ZEPHYRA_NONBLOCKING {
    if (!(samples > 0.0f)) return 0;
    if (samples >= 0x1p64f) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(samples);
}

/// The literal mix adds zeros wherever a grain is silent, which turns a -0 into +0; a grain that
/// ends inside a block must leave the same bits behind.
void addSilence(float* mix, int count, float gain) ZEPHYRA_NONBLOCKING {
    const float silence = 0.0f * gain;
    for (int n = 0; n < count; ++n) mix[n] += silence;
}

} // namespace

mokGranulatorSF::Settings mokGranulatorSF::blockSettings() const ZEPHYRA_NONBLOCKING {
    return {.level = level,
            .width = width,
            .panA = panA,
            .panB = panB,
            .panRestA = panRestA,
            .panRestB = panRestB,
            .grainLength = grainLength,
            .density = density,
            .playbackRate = playbackRate,
            .rndLength = rndLength,
            .rndDensity = rndDensity,
            .rndPitch = rndPitch,
            .jitter = jitter,
            .scanSpan = scanSpan,
            .scanStart = scanStart};
}

float mokGranulatorSF::steadyFactor(const Settings& settings) const ZEPHYRA_NONBLOCKING {
    return steadyLevel({.length = settings.grainLength,
                        .density = settings.density,
                        .rndDensity = settings.rndDensity,
                        .width = settings.width,
                        .windowEnergy = windowEnergy_,
                        .voices = maxGrains});
}

void mokGranulatorSF::takeRequestedSeed() ZEPHYRA_NONBLOCKING {
    if (pendingSeed_.load(std::memory_order_relaxed) == 0) return; // reading alone costs nothing
    randomSeed = pendingSeed_.exchange(0, std::memory_order_relaxed);
}

void mokGranulatorSF::startAnew() ZEPHYRA_NONBLOCKING {
    pendingSeed_.store(0, std::memory_order_relaxed); // the same one
    randomSeed = firstSeed_;
    grainInterval = grainCounter = 0;
    anewAt_ = rendered_;
    scanPhasor.startAnew();
    mixGain_.standAtFull();
}

void mokGranulatorSF::endGrains() ZEPHYRA_NONBLOCKING {
    mokGrain::lowerActives(soundingGrains());
    for (const auto& grain : grains) grain->active = false;
    std::fill(grainStartOffset.begin(), grainStartOffset.end(), 0);
}

float mokGranulatorSF::scanPosition(float phase,
                                    const Settings& settings) const ZEPHYRA_NONBLOCKING {
    const float position = phase * settings.scanSpan + settings.scanStart;
    return std::max(std::min(position, 1.0f), -kLargest); // the floor is only for -infinity
}

double mokGranulatorSF::scanPhaseFrom(float renderedPhase) const noexcept {
    const double jump = scanPhasor.waitingJump();
    const bool waits = jump == jump; // NaN: none
    return waits ? jump : double{renderedPhase};
}

float mokGranulatorSF::scanPositionFrom(float renderedPhase) const noexcept {
    return scanPosition(static_cast<float>(scanPhaseFrom(renderedPhase)), blockSettings());
}

float mokGranulatorSF::currentScanPosition() const noexcept {
    return scanPositionFrom(scanPhase);
}

double mokGranulatorSF::nextScanPhase() const noexcept {
    return scanPhaseFrom(nextScanPhase_);
}

float mokGranulatorSF::nextScanPosition() const noexcept {
    return scanPositionFrom(nextScanPhase_);
}

void mokGranulatorSF::initializeGrain(int frame, float position,
                                      const Settings& settings) ZEPHYRA_NONBLOCKING {
    const std::uint32_t state = randomSeed;
    lastLengthOffset =
        bounded(randomBipolar(state, kM2) * (settings.rndLength * settings.grainLength));
    const float length = settings.grainLength + lastLengthOffset;
    const float nowDensity =
        settings.density + randomBipolar(state, kM3) * (settings.density * settings.rndDensity);
    grainInterval = saturatedInterval(sampleRate / nowDensity);
    const double octaves = double{randomBipolar(state, kM4)} * double{settings.rndPitch};
    const auto rate = static_cast<float>(double{settings.playbackRate} * gen_msp_pow(2.0, octaves));
    lastJitterOffset = settings.jitter * randomBipolar(state, kM5);
    randomSeed = state * kM5;
    if (maxGrains < 1) return;

    const float spread = settings.width * (signedUnit(state, kM1) + 1.0f) * 0.5f;
    const float readPosition = position + lastJitterOffset;
    // Voice allocation: the first free one; where all sound the new grain goes, none is stolen.
    const auto free = std::find_if(grains.begin(), grains.end(),
                                   [](const auto& grain) { return !grain->active; });
    const bool dropped = free == grains.end();

    const auto L = static_cast<float>(1.0 - double{settings.width} + double{spread});
    const float R = 1.0f - spread;
    const float gainL = L * settings.panRestA + R * settings.panRestB;
    const float gainR = R * settings.panA + R * settings.panB;
    if (blockTrace_)
        blockTrace_->push(
            {.frame = rendered_ + static_cast<std::uint64_t>(frame),
             .position = std::min(readPosition < 0.0f ? -readPosition : readPosition, 1.0f),
             .rate = rate,
             .length = length,
             .gainL = gainL,
             .gainR = gainR,
             .dropped = dropped});
    if (dropped) {
        dropped_ = dropped_ + 1;
        return;
    }
    const auto i = static_cast<std::size_t>(free - grains.begin());
    grainStartOffset[i] = frame;
    mokGrain& grain = **free;
    grain.start();
    grain.setParameters(settings.level, rate, double{readPosition}, length);
    grain.setTaps(blockTaps_);
    grainGainL[i] = gainL;
    grainGainR[i] = gainR;
    started_ = started_ + 1;
}

void mokGranulatorSF::scheduleGrains(int frames, const Settings& settings) ZEPHYRA_NONBLOCKING {
    scanPhasor.Processing(phaseBuffer.data(), frames);
    int frame = 0;
    for (;;) { // from one start to the next: nothing happens at the frames between
        const std::uint64_t wait =
            grainInterval > grainCounter + 1 ? grainInterval - grainCounter - 1 : 0;
        const auto left = static_cast<std::uint64_t>(frames - frame);
        if (wait >= left) {
            grainCounter += left;
            break;
        }
        frame += static_cast<int>(wait);
        initializeGrain(frame, scanPosition(phaseBuffer[static_cast<std::size_t>(frame)], settings),
                        settings);
        grainCounter = 0;
        if (++frame == frames) break;
    }
    scanPhase = scanPhasor.latest();
    nextScanPhase_ = scanPhasor.next();
}

/// Time goes on, and a grain that is due waits.
void mokGranulatorSF::passStarts(int frames) ZEPHYRA_NONBLOCKING {
    scanPhasor.Processing(phaseBuffer.data(), frames);
    grainCounter += static_cast<std::uint64_t>(frames);
    scanPhase = scanPhasor.latest();
    nextScanPhase_ = scanPhasor.next();
}

void mokGranulatorSF::renderGrains(int frames, const GrainTables& tables) ZEPHYRA_NONBLOCKING {
    // The echo's memory comes while grains are computed, a share with each.
    const int fetchUpTo = echoOn ? frames : 0;
    const int share = std::max(frames / kFetchShares, kShortestFetch);
    int fetched = 0;
    std::uint64_t soundedNow = 0;
    for (std::size_t i = 0; i < grains.size(); ++i) {
        mokGrain& grain = *grains[i];
        if (!grain.active) continue;
        if (fetched < fetchUpTo) {
            delay_stereo_forward::fetchAhead(echo, fetched, share);
            fetched += share;
        }
        const int start = std::exchange(grainStartOffset[i], 0);
        const GrainMix mix{.gainL = grainGainL[i],
                           .gainR = grainGainR[i],
                           .left = mixL + start,
                           .right = mixR + start,
                           .count = frames - start};
        const int sounded = mixer_(grain, tables, mix);
        soundedNow += static_cast<std::uint64_t>(sounded);
        if (sounded == mix.count) continue;
        // By samples, not by one, as Processing does: see mokGrain::_actives.
        if (!grain.active) mokGrain::lowerActives(mix.count - sounded);
        addSilence(mix.left + sounded, mix.count - sounded, mix.gainL);
        addSilence(mix.right + sounded, mix.count - sounded, mix.gainR);
    }
    sounded_ = sounded_ + soundedNow;
}

void mokGranulatorSF::processBlock(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING {
    if (blockSounds_) {
        const GrainTables tables = takeTables();
        blockTrace_ = trace_.load();
        blockTaps_ = taps_.load();
        Settings settings = blockSettings();
        if (steady_) settings.level *= steadyFactor(settings);
        if (mixGain_.falls())
            passStarts(frames);
        else
            scheduleGrains(frames, settings);
        renderGrains(frames, tables);
        if (mixGain_.apply(frames, mixL, mixR)) endGrains();
    }
    applyEffects(frames, out);
    std::fill_n(mixL, frames, 0.0f);
    std::fill_n(mixR, frames, 0.0f);
    rendered_ = rendered_ + static_cast<std::uint64_t>(frames);
}

void mokGranulatorSF::GranularStreamProcessing(int frames, const AudioBufferList& outputList)
    ZEPHYRA_NONBLOCKING {
    if (outputList.mNumberBuffers < 2) return;
    const StereoSpan out{outputList.floats(0), outputList.floats(1)};
    if (!out.left || !out.right) return;
    const RenderCycle::Scope cycle(cycle_);
    const FlushDenormals flush;
    takeRequestedSeed();
    for (int done = 0, count = 0; done < frames; done += count) {
        count = takeGain(takeSwitches(std::min(kMaxBlockFrames, frames - done)));
        processBlock(count, out.from(done));
    }
}

} // namespace zephyra
