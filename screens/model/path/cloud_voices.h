// CloudVoices: the stage's grains, for the voices of the path.
#pragma once

#include "screens/model/path/voices_face.h"
#include "screens/model/stage/grain_cloud.h"

#include <algorithm>

namespace zephyra {

/// cloud outlives this. Message thread.
class CloudVoices final : public SoundingVoices {
public:
    explicit CloudVoices(const GrainCloud& cloud) : cloud_(cloud) {}

    std::size_t sounding(std::span<SoundingVoice> into) const override {
        const auto grains = cloud_.sounding();
        const std::size_t count = std::min(grains.size(), into.size());
        std::transform(grains.begin(), grains.begin() + static_cast<std::ptrdiff_t>(count),
                       into.begin(), [](const ShownGrain& grain) {
                           return SoundingVoice{grain.id, grain.semitones, grain.envelope};
                       });
        return count;
    }
    std::uint64_t dropped() const override { return cloud_.dropped(); }

private:
    const GrainCloud& cloud_;
};

} // namespace zephyra
