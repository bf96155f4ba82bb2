// SampleReference: which file a stream's sound came from, as states keep it.
#pragma once

#include <cstdint>
#include <string>

namespace zephyra {

/// Plain data.
struct SampleReference {
    std::string path;         ///< absolute; empty for a sound that came from no file
    std::string relativePath; ///< to the shared folder; empty when it is not below it
    std::string contentHash;  ///< of the file's bytes, see content_hash.h; empty while unknown
    double sampleRate = 0.0;  ///< Hz of the file
    std::string format;       ///< for people
    std::uint64_t frames = 0; ///< of the file; 0 while it is named but not read
    std::uint32_t channels = 0;
    bool operator==(const SampleReference&) const = default;
};

/// What becomes of a sound once it is loaded.
enum class SoundUse {
    play,  ///< it is heard; LIVE goes off
    await, ///< while a live or captured sound is heard, it waits behind it
};

} // namespace zephyra
