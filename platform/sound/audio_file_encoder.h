// AudioFileEncoder: what writes the bytes of one sound file, inside AudioFile.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/sound/stream_description.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace zephyra {

class Log;

/// Order of calls: write as often as needed, finish once. Destroyed without finish, the file is
/// merely closed. MAIN or WORKER.
class AudioFileEncoder {
public:
    virtual ~AudioFileEncoder() = default;

    /// Appends frames, one buffer per channel, of floats for a float format, else 16-bit integers.
    /// Returns 0 or a code.
    virtual OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) = 0;

    /// Completes and closes the file. Returns 0, or a code when not all of it reached the disk.
    virtual OSStatus finish() = 0;
};

/// The encoder for type and format, or null and the reason in status. path is created or emptied.
/// The first makes all types but m4af.
std::unique_ptr<AudioFileEncoder> makeSndfileEncoder(const std::filesystem::path& path,
                                                     FourCharCode type,
                                                     const StreamDescription& format,
                                                     OSStatus& status);
std::unique_ptr<AudioFileEncoder> makeAacEncoder(const std::filesystem::path& path,
                                                 const StreamDescription& format, Log* log,
                                                 OSStatus& status);

} // namespace zephyra
