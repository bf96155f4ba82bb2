#include "platform/sound/audio_file_float_wav.h"

#include "platform/sound/audio_file_error.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

constexpr std::uint32_t kBytesPerSample = 4;
constexpr std::uint32_t kFramesAtOnce = 4096; // bounds the memory for the checked copy

StreamDescription floatFormat(double sampleRate, std::uint32_t channels, std::uint32_t layout) {
    const bool planar = (layout & linear_flags::isNonInterleaved) != 0;
    const std::uint32_t bytes = kBytesPerSample * (planar ? 1 : channels);
    return {sampleRate, fourCC("lpcm"),     linear_flags::isFloat | layout, bytes, 1, bytes,
            channels,   8 * kBytesPerSample};
}

Result<void> result(const std::filesystem::path& path, OSStatus status) {
    return status == audio_file_error::none ? Result<void>() : writeFailure(path, status);
}

} // namespace

Result<void> FloatWavWriter::open(const std::filesystem::path& path, double sampleRate,
                                  std::uint32_t channels) {
    samples_.reset();
    path_ = path;
    channels_ = channels;
    OSStatus status =
        AudioFileCreate(path, audio_file_type::wave,
                        floatFormat(sampleRate, channels, linear_flags::isPacked), file_);
    if (status == audio_file_error::none) status = ExtAudioFileWrapAudioFileID(file_, samples_);
    if (status == audio_file_error::none)
        status = ExtAudioFileSetProperty(
            samples_, floatFormat(sampleRate, channels, linear_flags::isNonInterleaved));
    return result(path, status);
}

Result<void> FloatWavWriter::write(const float* const* channels, std::uint32_t frames) {
    std::vector<float> finite(std::size_t{kFramesAtOnce} * channels_);
    std::vector<AudioBuffer> buffers(channels_);
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t part = std::min(frames - done, kFramesAtOnce);
        for (std::uint32_t c = 0; c < channels_; ++c) {
            float* to = finite.data() + std::size_t{kFramesAtOnce} * c;
            std::transform(channels[c] + done, channels[c] + done + part, to,
                           [](float x) { return std::isfinite(x) ? x : 0.0f; });
            buffers[c] = {1, part * kBytesPerSample, to};
        }
        const OSStatus status = ExtAudioFileWrite(samples_, part, {channels_, buffers.data()});
        if (status != audio_file_error::none) return writeFailure(path_, status);
        done += part;
    }
    return {};
}

Result<void> FloatWavWriter::close() {
    samples_.reset();
    return result(path_, AudioFileClose(std::move(file_)));
}

} // namespace zephyra
