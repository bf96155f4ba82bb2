// The block loop of a render.
#include "rendering/offline_render.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace zephyra {

void OfflineRender::queueMusic(std::uint64_t firstFrame, std::uint32_t frames) {
    for (; nextMusic_ < plan_.music.size(); ++nextMusic_) {
        const TimedMusic& due = plan_.music[nextMusic_];
        const std::uint64_t frame = dueFrame(due.seconds, plan_.sampleRate);
        if (frame >= firstFrame + frames) return;
        host_.queueTask([this, &due] { goOnWith(due); },
                        static_cast<std::uint32_t>(frame - firstFrame));
    }
}

/// The cycle that begins may be some frames late. A host that stands has no position to set right.
void OfflineRender::goOnWith(const TimedMusic& music) {
    const bool rolls = host_.beatPosition() > 0.0;
    const double late =
        std::round(static_cast<double>(host_.renderedFrames()) - music.seconds * plan_.sampleRate);
    host_.setTempo(music.tempo);
    if (music.meter) host_.setMeter(music.meter->first, music.meter->second);
    if (rolls) host_.setBeatPosition(music.beats + late * music.tempo / (60.0 * plan_.sampleRate));
}

void OfflineRender::queueSettings(std::uint64_t firstFrame, std::uint32_t frames) {
    const std::vector<TimedSetting>& all = plan_.timedSettings;
    for (; nextSetting_ < all.size(); ++nextSetting_) {
        const TimedSetting& due = all[nextSetting_];
        const std::uint64_t frame = dueFrame(due.seconds, plan_.sampleRate);
        if (frame >= firstFrame + frames) return;
        host_.queueTask(
            [this, &setting = due.setting] {
                if (const auto done = apply(setting); !done) failed_ = Failure{done.message()};
            },
            static_cast<std::uint32_t>(frame - firstFrame));
    }
}

void OfflineRender::queueStop(std::uint64_t firstFrame) {
    if (firstFrame == plan_.stopFrame)
        host_.queueTask([this] { stream().setDisplayed(ControlId::playStop, 0.0f); });
}

void OfflineRender::queueAutomation(std::uint64_t firstFrame, std::uint32_t frames) {
    for (AutomationLane& lane : lanes_)
        for (const auto& event : lane.next(firstFrame, frames, plan_.sampleRate))
            host_.queueParameter(static_cast<AUParameterAddress>(lane.parameter()), event.value,
                                 event.offset);
}

void OfflineRender::queueMidi(std::uint64_t firstFrame, std::uint32_t frames) {
    for (; nextMidi_ < plan_.midi.size(); ++nextMidi_) {
        const TimedMidi& message = plan_.midi[nextMidi_];
        const std::uint64_t due = dueFrame(message.seconds, plan_.sampleRate);
        if (due >= firstFrame + frames) return;
        host_.queueMidi(message.bytes.data(), message.length,
                        static_cast<std::uint32_t>(due - firstFrame));
    }
}

std::uint32_t OfflineRender::nextBlockLength(std::uint64_t firstFrame) const {
    std::uint64_t end = firstFrame + static_cast<std::uint64_t>(plan_.blockFrames);
    for (const std::uint64_t border : {plan_.stopFrame.value_or(0), plan_.playFrames, plan_.frames})
        if (border > firstFrame) end = std::min(end, border);
    return static_cast<std::uint32_t>(end - firstFrame);
}

const float* OfflineRender::inputAt(const std::vector<float>& channel, std::vector<float>& padded,
                                    std::uint64_t firstFrame, std::uint32_t frames) const {
    if (firstFrame + frames <= channel.size()) return channel.data() + firstFrame;
    if (firstFrame >= channel.size()) return nullptr;
    const auto rest = channel.begin() + static_cast<std::ptrdiff_t>(firstFrame);
    std::fill(std::copy(rest, channel.end(), padded.begin()), padded.end(), 0.0f);
    return padded.data();
}

/// MAIN stands until the cycle's end, and so does what moves the scan but its own speed.
CycleScan OfflineRender::nextScan(std::uint32_t frames) {
    const mokGranulatorSF& engine = stream().engine();
    return {.plays = engine.granularOn,
            .phase = engine.nextScanPhase(),
            .travel = double{engine.scanFrequency()} * frames / plan_.sampleRate,
            .start = double{engine.scanRegionStart()},
            .span = double{engine.scanRegionSpan()}};
}

/// In the tail what sounds runs out under its envelope, and what still starts is silent, whatever
/// raised the level meanwhile: no click.
void OfflineRender::beginCycle(std::uint32_t end) {
    takeGrains(); // of the cycle before
    if (inTail_) stream().engine().setLevel(0.0f);
    heldInput_.beginCycle(stream(), blockFirst_ + end);
    const std::uint32_t begin = cycles_.empty() ? 0 : cycles_.back().end;
    cycles_.push_back(
        {end, stream().engine().currentLevel(), nextScan(end - begin), heldInput_.heard()});
}

Result<void> OfflineRender::renderBlock(std::uint64_t firstFrame, std::uint32_t frames) {
    cycles_.clear();
    grains_.clear();
    blockFirst_ = firstFrame;
    const OSStatus status =
        host_.render({.frames = frames,
                      .inputLeft = inputAt(source_.inputLeft, paddedLeft_, firstFrame, frames),
                      .inputRight = inputAt(source_.inputRight, paddedRight_, firstFrame, frames),
                      .left = left_.data(),
                      .right = right_.data()});
    takeGrains();
    if (failed_) return *failed_;
    if (status == audio_unit_status::noError) return {};
    return Failure{"the audio unit does not render (" + std::to_string(status) + ")"};
}

void OfflineRender::takeGrains() {
    const bool audible = blockFirst_ < plan_.playFrames;
    for (GrainRecord record; trace_->take(record);)
        if (audible) {
            grains_.push_back(record);
            heldInput_.add(record);
            ++(record.dropped ? statistics_.droppedGrains : statistics_.startedGrains);
        }
}

Result<RenderStatistics> OfflineRender::run(const Consumer& consumer) {
    for (std::uint64_t first = 0; first < plan_.frames;) {
        const std::uint32_t frames = nextBlockLength(first);
        queueMusic(first, frames);
        queueSettings(first, frames);
        queueStop(first);
        queueAutomation(first, frames);
        queueMidi(first, frames);
        inTail_ = first >= plan_.playFrames;
        if (inTail_) motion_.stopRecording();
        if (const auto rendered = renderBlock(first, frames); !rendered)
            return Failure{rendered.message()};
        const auto done = consumer({.firstFrame = first,
                                    .frames = frames,
                                    .left = left_.data(),
                                    .right = right_.data(),
                                    .grains = grains_,
                                    .cycles = cycles_,
                                    .moved = motion_.values()});
        if (!done) return Failure{done.message()};
        first += frames;
    }
    // What is due in the last frames sounds no more, but belongs to the state.
    if (host_.hasQueued())
        if (const auto acted = renderBlock(plan_.frames, 0); !acted)
            return Failure{acted.message()};
    if (std::string notice = heldInput_.notice(plan_.sampleRate); !notice.empty())
        plan_.notices.push_back(std::move(notice));
    statistics_.renderSeconds = host_.renderSeconds();
    return statistics_;
}

} // namespace zephyra
