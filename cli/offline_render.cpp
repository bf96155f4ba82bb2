#include "cli/offline_render.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <utility>

namespace zephyra {

namespace {

using Clock = std::chrono::steady_clock;

AudioBuffer bufferOver(std::vector<float>& samples, std::uint32_t frames) {
    return {.mDataByteSize = static_cast<std::uint32_t>(frames * sizeof(float)),
            .mData = samples.data()};
}

} // namespace

std::uint64_t dueFrame(double seconds, double sampleRate) {
    return static_cast<std::uint64_t>(std::floor(seconds * sampleRate));
}

OfflineRender::OfflineRender(RenderPlan plan)
    : plan_(std::move(plan)),
      sourceBefore_(setRandomSource([generator = std::mt19937(plan_.seed)]() mutable {
          return static_cast<std::uint32_t>(generator());
      })),
      session_{.sampleRate = plan_.sampleRate,
               .IOBufferDuration = plan_.blockFrames / plan_.sampleRate},
      stream_(notifications_, session_), trace_(std::make_unique<GrainTrace>()),
      input_(static_cast<std::size_t>(plan_.blockFrames)), left_(input_.size()),
      right_(input_.size()) {}

OfflineRender::~OfflineRender() {
    setRandomSource(std::move(sourceBefore_));
}

Result<void> OfflineRender::apply(const ControlSetting& setting) {
    if (stream_.setControl(setting.control, setting.value)) return {};
    return Failure{"the stream does not take " + settingText(setting) + "; memory may be short"};
}

Result<void> OfflineRender::prepare(std::shared_ptr<mokSample> source) {
    source_ = std::move(source);
    stream_.prepare(plan_.sampleRate);
    stream_.engine().setRandomSeed(plan_.seed);
    stream_.engine().setTrace(trace_.get());
    const bool live = plan_.use == SourceUse::live;
    if (!stream_.pickEnvelope(plan_.envelope) ||
        !(live ? stream_.enableLive(true) : stream_.loadSound(source_)))
        return Failure{"memory is too short for the source; shorten it or free some"};

    for (const ControlId id : settableControls())
        if (id != ControlId::scrubbingWave) // a position, not a state: nothing to put back
            if (const auto done = apply({id, controlRange(id).defaultValue}); !done) return done;
    for (const ControlSetting& setting : plan_.settings)
        if (const auto done = apply(setting); !done) return done;
    if (plan_.start || plan_.end)
        stream_.setRegion(plan_.start.value_or(0.0f), plan_.end.value_or(1.0f));
    stream_.play(true);
    return {};
}

Result<void> OfflineRender::applyDue(std::uint64_t blockEnd) {
    const std::vector<TimedSetting>& all = plan_.timedSettings;
    for (; nextSetting_ < all.size(); ++nextSetting_) {
        const TimedSetting& due = all[nextSetting_];
        if (dueFrame(due.seconds, plan_.sampleRate) >= blockEnd) break;
        if (const auto done = apply(due.setting); !done) return done;
    }
    return {};
}

/// Ends the playing without a click: what sounds runs out under its envelope, what still starts is
/// silent.
void OfflineRender::silenceNewGrains() {
    stream_.engine().setLevel(0.0f);
}

std::uint32_t OfflineRender::nextBlockLength(std::uint64_t firstFrame) const {
    const std::uint64_t end = firstFrame < plan_.playFrames ? plan_.playFrames : plan_.frames;
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(end - firstFrame, static_cast<std::uint64_t>(plan_.blockFrames)));
}

void OfflineRender::feedInput(std::uint64_t firstFrame, std::uint32_t frames) {
    const std::uint64_t known = firstFrame < source_->size
                                    ? std::min<std::uint64_t>(frames, source_->size - firstFrame)
                                    : 0;
    std::copy_n(source_->getPtr() + (known ? firstFrame : 0), known, input_.begin());
    std::fill(input_.begin() + static_cast<std::ptrdiff_t>(known),
              input_.begin() + static_cast<std::ptrdiff_t>(frames), 0.0f);
}

void OfflineRender::renderBlock(std::uint64_t firstFrame, std::uint32_t frames) {
    AudioBuffer buffers[] = {bufferOver(left_, frames), bufferOver(right_, frames)};
    const AudioBufferList output{.mNumberBuffers = 2, .mBuffers = buffers};
    AudioBuffer inputBuffer = bufferOver(input_, frames);
    const AudioBufferList input{.mNumberBuffers = 1, .mBuffers = &inputBuffer};
    const bool live = plan_.use == SourceUse::live;
    if (live) feedInput(firstFrame, frames);

    const Clock::time_point before = Clock::now();
    GranulatorProcessing(&stream_, static_cast<int>(frames), live ? &input : nullptr, output);
    statistics_.renderSeconds += std::chrono::duration<double>(Clock::now() - before).count();
    stream_.collect();
}

void OfflineRender::takeGrains(std::uint64_t firstFrame) {
    grains_.clear();
    const bool audible = firstFrame < plan_.playFrames;
    for (GrainRecord record; trace_->take(record);)
        if (audible) {
            grains_.push_back(record);
            ++(record.dropped ? statistics_.droppedGrains : statistics_.startedGrains);
        }
}

Result<RenderStatistics> OfflineRender::run(const Consumer& consumer) {
    for (std::uint64_t first = 0; first < plan_.frames;) {
        const std::uint32_t frames = nextBlockLength(first);
        if (const auto done = applyDue(first + frames); !done) return Failure{done.message()};
        if (first >= plan_.playFrames) silenceNewGrains();
        renderBlock(first, frames);
        takeGrains(first);
        const auto done = consumer({.firstFrame = first,
                                    .frames = frames,
                                    .left = left_.data(),
                                    .right = right_.data(),
                                    .grains = grains_,
                                    .scanPosition = stream_.engine().currentScanPosition(),
                                    .amplitude = stream_.control(ControlId::amplitude)});
        if (!done) return Failure{done.message()};
        first += frames;
    }
    return statistics_;
}

} // namespace zephyra
