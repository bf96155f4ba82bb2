#include "stream/live_buffer.h"

#include "stream/normalized_sample.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <new>

namespace zephyra {

namespace {

constexpr float kFirstRate = 44100.0f;        // Hz, until the first set-up
constexpr std::uint64_t kSilentFrames = 8192; // the sound of a stream that has none yet

// About six redraws a second for any block length, counted at this rate whatever the real one.
constexpr double kRedrawRate = 44100.0; // Hz
constexpr double kRedrawsPerSecond = 6.0;

constexpr const char* kNoPath = "NULL"; // the current path while live input is shown
constexpr const char* kLiveTitle = "Live Input from Matrix Channels";
constexpr const char* kLiveShortTitle = "Live";

/// A silent sample of frames at rate; null when memory is short.
template <typename Sample>
std::shared_ptr<Sample> makeSilence(std::uint64_t frames, float rate) noexcept {
    try {
        auto sample = std::make_shared<Sample>();
        return sample->allocate(frames, rate) ? sample : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// samples: at most as many as live holds, which has heard nothing.
void fill(LiveSample& live, std::span<const float> samples) {
    std::copy(samples.begin(), samples.end(), live.getPtr());
    live.offset = samples.size() % live.size;
    live.heard = samples.size();
}

bool isRate(float rate) noexcept {
    return std::isfinite(rate) && rate > 0.0f;
}

} // namespace

WaveForm::WaveForm(NotificationCenter& notifications, const AudioSession& session, Log& log,
                   Retirement& retirement)
    : notifications_(notifications), session_(session), log_(log), retirement_(retirement),
      original_(makeSilence<mokSample>(kSilentFrames, kFirstRate)), file_(original_),
      live_(makeSilence<LiveSample>(kLiveFrames, kFirstRate)) {
    if (!original_ || !live_) throw std::bad_alloc();
    data_.mSample = live_.get();
}

WaveForm::~WaveForm() = default;

// --- The current sound ---

const mokSample* WaveForm::mSample() const noexcept {
    return liveIsCurrent_ ? liveSample() : file_.get();
}

double WaveForm::getFileDuration() const noexcept {
    const mokSample& sound = *mSample();
    return static_cast<double>(sound.size) / double{sound.sampleRate};
}

void WaveForm::makeLiveCurrent() {
    if (std::exchange(liveIsCurrent_, true)) return;
    showLive();
    takeHeld(frozenCopy());
    tellReplaced();
}

void WaveForm::makeFileCurrent() {
    if (!std::exchange(liveIsCurrent_, false)) return;
    setCurrentPath(lastSelectedPath_);
    const auto held = takeHeld(nullptr);
    tellReplaced();
    if (held) retire(held);
}

void WaveForm::tellReplaced() {
    if (replaced_) replaced_();
}

// --- The file sample ---

void WaveForm::setFileSample(PlayableSound sound) {
    auto original = std::exchange(original_, std::move(sound.sound));
    originalPeak_ = sound.peak;
    hasFile_ = true;
    swapFile(std::move(sound.played));
    retire(std::move(original));
}

bool WaveForm::normalizeBufferWithValue(std::optional<float> peak) {
    auto played = peak ? normalizedCopy(original_, originalPeak_, *peak) : original_;
    if (!played) return false;
    swapFile(std::move(played));
    return true;
}

void WaveForm::swapFile(std::shared_ptr<const mokSample> next) {
    if (next == file_) return;
    next.swap(file_);
    if (!liveIsCurrent_) tellReplaced();
    retire(std::move(next));
}

void WaveForm::retire(std::shared_ptr<const mokSample> sound) {
    const std::size_t bytes = static_cast<std::size_t>(sound->size) * sizeof(float);
    retirement_.retire(std::move(sound), bytes);
}

// --- Held live sound ---

/// What is to be held now; null for nothing.
std::shared_ptr<const LiveSample> WaveForm::frozenCopy() const {
    if (!isFrozen_ || !liveIsCurrent_ || live_->heard == 0) return nullptr;
    auto copy = heldCopy(*live_);
    if (!copy)
        log_.write("Freeze: no memory to hold what LIVE heard, which is followed on; free some");
    return copy;
}

/// What was held before.
std::shared_ptr<const LiveSample> WaveForm::takeHeld(std::shared_ptr<const LiveSample> next) {
    next.swap(held_);
    if (held_) {
        ++holds_;
        heldReplacements_ = liveReplacements_;
    }
    return next;
}

void WaveForm::hold() {
    auto next = frozenCopy();
    if (!next && !held_) return;
    const auto before = takeHeld(std::move(next));
    tellReplaced();
    requestRedraw();
    if (before) retire(before);
}

void WaveForm::freeze(bool on) {
    isFrozen_ = on;
    hold();
}

// --- The live sample ---

void WaveForm::swapLive(std::shared_ptr<LiveSample> next) {
    next.swap(live_);
    ++liveReplacements_;
    brought_.clear();
    pendingReset_.store(false, std::memory_order_relaxed); // it was meant for the old buffer
    data_.mSample.exchange(live_.get());
    if (liveIsCurrent_ && !held_) tellReplaced();
    retire(std::move(next));
}

bool WaveForm::initLiveBuffer_andSamplingRate(std::uint64_t frames, double rate) {
    const auto sampleRate = static_cast<float>(rate);
    auto fresh = isRate(sampleRate) ? makeSilence<LiveSample>(frames, sampleRate) : nullptr;
    if (!fresh) return false;
    swapLive(std::move(fresh));
    return true;
}

bool WaveForm::clearBuffer() {
    return initLiveBuffer_andSamplingRate(live_->size, double{live_->sampleRate});
}

bool WaveForm::startAnew() {
    if (!data_.isLiveEnabled) return true;
    const std::vector<float> brought = brought_;
    if (brought.empty()) return clearBuffer();
    auto filled = makeSilence<LiveSample>(live_->size, live_->sampleRate);
    if (!filled) return false;
    fill(*filled, brought);
    swapLive(std::move(filled));
    brought_ = brought;
    return true;
}

bool WaveForm::setLiveContent(std::span<const float> samples, double rate) {
    const auto sampleRate = static_cast<float>(rate);
    if (samples.empty() || !isRate(sampleRate)) return false;
    auto filled = makeSilence<LiveSample>(kLiveFrames, sampleRate);
    if (!filled) return false;
    samples = samples.last(std::min<std::size_t>(samples.size(), kLiveFrames));
    std::vector<float> brought(samples.begin(), samples.end());
    fill(*filled, samples);
    sessionRate_ = rate;
    swapLive(std::move(filled));
    brought_ = std::move(brought);
    hold(); // frozen, it is this sound that stands still
    return true;
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
    showLive();
    startLiveTimer();
    notifications_.post("refreshParameters");
    return true;
}

bool WaveForm::followSession() {
    const double rate = session_.sampleRate;
    if (!_enableLIVE || rate == sessionRate_) return true;
    if (!initLiveBuffer_andSamplingRate(kLiveFrames, rate)) {
        log_.write(
            "LIVE goes on at the rate before: no buffer at that of the audio session; free some "
            "memory, or set a rate above 0 Hz");
        return false;
    }
    sessionRate_ = rate;
    return true;
}

std::uint64_t WaveForm::getWriteLiveIndex() const noexcept {
    if (held_) return held_->offset;
    const bool atStart = !_enableLIVE || pendingReset_.load(std::memory_order_relaxed);
    return atStart ? 0 : live_->offset.load();
}

void WaveForm::stopLiveTimer() noexcept {
    data_.isLiveEnabled = false;
    requestRedraw();
}

// --- The display ---

void WaveForm::setCurrentPath(std::string path) {
    currentPath_ = std::move(path);
    const std::filesystem::path file(currentPath_);
    title_ = file.filename().string();
    shortTitle_ = file.stem().string();
}

void WaveForm::showLive() {
    if (currentPath_ != kNoPath) lastSelectedPath_ = std::exchange(currentPath_, kNoPath);
    title_ = kLiveTitle;
    shortTitle_ = kLiveShortTitle;
}

// --- RENDER ---

void WaveForm::countRedraw(int frames) ZEPHYRA_NONBLOCKING {
    if (data_.timerCount > (kRedrawRate / frames) / kRedrawsPerSecond) {
        requestRedraw();
        data_.timerCount = 0;
    }
    ++data_.timerCount;
}

void WaveForm::write(int frames, const float* in0, const float* in1) ZEPHYRA_NONBLOCKING {
    static_assert(std::atomic_ref<float>::is_always_lock_free);
    LiveSample& live = *data_.mSample.load();
    float* const stored = live.getPtr();
    const std::uint64_t size = live.size;
    const float gain = data_.normalizeGain;
    const bool jump = pendingReset_.exchange(false, std::memory_order_relaxed);
    std::uint64_t w = jump ? 0 : live.offset.load() % size;
    std::uint64_t heard = live.heard, silent = jump ? 0 : live.silent;
    for (int n = 0; n < frames && live.ready; ++n) {
        // The second channel at half level: presets of live sounds are set up for this balance, and
        // two equal channels come only 3.5 dB above one.
        const float frame = in1 ? gain * (in0[n] + 0.5f * in1[n]) : in0[n] * gain;
        const float written = frame - frame == 0.0f ? frame : 0.0f; // what is not finite is not
        std::atomic_ref<float>(stored[w]).store(written, std::memory_order_relaxed);
        silent = written == 0.0f ? silent + 1 : 0;
        heard = std::max(heard, ++w);
        if (w == size) w = 0;
    }
    live.heard = heard;
    live.silent = silent;
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
