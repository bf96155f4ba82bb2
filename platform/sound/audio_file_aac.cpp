#include "platform/sound/aac_codec.h"
#include "platform/sound/audio_file_encoder.h"
#include "platform/sound/audio_file_error.h"
#include "platform/text/log.h"

#include <array>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

using namespace audio_file_error;

namespace {

/// The code for what the module reported as text, which goes to the log. The operating system's
/// error, when there was one, tells more than the fallback.
OSStatus moduleStatus(Log* log, const std::filesystem::path& path, const char* text,
                      OSStatus fallback) {
    if (log) log->write(path.filename().string() + ": " + text);
    const OSStatus system = audioFileStatus({errno, std::generic_category()});
    return system == diskFull || system == permission ? system : fallback;
}

class AacEncoder final : public AudioFileEncoder {
public:
    AacEncoder(const AacModule& module, std::filesystem::path path, Log* log)
        : module_(module), path_(std::move(path)), log_(log) {}
    ~AacEncoder() override { closeWriter(); }

    OSStatus open(const StreamDescription& format);
    OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) override;
    OSStatus finish() override {
        errno = 0;
        return closeWriter() == 0 ? none : moduleStatus(log_, path_, text_.data(), unspecified);
    }

private:
    int closeWriter() {
        void* writer = std::exchange(writer_, nullptr);
        return writer ? module_.closeWriter(writer, text_.data(), textSize()) : 0;
    }
    std::uint32_t textSize() const { return static_cast<std::uint32_t>(text_.size()); }

    const AacModule& module_;
    std::filesystem::path path_;
    Log* log_;
    void* writer_ = nullptr;
    std::array<char, 256> text_{};
};

OSStatus AacEncoder::open(const StreamDescription& format) {
    errno = 0;
    const int failed = module_.openWriter(path_.c_str(), format.sampleRate, format.channelsPerFrame,
                                          &writer_, text_.data(), textSize());
    return failed ? moduleStatus(log_, path_, text_.data(), unsupportedDataFormat) : none;
}

OSStatus AacEncoder::write(const AudioBufferList& buffers, std::uint32_t frames) {
    std::vector<const std::int16_t*> channels(buffers.mNumberBuffers);
    for (std::uint32_t i = 0; i < buffers.mNumberBuffers; ++i)
        channels[i] = static_cast<const std::int16_t*>(buffers.mBuffers[i].mData);
    errno = 0;
    const int failed = module_.write(writer_, channels.data(), frames, text_.data(), textSize());
    return failed ? moduleStatus(log_, path_, text_.data(), unspecified) : none;
}

} // namespace

std::unique_ptr<AudioFileEncoder> makeAacEncoder(const std::filesystem::path& path,
                                                 const StreamDescription& format, Log* log,
                                                 OSStatus& status) {
    status = unsupportedDataFormat;
    if (format.formatCode != fourCC("aac ")) return nullptr;
    const Result<const AacModule*> module = aacModule();
    if (!module) {
        if (log) log->write(module.message());
        status = codecUnavailable;
        return nullptr;
    }
    auto encoder = std::make_unique<AacEncoder>(*module.value(), path, log);
    status = encoder->open(format);
    if (status != none) encoder.reset();
    return encoder;
}

} // namespace zephyra
