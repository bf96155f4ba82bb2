// SampleReference: which file a stream's sound came from, as states keep it.
#pragma once

#include "platform/lists/property_list.h"

#include <cstdint>
#include <memory>
#include <string>

namespace zephyra {

/// A sound that goes along with states, encoded once. Plain data.
struct EmbeddedSample {
    PropertyDictionary audio; ///< see kept_sound.h; empty for a sound that does not go along
    bool isOnlyCopy = false;  ///< no file is known that holds it
};

/// Plain data.
struct SampleReference {
    /// Absolute, or below the shared or the resource folder, where banks that move between machines
    /// name it; empty for a sound that came from no file.
    std::string path;
    std::string relativePath; ///< to the shared folder; empty when it is not below it
    std::string contentHash;  ///< of the file's bytes, see content_hash.h; empty while unknown
    double sampleRate = 0.0;  ///< Hz of the file
    std::string format;       ///< for people
    std::uint64_t frames = 0; ///< of the file; 0 while it is named but not read
    std::uint32_t channels = 0;
    /// Shared by all copies of the reference, never changed; null until somebody encodes the sound.
    std::shared_ptr<const EmbeddedSample> embedded = {};
    PropertyDictionary unknown = {}; ///< what a newer program wrote beside, to be handed back
    bool operator==(const SampleReference&) const = default;
};

/// What becomes of a sound once it is loaded.
enum class SoundUse {
    play,  ///< it is heard; LIVE goes off
    await, ///< while a live or captured sound is heard, it waits behind it
};

} // namespace zephyra
