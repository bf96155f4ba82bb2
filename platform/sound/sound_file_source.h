// SoundFileSource: a sound file opened for reading block by block.
#pragma once

#include "platform/sound/sound_file.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zephyra {

/// What a file's first bytes, or for a headerless file its extension, say that it is.
enum class SoundFileKind { unknown, raw, wave, aiff, caf, au, mp3, mpeg4, flac, ogg };

/// One opened file. Used by one thread at a time, MAIN or WORKER.
class SoundFileSource {
public:
    virtual ~SoundFileSource() = default;

    const SoundFileInfo& info() const noexcept { return info_; }

    /// Stores the next frames, interleaved, at most maxFrames, and answers how many; 0 at the end.
    virtual Result<std::uint32_t> read(float* interleaved, std::uint32_t maxFrames) = 0;

protected:
    SoundFileInfo info_;
};

using SoundFileSourceResult = Result<std::unique_ptr<SoundFileSource>>;

/// The kind of a file that begins with head (its first 12 bytes, or all if it is shorter). Pure.
SoundFileKind soundFileKind(const std::filesystem::path& path, std::string_view head) noexcept;

/// "WAV", "AIFF", ...; "unknown" for none.
const char* soundFileKindName(SoundFileKind kind) noexcept;

/// Opens the file, which must outlive the source, by libsndfile; raw is checked already but for its
/// bits. The reason of a failure does not name the file.
SoundFileSourceResult openSndfileSource(const FileBytes& file, SoundFileKind kind,
                                        const RawSoundFormat& raw);

/// Opens the MPEG-4 file by the AAC module. The reason of a failure does not name the file.
SoundFileSourceResult openAacSource(const std::filesystem::path& path);

} // namespace zephyra
