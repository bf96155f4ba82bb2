#include "stream/normalized_sample.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <utility>

namespace zephyra {

bool isPlayable(std::span<const float> samples) noexcept {
    return std::all_of(samples.begin(), samples.end(),
                       [](float x) { return std::fabs(x) <= kMostSample; });
}

bool isPlayable(const mokSample& sound) noexcept {
    return std::isfinite(sound.sampleRate) && sound.sampleRate > 0.0f &&
           isPlayable({sound.getPtr(), static_cast<std::size_t>(sound.size)});
}

std::shared_ptr<const mokSample> normalizedCopy(const std::shared_ptr<const mokSample>& sound,
                                                float peak, float wanted) noexcept {
    const float gain = wanted / peak;
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

std::optional<PlayableSound> playableSound(std::shared_ptr<const mokSample> sound,
                                           std::optional<float> wanted) noexcept {
    if (!sound || !isPlayable(*sound)) return std::nullopt;
    const float peak = sound->getPeak();
    auto played = wanted ? normalizedCopy(sound, peak, *wanted) : sound;
    if (!played) return std::nullopt;
    return PlayableSound{std::move(sound), peak, wanted, std::move(played)};
}

} // namespace zephyra
