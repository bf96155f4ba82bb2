// AacModule: what the loadable AAC module offers, as a plain C interface.
//
// The libraries behind it bring over a hundred shared objects, so nothing links them: the module is
// opened at the first m4a that is met and stays open.
#pragma once

#include "platform/text/result.h"

#include <cstdint>

namespace zephyra {

/// Version of the structures below; the loader refuses a module built against another.
inline constexpr int kAacModuleVersion = 3;

/// The audio track that a reader found.
struct AacTrack {
    double sampleRate = 0.0; ///< Hz, of the samples that read() gives
    std::uint32_t channels = 0;
    /// Length without the encoder's delay and padding, as the file claims it (not checked against
    /// what is there); 0 when the file does not say.
    std::uint64_t claimedFrames = 0;
    /// "AAC" or "Apple Lossless".
    const char* codecName = "";
};

/// Where a writer's bytes go. Both functions answer 0 or, after a failure, an errno.
struct AacTarget {
    void* self = nullptr; ///< handed to both
    int (*write)(void* self, const std::uint8_t* bytes, std::uint32_t count) = nullptr;
    int (*seek)(void* self, std::uint64_t position) = nullptr; ///< from the beginning
};

/// Every function is MAIN or WORKER, never RENDER; one reader or writer belongs to one thread at a
/// time. Functions return 0 on success; otherwise error holds a reason of at most errorSize bytes
/// with the closing zero, without the file's name. Paths are in the file system's own encoding.
struct AacModule {
    int version;

    /// Opens the first AAC or Apple Lossless track of the MPEG-4 file at path. The reader must be
    /// closed.
    int (*openReader)(const char* path, AacTrack* track, void** reader, char* error,
                      std::uint32_t errorSize);
    /// Decodes the next samples, interleaved, at most maxFrames frames; *frames is what came, 0 at
    /// the end. The encoder's delay and padding are left out. Broken packets are skipped.
    int (*read)(void* reader, float* interleaved, std::uint32_t maxFrames, std::uint32_t* frames,
                char* error, std::uint32_t errorSize);
    /// Null is fine.
    void (*closeReader)(void* reader);

    /// Begins an m4a file with an AAC low-complexity track in target, which is empty. The rate is
    /// one that AAC knows (8000 to 96000 Hz), the channels 1 to 8; anything else is a failure.
    int (*openWriter)(const AacTarget* target, double sampleRate, std::uint32_t channels,
                      void** writer, char* error, std::uint32_t errorSize);
    /// Appends frames of 16-bit samples, one array per channel.
    int (*write)(void* writer, const std::int16_t* const* channels, std::uint32_t frames,
                 char* error, std::uint32_t errorSize);
    /// Flushes, writes the index and closes; the writer is gone afterwards also on failure.
    int (*closeWriter)(void* writer, char* error, std::uint32_t errorSize);
};

class WrittenFile;

/// Into file, at its position, which outlives the writer. MAIN or WORKER.
AacTarget aacTarget(WrittenFile& file) noexcept;

/// The module, loaded at the first call. Looked for in the folder named by the environment variable
/// ZEPHYRA_MODULES, then beside the program or library this code is in, then in ../lib/zephyra from
/// there, then where it was built.
/// Fails with a line that says where it was looked for. MAIN or WORKER.
Result<const AacModule*> aacModule();

} // namespace zephyra
