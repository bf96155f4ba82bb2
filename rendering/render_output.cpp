#include "rendering/render_output.h"

#include "platform/files/file_calls.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kFramesAtOnce = 65536; // that are read back
constexpr std::uint64_t kFrameBytes = kOutputChannels * sizeof(float);

} // namespace

Result<void> RenderOutput::open(const RenderRequest& request, const RenderPlan& plan,
                                ByteStream::GoesOn goesOn) {
    path_ = request.output;
    type_ = request.type;
    asked_ = request.gain;
    goesOn_ = std::move(goesOn);
    if (request.ending == RenderEnding::faded) fade_.emplace(plan.frames, plan.sampleRate);
    const bool waits = asked_ && asked_->waits();
    if (asked_ && !waits) gain_ = gainFactor(*asked_, {}, type_);
    if (waits) { // first: a reader is told nothing of a sound that cannot come
        keptFolder_ = folderToKeepIn();
        meter_.emplace(kOutputChannels, plan.sampleRate);
        if (const std::error_code error = kept_.emplace().open(keptFolder_))
            return keptFailure(error);
    }
    return file_.open({.path = path_,
                       .type = type_,
                       .format = request.format,
                       .sampleRate = plan.sampleRate,
                       .frames = plan.frames},
                      goesOn_);
}

Failure RenderOutput::keptFailure(std::error_code error) const {
    using enum OutputGain::Aim;
    const std::string option = asked_->aim == peak       ? "--normalize"
                               : asked_->aim == loudness ? "--loudness"
                                                         : "--gain auto";
    return {option + " keeps the whole sound in " + keptFolder_.string() + " until its " +
            (asked_->aim == loudness ? "loudness" : "peak") + " is known, and cannot (" +
            error.message() + "); make room there, or name a gain"};
}

/// On the disk that the file goes to, where room is expected.
fs::path RenderOutput::folderToKeepIn() const {
    if (ByteStream::isNamedBy(path_)) return temporaryFolder();
    std::error_code ignored; // a wrong name shows when the file is opened
    return file_calls::resolved(path_, ignored).parent_path();
}

Result<void> RenderOutput::keep(const float* left, const float* right, std::uint32_t frames) {
    interleaved_.clear();
    heard_.clear();
    for (std::uint32_t n = 0; n < frames; ++n)
        for (const float sample : {left[n], right[n]}) {
            interleaved_.push_back(sample);
            heard_.push_back(std::isfinite(sample) ? sample : 0.0f);
        }
    meter_->add(heard_.data(), frames);
    const auto error = kept_->write(std::as_bytes(std::span(interleaved_)));
    return error ? keptFailure(error) : Result<void>();
}

Result<void> RenderOutput::passOn(float* left, float* right, std::uint32_t frames) {
    if (gain_ != 1)
        for (float* const channel : {left, right})
            std::transform(channel, channel + frames, channel,
                           [this](float sample) { return static_cast<float>(sample * gain_); });
    if (listener_) listener_(left, right, frames);
    return file_.write(left, right, frames);
}

Result<void> RenderOutput::write(float* left, float* right, std::uint32_t frames) {
    if (fade_) fade_->apply(left, right, frames_, frames);
    frames_ += frames;
    return kept_ ? keep(left, right, frames) : passOn(left, right, frames);
}

Result<std::uint32_t> RenderOutput::readKept(std::uint64_t from, std::span<float> left,
                                             std::span<float> right) {
    const std::uint64_t count = std::min<std::uint64_t>(left.size(), frames_ - from);
    interleaved_.resize(count * kOutputChannels);
    std::error_code error;
    const auto bytes = std::as_writable_bytes(std::span(interleaved_));
    const std::size_t got = kept_->readAt(from * kFrameBytes, bytes, error);
    if (!error && got < bytes.size()) error = std::make_error_code(std::errc::io_error);
    if (error) return keptFailure(error);
    for (std::size_t n = 0; n < count; ++n) {
        left[n] = interleaved_[n * kOutputChannels];
        right[n] = interleaved_[n * kOutputChannels + 1];
    }
    return static_cast<std::uint32_t>(count);
}

Result<void> RenderOutput::finish(const std::function<void(double share)>& told) {
    if (!kept_) return {};
    gain_ = gainFactor(*asked_, meter_->measure(), type_);
    std::vector<float> left(kFramesAtOnce), right(kFramesAtOnce);
    for (std::uint64_t done = 0; done < frames_;) {
        if (goesOn_ && !goesOn_()) return Failure{interruptedText(path_)};
        const auto count = readKept(done, left, right);
        if (!count) return Failure{count.message()};
        const auto passed = passOn(left.data(), right.data(), count.value());
        if (!passed) return passed;
        done += count.value();
        if (told) told(static_cast<double>(done) / static_cast<double>(frames_));
    }
    return {};
}

} // namespace zephyra
