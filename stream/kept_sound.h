// keptSound: a mono sound as states keep it, as FLAC in a dictionary.
#pragma once

#include "platform/lists/property_reader.h"
#include "platform/sound/flac_codec.h"
#include "platform/text/result.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zephyra {

/// "FLAC", "Scale", "SampleRate" and "Frames", exact to 24 bits of the loudest frame, so that a
/// sound of 24 bits or less, and one that was kept before, comes back as it is. rate in Hz. Fails
/// for no frames, for frames that are not finite, and when memory is short. All but RENDER.
Result<PropertyDictionary> keptSound(std::vector<float> frames, double rate);

struct ReadSound {
    std::vector<float> frames;
    double sampleRate = 0.0; ///< Hz
    /// What the state says that there should be.
    std::optional<std::int64_t> expectedFrames = {};
};

/// Nothing, after a finding of the reader's, for what is no sound of at most mostFrames. ahead,
/// which may be null, is of these data and used up. All but RENDER.
std::optional<ReadSound> readKeptSound(PropertyReader& reader, std::uint64_t mostFrames,
                                       Result<DecodedFlac>* ahead = nullptr);

} // namespace zephyra
