#include "platform/files/abandoned_folders.h"
#include "platform/files/atomic_file.h"
#include "platform/files/file_bytes.h"
#include "platform/files/file_calls.h"
#include "platform/files/unnamed_file.h"
#include "platform/sound/audio_file.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/sample_limits.h"
#include "platform/sound/wav_header.h"
#include "platform/text/odd_bytes.h"
#include "rendering/output/output_sink.h"

#include <algorithm>
#include <bit>
#include <variant>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie");

Result<void> streamResult(const fs::path& path, std::error_code error) {
    if (!error) return {};
    if (error == std::errc::operation_canceled) return Failure{interruptedText(path)};
    if (error == std::errc::broken_pipe)
        return Failure{"nobody reads from " + outputTitle(path) +
                       " any more; only a part of the sound was written"};
    return writeFailure(outputTitle(path), audioFileStatus(error));
}

/// Samples that need no second look at what stands before them: a WAV of known length in a stream,
/// or raw ones anywhere.
class PlainSink final : public OutputSink {
public:
    Result<void> open(const OutputTarget& target, const ByteStream::GoesOn& goesOn);
    Result<void> write(float* const* channels, std::uint32_t frames) override;
    Result<void> close() override;

private:
    template <typename Sample>
    Result<void> writeSamples(float* const* channels, std::uint32_t frames,
                              std::vector<Sample>& interleaved, Sample (*convert)(float&));

    fs::path path_;
    bool isFloat_ = true, isFile_ = false;
    AtomicFile file_; // of a name
    ByteStream bytes_;
    std::vector<float> floats_;
    std::vector<std::int16_t> shorts_;
};

Result<void> PlainSink::open(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    path_ = target.path;
    isFloat_ = target.format == SampleFormat::floats;
    isFile_ = !ByteStream::isNamedBy(path_);
    std::string header;
    if (!target.type.isRaw()) {
        header = wavHeader(isFloat_ ? WavSamples::floats : WavSamples::shorts, target.sampleRate,
                           kOutputChannels, target.frames);
        if (header.empty())
            return writeFailure(outputTitle(path_), audio_file_error::sizeBeyond32Bits);
    }
    std::error_code error;
    if (isFile_) error = file_.open(path_);
    if (isFile_ && !error) error = file_calls::makeFile(file_.path());
    if (!error) error = bytes_.open(isFile_ ? file_.path() : path_, goesOn);
    if (!error) error = bytes_.write(std::as_bytes(std::span(header)));
    return streamResult(path_, error);
}

template <typename Sample>
Result<void> PlainSink::writeSamples(float* const* channels, std::uint32_t frames,
                                     std::vector<Sample>& interleaved, Sample (*convert)(float&)) {
    interleaved.resize(std::size_t{frames} * kOutputChannels);
    for (std::size_t c = 0; c < kOutputChannels; ++c)
        for (std::size_t i = 0; i < frames; ++i)
            interleaved[i * kOutputChannels + c] = convert(channels[c][i]);
    return streamResult(path_, bytes_.write(std::as_bytes(std::span(interleaved))));
}

Result<void> PlainSink::write(float* const* channels, std::uint32_t frames) {
    if (isFloat_)
        return writeSamples<float>(channels, frames, floats_,
                                   [](float& sample) { return finiteSample(sample); });
    return writeSamples<std::int16_t>(channels, frames, shorts_, [](float& sample) {
        return sixteenBits(sample = limitedSample(sample));
    });
}

Result<void> PlainSink::close() {
    std::error_code error = bytes_.close();
    if (!error && isFile_) error = file_.commit();
    return streamResult(path_, error);
}

/// A type that is written here and there, first into a file of its own.
class CopiedSink final : public OutputSink {
public:
    ~CopiedSink() override { removeFolder(); }
    Result<void> open(const OutputTarget& target, const ByteStream::GoesOn& goesOn);
    Result<void> write(float* const* channels, std::uint32_t frames) override {
        return told(file_->write(channels, frames));
    }
    Result<void> close() override;

private:
    Failure failure(std::string message) const;
    Result<void> told(Result<void> done) const {
        return done ? done : Result<void>(failure(done.message()));
    }
    Result<void> copy();
    void removeFolder() {
        file_.reset();
        if (!folder_.empty()) removePrivateFolder(folder_);
        folder_.clear();
    }

    fs::path path_;
    ByteStream stream_;
    fs::path folder_, copied_;
    std::unique_ptr<OutputSink> file_;
};

/// Nobody knows the copy's own name.
Failure CopiedSink::failure(std::string message) const {
    const std::string name = shownFile(copied_);
    if (const auto at = message.find(name); at != std::string::npos)
        message.replace(at, name.size(),
                        outputTitle(path_) + " by way of " + temporaryFolder().string());
    return {std::move(message)};
}

Result<void> CopiedSink::open(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    path_ = target.path;
    if (const auto error = stream_.open(path_, goesOn)) return streamResult(path_, error);
    removeAbandonedFolders(temporaryFolder());
    std::string made = (copied_ = temporaryFolder() / kPrivateFolder).string();
    if (const std::error_code error = file_calls::makeUniqueFolder(made))
        return failure(writeFailure(copied_, audioFileStatus(error)).message);
    folder_ = made;
    OutputTarget copied = target;
    copied.path = copied_ = folder_ / (std::string("sound.") + target.type.name);
    auto file = openFileSink(copied);
    if (!file) return failure(file.message());
    file_ = std::move(file.value());
    return {};
}

Result<void> CopiedSink::copy() {
    const auto file = FileBytes::open(copied_);
    if (const auto* const refused = std::get_if<NotOpened>(&file))
        return failure(writeFailure(copied_, audioFileStatus(refused->error)).message);
    const auto& bytes = std::get<FileBytes>(file);
    std::error_code error;
    std::vector<std::byte> block(65536);
    for (std::uint64_t done = 0; !error && done < bytes.size();) {
        const std::size_t count = bytes.readAt(done, block, error);
        if (!error && count == 0) error = std::make_error_code(std::errc::io_error);
        if (!error) error = stream_.write(std::span(block).first(count));
        done += count;
    }
    if (!error) error = stream_.close();
    return streamResult(path_, error);
}

Result<void> CopiedSink::close() {
    Result<void> done = told(file_->close());
    if (done) done = copy();
    removeFolder();
    return done;
}

template <typename Sink>
OutputSinkResult opened(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    auto sink = std::make_unique<Sink>();
    if (const auto done = sink->open(target, goesOn); !done) return Failure{done.message()};
    return OutputSinkResult(std::move(sink));
}

} // namespace

OutputSinkResult openStreamSink(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    const bool isPlain = target.type.isRaw() || target.type.code == audio_file_type::wave;
    return isPlain ? opened<PlainSink>(target, goesOn) : opened<CopiedSink>(target, goesOn);
}

} // namespace zephyra
