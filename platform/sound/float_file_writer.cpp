#include "platform/sound/float_file_writer.h"

#include "platform/sound/audio_file_error.h"
#include "platform/sound/sample_limits.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr std::uint32_t kFramesAtOnce = 4096; // bounds the memory for the converted copy

StreamDescription linearFormat(double sampleRate, std::uint32_t channels, std::uint32_t flags,
                               std::uint32_t bits) {
    const bool planar = (flags & linear_flags::isNonInterleaved) != 0;
    const std::uint32_t bytes = bits / 8 * (planar ? 1 : channels);
    return {sampleRate, fourCC("lpcm"), flags, bytes, 1, bytes, channels, bits};
}

using Coding = FloatFileWriter::Coding;

FourCharCode typeOf(Coding coding) {
    if (coding == Coding::wav) return audio_file_type::wave;
    return coding == Coding::flac ? audio_file_type::flac : audio_file_type::ogg;
}

StreamDescription fileFormat(Coding coding, double sampleRate, std::uint32_t channels) {
    if (coding == Coding::wav)
        return linearFormat(sampleRate, channels, linear_flags::isFloat | linear_flags::isPacked,
                            32);
    if (coding == Coding::flac) return {sampleRate, fourCC("flac"), 0, 0, 0, 0, channels, 16};
    return {sampleRate, fourCC("vorb"), 0, 0, 0, 0, channels, 0};
}

StreamDescription clientFormat(Coding coding, double sampleRate, std::uint32_t channels) {
    const bool isShort = coding == Coding::flac;
    return linearFormat(sampleRate, channels,
                        (isShort ? linear_flags::isSignedInteger : linear_flags::isFloat) |
                            linear_flags::isNonInterleaved,
                        isShort ? 16 : 32);
}

/// A failure that says more than the code does.
Failure wrongRate(const std::filesystem::path& path, Coding coding, double sampleRate) {
    return {"cannot write " + shownFile(path) + ": " +
            (coding == Coding::flac
                 ? "FLAC holds rates to 65535 Hz and multiples of 10 Hz to 655350"
                 : "Ogg Vorbis holds rates from 8000 to 200000 Hz") +
            ", not " + formatNumber(sampleRate) + "; choose another rate or type"};
}

Result<void> result(const std::filesystem::path& path, OSStatus status) {
    return status == audio_file_error::none ? Result<void>() : writeFailure(path, status);
}

} // namespace

Result<void> FloatFileWriter::open(const std::filesystem::path& path, double sampleRate,
                                   std::uint32_t channels, Coding coding) {
    samples_.reset();
    path_ = path;
    channels_ = channels;
    coding_ = coding;
    OSStatus status =
        AudioFileCreate(path, typeOf(coding), fileFormat(coding, sampleRate, channels), file_);
    if (status == audio_file_error::unsupportedDataFormat && coding != Coding::wav)
        return wrongRate(path, coding, sampleRate);
    if (status == audio_file_error::none) status = ExtAudioFileWrapAudioFileID(file_, samples_);
    if (status == audio_file_error::none)
        status = ExtAudioFileSetProperty(samples_, clientFormat(coding, sampleRate, channels));
    return result(path, status);
}

template <typename Sample, typename Convert>
OSStatus FloatFileWriter::writePart(const float* const* channels, std::uint32_t from,
                                    std::uint32_t frames, std::vector<Sample>& converted,
                                    Convert convert) {
    converted.resize(std::size_t{kFramesAtOnce} * channels_);
    std::vector<AudioBuffer> buffers(channels_);
    for (std::uint32_t c = 0; c < channels_; ++c) {
        Sample* const to = converted.data() + std::size_t{kFramesAtOnce} * c;
        std::transform(channels[c] + from, channels[c] + from + frames, to, convert);
        buffers[c] = {1, frames * static_cast<std::uint32_t>(sizeof(Sample)), to};
    }
    return ExtAudioFileWrite(samples_, frames, {channels_, buffers.data()});
}

Result<void> FloatFileWriter::write(const float* const* channels, std::uint32_t frames) {
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t part = std::min(frames - done, kFramesAtOnce);
        OSStatus status = audio_file_error::none;
        if (coding_ == Coding::flac)
            status = writePart(channels, done, part, shorts_,
                               [](float x) { return sixteenBits(limitedSample(x)); });
        else
            status = writePart(channels, done, part, floats_,
                               coding_ == Coding::wav ? finiteSample : limitedSample);
        if (status != audio_file_error::none) return writeFailure(path_, status);
        done += part;
    }
    return {};
}

Result<void> FloatFileWriter::close() {
    samples_.reset();
    return result(path_, AudioFileClose(std::move(file_)));
}

} // namespace zephyra
