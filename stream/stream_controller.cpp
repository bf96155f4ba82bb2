#include "stream/stream_controller.h"

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/envelope_menu.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace zephyra {

namespace {

constexpr float kEngineRate = 44100.0f;       // Hz, until prepare()
constexpr std::uint64_t kSilentFrames = 8192; // the sound of a stream that has none yet

bool isPlayable(const mokSample& sound) noexcept {
    const float* const first = sound.getPtr();
    return std::isfinite(sound.sampleRate) && sound.sampleRate > 0.0f &&
           std::all_of(first, first + sound.size, [](float x) { return std::isfinite(x); });
}

/// sound with a peak of peak: itself where nothing is to be scaled, else a copy; null when memory
/// is short.
std::shared_ptr<mokSample> normalized(const std::shared_ptr<mokSample>& sound,
                                      float peak) noexcept {
    const float gain = peak / sound->getPeak();
    if (!std::isfinite(gain) || gain == 1.0f) return sound; // silence has nothing to scale
    try {
        auto scaled = std::make_shared<mokSample>();
        if (!scaled->allocate(sound->size, sound->sampleRate)) return nullptr;
        std::copy_n(sound->getPtr(), sound->size, scaled->getPtr());
        scaled->rescale(gain);
        return scaled;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

MOK_SCRUB_GRANULATOR::MOK_SCRUB_GRANULATOR(NotificationCenter& notifications,
                                           const AudioSession& session)
    : window_(makeEnvelope(kDefaultEnvelope)),
      original_(std::make_shared<mokSample>(kSilentFrames, kEngineRate)), sound_(original_),
      waveForm_(notifications, session, retirement_),
      engine_(sound_.get(), window_.get(), mokGranulatorSF::kVoices, kEngineRate) {
    if (!window_) throw std::bad_alloc();
    waveForm_.setReplacedHandler([this] {
        if (liveInput_) handToEngine(waveForm_.liveSample());
    });
    for (const ControlRange& range : controlRanges())
        controls_[static_cast<std::size_t>(range.id)] = range.defaultValue;
    for (const ControlRange& range : controlRanges())
        if (range.id != ControlId::envelope) applyControl(range.id, range.defaultValue);
}

MOK_SCRUB_GRANULATOR::~MOK_SCRUB_GRANULATOR() = default;

void MOK_SCRUB_GRANULATOR::prepare(double sampleRate) {
    const auto engineRate = static_cast<float>(sampleRate);
    if (!isModuleSampleRate(sampleRate) || !std::isfinite(engineRate)) return;
    engine_.setSampleRate(engineRate);
    CommonState* const echo = engine_.echoModule();
    CommonState* const ring = engine_.ringModulatorModule();
    delay_stereo_forward::setSampleRate(echo, sampleRate);
    RM::setSampleRate(ring, sampleRate);
    delay_stereo_forward::reset(echo);
    RM::reset(ring);
    applyEffectControls();
}

bool MOK_SCRUB_GRANULATOR::swapEnvelope(std::size_t menuIndex) {
    auto next = makeEnvelope(menuIndex);
    if (!next) return false;
    next.swap(window_);
    engine_.setWindow(window_.get());
    retirement_.retire(std::move(next));
    return true;
}

void MOK_SCRUB_GRANULATOR::handToEngine(const mokSample* sample) {
    engine_.setSample(sample); // drops the pitch; the other two depend on the sample's length
    engine_.setPitch(control(ControlId::pitch));
    engine_.setSpeed(control(ControlId::scanning));
    engine_.setJittering(control(ControlId::jittering));
}

void MOK_SCRUB_GRANULATOR::swapSound(std::shared_ptr<mokSample> next) {
    if (next == sound_) return;
    next.swap(sound_);
    if (!liveInput_) handToEngine(sound_.get());
    retirement_.retire(std::move(next));
}

bool MOK_SCRUB_GRANULATOR::applyNormalize(float value) {
    if (liveInput_) {
        waveForm_.data().normalizeGain = value;
        return true;
    }
    auto next = normalized(original_, value);
    if (!next) return false;
    swapSound(std::move(next));
    return true;
}

bool MOK_SCRUB_GRANULATOR::loadSound(std::shared_ptr<mokSample> sound) {
    if (!sound || !isPlayable(*sound)) return false;
    auto next = normalized(sound, control(ControlId::normalize));
    if (!next) return false;
    // RENDER may see the old original, but then as sound_, which swapSound retires.
    original_ = std::move(sound);
    swapSound(std::move(next));
    return true;
}

bool MOK_SCRUB_GRANULATOR::enableLive(bool on) {
    if (on) {
        if (!waveForm_.enableLIVE(true)) return false;
        liveInput_ = true;
        handToEngine(waveForm_.liveSample());
        return setControl(ControlId::normalize, 1.0f);
    }
    if (!liveInput_) return true;
    auto next = normalized(original_, control(ControlId::normalize));
    if (!next) return false;
    waveForm_.enableLIVE(false);
    waveForm_.stopLiveTimer();
    waveForm_.setCurrentPath(waveForm_.lastSelectedPath());
    swapSound(std::move(next)); // not yet heard: live input is still on
    liveInput_ = false;
    handToEngine(sound_.get());
    return true;
}

void MOK_SCRUB_GRANULATOR::play(bool on) {
    engine_.granularOn = on;
}

bool MOK_SCRUB_GRANULATOR::setRegion(float start, float end) {
    const auto isFraction = [](float x) { return x >= 0.0f && x <= 1.0f; };
    if (!isFraction(start) || !isFraction(end)) return false;
    engine_.setEnd(end);
    engine_.setStart(start); // last, because it alone keeps the sign of the span
    return true;
}

} // namespace zephyra
