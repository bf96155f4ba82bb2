#include "platform/files/written_file.h"
#include "platform/sound/aac_codec.h"
#include "platform/sound/audio_file_encoder.h"
#include "platform/sound/audio_file_error.h"
#include "platform/text/log.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

using namespace audio_file_error;

namespace {

class AacEncoder final : public AudioFileEncoder {
public:
    AacEncoder(const AacModule& module, WrittenFile& file, Log* log)
        : module_(module), file_(file), log_(log) {}
    ~AacEncoder() override { closeWriter(); }

    OSStatus open(const StreamDescription& format);
    OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) override;
    OSStatus finish() override { return statusOf(closeWriter(), unspecified); }

private:
    int closeWriter() {
        void* writer = std::exchange(writer_, nullptr);
        return writer ? module_.closeWriter(writer, text_.data(), textSize()) : 0;
    }
    std::uint32_t textSize() const { return static_cast<std::uint32_t>(text_.size()); }
    OSStatus statusOf(int failed, OSStatus fallback) const;

    const AacModule& module_;
    WrittenFile& file_;
    Log* log_;
    void* writer_ = nullptr;
    std::array<char, 256> text_{};
};

/// What the module reported as text goes to the log. The file's error, when there was one, tells
/// more than the fallback.
OSStatus AacEncoder::statusOf(int failed, OSStatus fallback) const {
    if (failed && log_) log_->write(file_.path().filename().string() + ": " + text_.data());
    if (file_.error()) return audioFileStatus(file_.error());
    return failed ? fallback : none;
}

OSStatus AacEncoder::open(const StreamDescription& format) {
    const AacTarget target = aacTarget(file_);
    const int failed = module_.openWriter(&target, format.sampleRate, format.channelsPerFrame,
                                          &writer_, text_.data(), textSize());
    return statusOf(failed, unsupportedDataFormat);
}

OSStatus AacEncoder::write(const AudioBufferList& buffers, std::uint32_t frames) {
    std::vector<const std::int16_t*> channels(buffers.mNumberBuffers);
    for (std::uint32_t i = 0; i < buffers.mNumberBuffers; ++i)
        channels[i] = static_cast<const std::int16_t*>(buffers.mBuffers[i].mData);
    return statusOf(module_.write(writer_, channels.data(), frames, text_.data(), textSize()),
                    unspecified);
}

} // namespace

std::unique_ptr<AudioFileEncoder> makeAacEncoder(WrittenFile& file, const StreamDescription& format,
                                                 Log* log, OSStatus& status) {
    status = unsupportedDataFormat;
    if (format.formatCode != fourCC("aac ")) return nullptr;
    const Result<const AacModule*> module = aacModule();
    if (!module) {
        if (log) log->write(module.message());
        status = codecUnavailable;
        return nullptr;
    }
    auto encoder = std::make_unique<AacEncoder>(*module.value(), file, log);
    status = encoder->open(format);
    if (status != none) encoder.reset();
    return encoder;
}

} // namespace zephyra
