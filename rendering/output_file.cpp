#include "rendering/output_file.h"

#include "platform/sound/audio_file_error.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr std::uint32_t kChannels = 2;
constexpr std::uint32_t kBits = 16;
constexpr float kLowest = -1.0f, kHighest = 1.0f; // the writer stays a trace below the latter

Result<void> writerResult(const std::filesystem::path& path, OSStatus status) {
    if (status == audio_file_error::none) return {};
    return writeFailure(path, status);
}

} // namespace

Result<void> OutputFile::open(const std::filesystem::path& path, const OutputType& type,
                              SampleFormat format, double sampleRate) {
    path_ = path;
    format_ = format;
    if (format == SampleFormat::floats) return floats_.open(path, sampleRate, kChannels);
    return writerResult(path, shorts_.openFileForWrite_sr_channels_wordLength_type(
                                  path, sampleRate, kChannels, kBits, type.code));
}

void OutputFile::measure(const float* samples, std::uint32_t frames, double& sum) {
    for (std::uint32_t n = 0; n < frames; ++n) {
        const double sample = samples[n];
        peak_ = std::max(peak_, std::abs(sample));
        squares_ += sample * sample;
        sum += sample;
        if (format_ == SampleFormat::shorts && (samples[n] < kLowest || samples[n] > kHighest))
            ++limited_;
    }
    samples_ += frames;
}

Result<void> OutputFile::write(float* left, float* right, std::uint32_t frames) {
    measure(left, frames, leftSum_);
    measure(right, frames, rightSum_);
    float* const channels[kChannels] = {left, right};
    if (format_ == SampleFormat::floats) return floats_.write(channels, frames);
    const std::uint32_t status = shorts_.writeFloats_fromArray(frames, channels);
    if (status == EAFWrite::kNothingWritten)
        return writeFailure(path_, audio_file_error::outOfMemory);
    return writerResult(path_, static_cast<OSStatus>(status));
}

Result<void> OutputFile::close() {
    if (format_ == SampleFormat::floats) return floats_.close();
    return writerResult(path_, shorts_.closeFile());
}

double OutputFile::offset() const noexcept {
    const double sum = std::abs(leftSum_) < std::abs(rightSum_) ? rightSum_ : leftSum_;
    return samples_ == 0 ? 0.0 : 2 * sum / static_cast<double>(samples_); // of both channels
}

double OutputFile::rms() const noexcept {
    return samples_ == 0 ? 0.0 : std::sqrt(squares_ / static_cast<double>(samples_));
}

} // namespace zephyra
