#include "engine/granular_stream.h"

#include "effects/dsp_runtime.h"
#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "platform/text/log.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace zephyra {

namespace {

constexpr double kModuleRate = 44100.0; // Hz; the modules start at it whatever the engine's rate
constexpr std::int32_t kModuleVectorSize = 256;
constexpr unsigned long kPlaceholderFrames = 8192;
constexpr int kWorkFrames = 2 * mokGranulatorSF::kMaxBlockFrames;
constexpr int kSmallestWorkFrames = 512;
/// Half a page of 4096 bytes between the left and the right mix, which are walked side by side. At
/// like places in their pages, the processor takes a read of one for a read of what was just
/// written to the other; and where it happens to have put the two pages at like addresses as well
/// (one engine in some hundred), every read waits for that write, at twice the cost of a grain.
constexpr std::size_t kMixGap = 2048 / sizeof(float);
static_assert(kWorkFrames * sizeof(float) % 4096 == 0);

} // namespace

mokGranulatorSF::mokGranulatorSF(const mokSample* givenSample, const mokWindow* givenWindow,
                                 std::int32_t voices, float rate, std::uint32_t seed, Log* log)
    : scanPhasor(44100.0f), sample(givenSample), window(givenWindow),
      echo(delay_stereo_forward::create(kModuleRate, kModuleVectorSize, log)),
      ringModulator(RM::create(kModuleRate, kModuleVectorSize)), maxGrains(voices),
      randomSeed(seed), sampleRate(rate), firstSeed_(seed), mixer_(grainMixer(chosenCpuLevel())) {
    if (!echo || !ringModulator) throw std::bad_alloc();
    if (log && !cpuLevelWarning().empty()) log->write(cpuLevelWarning());
    delay_stereo_forward::reset(echo);
    RM::reset(ringModulator);
    using delay_stereo_forward::setparameter;
    setparameter(echo, delay_stereo_forward::kTimeL, 13230.0); // 300 ms
    setparameter(echo, delay_stereo_forward::kTimeR, 11025.0); // 250 ms
    setparameter(echo, delay_stereo_forward::kFeedbackL, double{echoGainL});
    setparameter(echo, delay_stereo_forward::kFeedbackR, double{echoGainR});

    if (!givenSample) {
        ownsSample = true;
        placeholder_ = std::make_shared<mokSample>(kPlaceholderFrames, rate);
        sample = placeholder_.get();
    }
    if (!givenWindow) {
        ownsWindow = true;
        ownWindow_ = std::make_shared<mokWindow>(mokWindow::kPoints, kWindowGaussian);
        ownWindow_->genHanning();
        window = ownWindow_.get();
    }
    windowEnergy_ = window.load()->energy();

    const auto pool = static_cast<std::size_t>(std::max(maxGrains, 0));
    grainGainL.assign(pool, 0.0f);
    grainGainR.assign(pool, 0.0f);
    grainStartOffset.assign(pool, 0);
    for (std::size_t i = 0; i < pool; ++i)
        grains.push_back(std::make_unique<mokGrain>(sample.load(), window.load(), rate, seed));

    if (rate > 0.0f) {
        scanPhasor.setSampleRate(rate);
        mixGain_.setSampleRate(rate);
    }
    setSpeed(1.0f);
    const mokSample& source = *sample.load();
    playbackRate = source.sampleRate / static_cast<float>(source.size);
    setDefaults();
    allocateWorkArrays(kWorkFrames);
}

mokGranulatorSF::~mokGranulatorSF() {
    delay_stereo_forward::destroy(echo);
    RM::destroy(ringModulator);
}

void mokGranulatorSF::allocateWorkArrays(int frames) {
    if (frames < kSmallestWorkFrames) return;
    const auto length = static_cast<std::size_t>(frames);
    phaseBuffer.assign(length, 0.0f);
    mixMemory_.assign(2 * length + kMixGap, 0.0f);
    mixL = mixMemory_.data();
    mixR = mixL + length + kMixGap;
}

void mokGranulatorSF::setSampleRate(float rate) noexcept {
    if (!std::isfinite(rate) || !(rate > 0.0f)) return;
    sampleRate = rate;
    anewAt_ = rendered_;
    for (const auto& grain : grains) grain->setSampleRate(rate);
    scanPhasor.setSampleRate(rate);
    mixGain_.setSampleRate(rate);
}

void mokGranulatorSF::setSample(const mokSample* next) noexcept {
    if (!next) return;
    const float rate = next->sampleRate / static_cast<float>(next->size);
    if (std::isfinite(rate)) playbackRate = rate;
    sample.exchange(next);
    if (!ownsSample) return;
    ownsSample = false;
    retired_.retire(std::exchange(placeholder_, nullptr));
}

void mokGranulatorSF::setWindow(const mokWindow* next) noexcept {
    if (!next) return;
    window.exchange(next);
    windowEnergy_ = next->energy();
    if (!ownsWindow) return;
    ownsWindow = false;
    retired_.retire(std::exchange(ownWindow_, nullptr));
}

std::int32_t mokGranulatorSF::soundingGrains() const ZEPHYRA_NONBLOCKING {
    std::int32_t count = 0;
    for (const auto& grain : grains) count += grain->active ? 1 : 0;
    return count;
}

} // namespace zephyra
