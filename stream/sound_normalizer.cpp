#include "stream/sound_normalizer.h"

#include "stream/normalized_sample.h"

#include <utility>

namespace zephyra {

SoundNormalizer::SoundNormalizer(Instance& instance, WaveForm& waveForm, Wanted wanted)
    : instance_(instance), waveForm_(waveForm), wanted_(std::move(wanted)),
      worker_(instance.runLoop, instance.log) {}

SoundNormalizer::~SoundNormalizer() {
    instance_.runLoop.cancel(waiting_);
}

void SoundNormalizer::turned() {
    if (waiting_ != 0) return; // takes the peak that is wanted by then
    const double wait = appliedAt_ + kLeastInterval - instance_.runLoop.now();
    if (wait <= 0.0)
        apply();
    else
        waiting_ = instance_.runLoop.performAfter(wait, [this] { apply(); });
}

void SoundNormalizer::apply() {
    instance_.runLoop.cancel(std::exchange(waiting_, 0));
    appliedAt_ = instance_.runLoop.now();
    const std::optional<float> peak = wanted_();
    const auto sound = waveForm_.fileSound();
    if (peak && sound->size > kMostFramesAtOnce) {
        // One copy after another: a peak that never rests would cancel each before it is done.
        if (!worker_.busy() || scaled_ != sound) scale(*peak);
        return;
    }
    worker_.cancel();
    if (!waveForm_.normalizeBufferWithValue(peak)) memoryIsShort();
}

void SoundNormalizer::tookSound(std::optional<float> peak) {
    worker_.cancel();
    if (wanted_() != peak) apply();
}

void SoundNormalizer::scale(float peak) {
    scaled_ = waveForm_.fileSound();
    worker_.start([this, sound = scaled_, from = waveForm_.fileSoundPeak(),
                   peak](const Worker::Cancelled&) -> RunLoop::Task {
        return
            [this, peak, scaled = normalizedCopy(sound, from, peak)] { playScaled(scaled, peak); };
    });
}

void SoundNormalizer::playScaled(std::shared_ptr<const mokSample> scaled, float peak) {
    scaled_ = nullptr;
    if (!scaled) return memoryIsShort();
    waveForm_.playFileSample(std::move(scaled));
    if (wanted_() != peak) turned();
}

void SoundNormalizer::memoryIsShort() {
    instance_.log.write(
        "Normalize: no memory for a scaled copy of the sound, which plays as before; free some "
        "or load a shorter one");
}

} // namespace zephyra
