#include "platform/sound/audio_file.h"

#include "platform/files/atomic_file.h"
#include "platform/files/written_file.h"
#include "platform/sound/audio_file_encoder.h"
#include "platform/sound/audio_file_error.h"

#include <utility>

namespace zephyra {

using namespace audio_file_error;

class AudioFile {
public:
    AtomicFile target;
    WrittenFile file; // closed before target removes it
    StreamDescription format;
    std::unique_ptr<AudioFileEncoder> encoder;
    OSStatus failed = none; // the first failure; nothing is written after it
};

class ExtAudioFile {
public:
    AudioFile* file = nullptr;
    bool clientFormatSet = false;
};

void AudioFileDeleter::operator()(AudioFile* file) const noexcept {
    delete file;
}

void ExtAudioFileDeleter::operator()(ExtAudioFile* file) const noexcept {
    delete file;
}

namespace {

/// The one client format that a file format takes.
StreamDescription clientFormatFor(const StreamDescription& format) {
    const bool isFloat =
        format.formatCode == fourCC("vorb") ||
        (format.formatCode == fourCC("lpcm") && (format.formatFlags & linear_flags::isFloat) != 0);
    StreamDescription client = format;
    client.formatCode = fourCC("lpcm");
    client.formatFlags = (isFloat ? linear_flags::isFloat : linear_flags::isSignedInteger) |
                         linear_flags::isNonInterleaved;
    client.bitsPerChannel = isFloat ? 32 : 16;
    client.framesPerPacket = 1;
    client.bytesPerFrame = client.bytesPerPacket = client.bitsPerChannel / 8;
    return client;
}

/// One buffer per channel, each long enough.
bool holds(const AudioBufferList& buffers, std::uint32_t frames, const StreamDescription& client) {
    if (buffers.mNumberBuffers != client.channelsPerFrame) return false;
    const std::uint64_t bytes = std::uint64_t{frames} * client.bytesPerFrame;
    for (std::uint32_t i = 0; i < buffers.mNumberBuffers; ++i)
        if (!buffers.mBuffers[i].mData || buffers.mBuffers[i].mDataByteSize < bytes) return false;
    return true;
}

} // namespace

OSStatus AudioFileCreate(const std::filesystem::path& path, FourCharCode type,
                         const StreamDescription& format, AudioFileID& file, Log* log) {
    file.reset();
    AudioFileID made(new AudioFile);
    if (const std::error_code error = made->target.open(path)) return audioFileStatus(error);
    if (const std::error_code error = made->file.open(made->target.path()))
        return audioFileStatus(error);
    OSStatus status = none;
    made->format = format;
    made->encoder = type == audio_file_type::m4af
                        ? makeAacEncoder(made->file, format, log, status)
                        : makeSndfileEncoder(made->file, type, format, status);
    if (status == none) file = std::move(made);
    return status;
}

OSStatus ExtAudioFileWrapAudioFileID(const AudioFileID& file, ExtAudioFileRef& wrapped) {
    wrapped.reset();
    if (!file) return notOpen;
    wrapped.reset(new ExtAudioFile{file.get()});
    return none;
}

OSStatus ExtAudioFileSetProperty(const ExtAudioFileRef& file, const StreamDescription& client) {
    if (!file) return notOpen;
    file->clientFormatSet = client == clientFormatFor(file->file->format);
    return file->clientFormatSet ? none : unsupportedDataFormat;
}

OSStatus ExtAudioFileWrite(const ExtAudioFileRef& file, std::uint32_t frames,
                           const AudioBufferList& buffers) {
    if (!file) return notOpen;
    if (!file->clientFormatSet) return invalidOperationOrder;
    AudioFile& target = *file->file;
    if (!holds(buffers, frames, clientFormatFor(target.format))) return badParameter;
    if (target.failed == none) target.failed = target.encoder->write(buffers, frames);
    return target.failed;
}

OSStatus AudioFileOptimize(const AudioFileID& file) {
    return file ? file->failed : notOpen;
}

OSStatus ExtAudioFileDispose(ExtAudioFileRef file) {
    return file ? none : notOpen;
}

OSStatus AudioFileClose(AudioFileID file) {
    if (!file) return notOpen;
    if (file->failed == none) file->failed = file->encoder->finish();
    if (file->failed == none) file->failed = audioFileStatus(file->file.close());
    return file->failed == none ? audioFileStatus(file->target.commit()) : file->failed;
}

} // namespace zephyra
