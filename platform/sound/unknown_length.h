// lengthPatch: puts the length into the header of a sound whose writer could not know it.
#pragma once

#include "platform/sound/sound_file_source.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zephyra {

/// Bytes of a file that are to be read as others. Plain data.
struct HeaderPatch {
    std::uint64_t at = 0;
    std::array<std::byte, 8> bytes = {};
    std::size_t count = 0; ///< of them; 0: nothing is to be changed

    /// Changes what of them stands in bytes that were read from offset on. Pure.
    void applyTo(std::uint64_t offset, std::span<std::byte> read) const noexcept;
};

/// Who writes into a pipe cannot go back to the header: it says 0, -1 or as much as it can, and the
/// sound goes on to the end of the file. So does a recording that was cut off. Of WAV, CAF and AU,
/// where libsndfile does not see it by itself. MAIN or WORKER.
HeaderPatch lengthPatch(const FileBytes& file, SoundFileKind kind);

} // namespace zephyra
