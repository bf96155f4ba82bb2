// AudioFileEncoder: what writes the bytes of one sound file, inside AudioFile.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/sound/stream_description.h"

#include <cstdint>
#include <memory>

namespace zephyra {

class Log;
class WrittenFile;

/// Order of calls: write as often as needed, finish once. Destroyed without finish, the file is
/// of no use. MAIN or WORKER.
class AudioFileEncoder {
public:
    virtual ~AudioFileEncoder() = default;

    /// Appends frames, one buffer per channel, of floats for a float format, else 16-bit integers.
    /// Returns 0 or a code.
    virtual OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) = 0;

    /// Completes the file, which is still to be closed. Returns 0, or a code when it could not all
    /// be written.
    virtual OSStatus finish() = 0;
};

/// The encoder for type and format, or null and the reason in status. file stands open, empty, and
/// outlives the encoder. The first makes all types but m4af.
std::unique_ptr<AudioFileEncoder> makeSndfileEncoder(WrittenFile& file, FourCharCode type,
                                                     const StreamDescription& format,
                                                     OSStatus& status);
std::unique_ptr<AudioFileEncoder> makeAacEncoder(WrittenFile& file, const StreamDescription& format,
                                                 Log* log, OSStatus& status);

} // namespace zephyra
