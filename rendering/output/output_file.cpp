#include "rendering/output/output_file.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kLowest = -1.0f, kHighest = 1.0f; // writers stay a trace below the latter

} // namespace

Result<void> OutputFile::open(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    limits_ = target.format == SampleFormat::shorts;
    auto sink = openOutputSink(target, goesOn);
    if (!sink) return Failure{sink.message()};
    sink_ = std::move(sink.value());
    return {};
}

void OutputFile::measure(const float* samples, std::uint32_t frames, double& sum) {
    for (std::uint32_t n = 0; n < frames; ++n) {
        const double sample = samples[n];
        peak_ = std::max(peak_, std::abs(sample));
        squares_ += sample * sample;
        sum += sample;
        if (limits_ && (samples[n] < kLowest || samples[n] > kHighest)) ++limited_;
    }
    samples_ += frames;
}

Result<void> OutputFile::write(float* left, float* right, std::uint32_t frames) {
    measure(left, frames, leftSum_);
    measure(right, frames, rightSum_);
    float* const channels[kOutputChannels] = {left, right};
    return sink_->write(channels, frames);
}

Result<void> OutputFile::close() {
    return sink_->close();
}

double OutputFile::offset() const noexcept {
    const double sum = std::abs(leftSum_) < std::abs(rightSum_) ? rightSum_ : leftSum_;
    return samples_ == 0 ? 0.0 : 2 * sum / static_cast<double>(samples_); // of both channels
}

double OutputFile::rms() const noexcept {
    return samples_ == 0 ? 0.0 : std::sqrt(squares_ / static_cast<double>(samples_));
}

} // namespace zephyra
