#include "platform/sound/audio_file_error.h"
#include "platform/sound/float_file_writer.h"
#include "platform/text/log.h"
#include "rendering/output/output_sink.h"
#include "stream/audio_file_writer.h"

namespace zephyra {

namespace {

constexpr std::uint32_t kBits = 16;

Result<void> writerResult(const std::filesystem::path& path, OSStatus status) {
    if (status == audio_file_error::none) return {};
    return writeFailure(path, status);
}

/// The seven types of the stream's own writer.
class ShortsFile final : public OutputSink {
public:
    Result<void> open(const OutputTarget& target) {
        path_ = target.path;
        return writerResult(
            path_, writer_.openFileForWrite_sr_channels_wordLength_type(
                       path_, target.sampleRate, kOutputChannels, kBits, target.type.code));
    }
    Result<void> write(float* const* channels, std::uint32_t frames) override {
        const std::uint32_t status = writer_.writeFloats_fromArray(frames, channels);
        if (status == EAFWrite::kNothingWritten)
            return writeFailure(path_, audio_file_error::outOfMemory);
        return writerResult(path_, static_cast<OSStatus>(status));
    }
    Result<void> close() override { return writerResult(path_, writer_.closeFile()); }

private:
    std::filesystem::path path_;
    Log unheard_{[](std::string_view) {}}; // what fails is told by return
    EAFWrite writer_{unheard_};
};

/// What that writer does not know.
class FloatFile final : public OutputSink {
public:
    Result<void> open(const OutputTarget& target) {
        using Coding = FloatFileWriter::Coding;
        const FourCharCode type = target.type.code;
        return writer_.open(target.path, target.sampleRate, kOutputChannels,
                            type == audio_file_type::flac  ? Coding::flac
                            : type == audio_file_type::ogg ? Coding::vorbis
                                                           : Coding::wav);
    }
    Result<void> write(float* const* channels, std::uint32_t frames) override {
        return writer_.write(channels, frames);
    }
    Result<void> close() override { return writer_.close(); }

private:
    FloatFileWriter writer_;
};

template <typename Sink>
OutputSinkResult opened(const OutputTarget& target) {
    auto sink = std::make_unique<Sink>();
    if (const auto done = sink->open(target); !done) return Failure{done.message()};
    return OutputSinkResult(std::move(sink));
}

} // namespace

OutputSinkResult openFileSink(const OutputTarget& target) {
    const bool isOwnType = target.type.code != audio_file_type::flac &&
                           target.type.code != audio_file_type::ogg &&
                           target.format == SampleFormat::shorts;
    return isOwnType ? opened<ShortsFile>(target) : opened<FloatFile>(target);
}

} // namespace zephyra
