#include "stream/live_buffer.h"

#include <cmath>
#include <new>

namespace zephyra {

namespace {

constexpr float kFirstRate = 44100.0f; // Hz, until the first set-up

// About six redraws a second for any block length, counted at this rate whatever the real one.
constexpr double kRedrawRate = 44100.0; // Hz
constexpr double kRedrawsPerSecond = 6.0;

constexpr const char* kNoPath = "NULL"; // the current path while live input is shown
constexpr const char* kLiveTitle = "Live Input from Matrix Channels";
constexpr const char* kLiveShortTitle = "Live";

/// A silent sample of frames at rate; null when memory is short.
std::shared_ptr<mokSample> makeSilence(std::uint64_t frames, float rate) noexcept {
    try {
        auto sample = std::make_shared<mokSample>();
        return sample->allocate(frames, rate) ? sample : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool isRate(float rate) noexcept {
    return std::isfinite(rate) && rate > 0.0f;
}

} // namespace

WaveForm::WaveForm(NotificationCenter& notifications, const AudioSession& session,
                   Retirement& retirement)
    : notifications_(notifications), session_(session), retirement_(retirement),
      live_(makeSilence(kLiveFrames, kFirstRate)) {
    if (!live_) throw std::bad_alloc();
    data_.mSample = live_.get();
}

WaveForm::~WaveForm() = default;

bool WaveForm::replaceSample(std::uint64_t frames, float rate) {
    auto fresh = makeSilence(frames, rate);
    if (!fresh) return false;
    fresh.swap(live_);
    data_.mSample.exchange(live_.get());
    if (replaced_) replaced_();
    retirement_.retire(std::move(fresh));
    return true;
}

bool WaveForm::initLiveBuffer_andSamplingRate(std::uint64_t frames, double rate) {
    const auto sampleRate = static_cast<float>(rate);
    return isRate(sampleRate) && replaceSample(frames, sampleRate);
}

bool WaveForm::clearBuffer() {
    return replaceSample(live_->size, live_->sampleRate);
}

bool WaveForm::enableLIVE(bool on) {
    if (!on) {
        _enableLIVE = false;
        return true;
    }
    const double rate = session_.sampleRate;
    if (rate != sessionRate_) {
        if (!initLiveBuffer_andSamplingRate(kLiveFrames, rate)) return false;
        sessionRate_ = rate;
    }
    _enableLIVE = true;
    if (currentPath_ != kNoPath) lastSelectedPath_ = std::exchange(currentPath_, kNoPath);
    startLiveTimer();
    title_ = kLiveTitle;
    shortTitle_ = kLiveShortTitle;
    notifications_.post("refreshParameters");
    return true;
}

std::uint64_t WaveForm::getWriteLiveIndex() const noexcept {
    const bool atStart = !_enableLIVE || pendingReset_.load(std::memory_order_relaxed);
    return atStart ? 0 : live_->offset.load();
}

void WaveForm::stopLiveTimer() noexcept {
    data_.isLiveEnabled = false;
    requestRedraw();
}

void WaveForm::copyLive(std::uint64_t first, std::span<float> frames) const noexcept {
    for (float& frame : frames) {
        float& stored = live_->getPtr()[first++ % live_->size];
        frame = std::atomic_ref<float>(stored).load(std::memory_order_relaxed);
    }
}

void WaveForm::countRedraw(int frames) ZEPHYRA_NONBLOCKING {
    if (data_.timerCount > (kRedrawRate / frames) / kRedrawsPerSecond) {
        requestRedraw();
        data_.timerCount = 0;
    }
    ++data_.timerCount;
}

void WaveForm::write(int frames, const float* in0, const float* in1) ZEPHYRA_NONBLOCKING {
    static_assert(std::atomic_ref<float>::is_always_lock_free);
    mokSample& live = *data_.mSample.load();
    float* const stored = live.getPtr();
    const std::uint64_t size = live.size;
    const float gain = data_.normalizeGain;
    const bool jump = pendingReset_.exchange(false, std::memory_order_relaxed);
    std::uint64_t w = jump ? 0 : live.offset.load() % size;
    for (int n = 0; n < frames && live.ready; ++n) {
        // Only the second channel is halved: the balance that the live sound has always had.
        const float frame = in1 ? gain * (in0[n] + 0.5f * in1[n]) : in0[n] * gain;
        const bool finite = frame - frame == 0.0f;
        std::atomic_ref<float>(stored[w]).store(finite ? frame : 0.0f, std::memory_order_relaxed);
        w = w + 1 == size ? 0 : w + 1;
    }
    live.offset = w;
}

void drawLiveWaveForm(WaveForm* waveform, int frames,
                      const AudioBufferList& input) ZEPHYRA_NONBLOCKING {
    if (!waveform || frames < 1 || !waveform->data_.isLiveEnabled) return;
    waveform->countRedraw(frames);
    const std::uint32_t buffers = input.mNumberBuffers;
    const bool stereo = buffers >= 2 && waveform->data_.numberOfInputChannels >= 2;
    const float* const in0 = buffers >= 1 ? input.floats(0) : nullptr;
    if (in0) waveform->write(frames, in0, stereo ? input.floats(1) : nullptr);
}

} // namespace zephyra
