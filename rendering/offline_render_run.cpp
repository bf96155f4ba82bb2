// The block loop of a render.
#include "rendering/offline_render.h"

#include <algorithm>
#include <string>

namespace zephyra {

Result<void> OfflineRender::applyDue(std::uint64_t blockEnd) {
    const std::vector<TimedSetting>& all = plan_.timedSettings;
    for (; nextSetting_ < all.size(); ++nextSetting_) {
        const TimedSetting& due = all[nextSetting_];
        if (dueFrame(due.seconds, plan_.sampleRate) >= blockEnd) break;
        if (const auto done = apply(due.setting); !done) return done;
    }
    return {};
}

void OfflineRender::queueAutomation(std::uint64_t firstFrame, std::uint32_t frames) {
    for (AutomationLane& lane : lanes_) {
        const auto event = lane.next(plan_.secondsAt(firstFrame),
                                     plan_.secondsAt(firstFrame + frames), plan_.sampleRate);
        if (!event) continue;
        const auto address = static_cast<AUParameterAddress>(lane.parameter());
        if (event->ramp)
            host_.queueRamp(address, event->value, frames, event->offset);
        else
            host_.queueParameter(address, event->value, std::min(event->offset, frames - 1));
    }
}

void OfflineRender::queueMidi(std::uint64_t firstFrame, std::uint32_t frames) {
    for (; nextMidi_ < plan_.midi.size(); ++nextMidi_) {
        const TimedMidi& message = plan_.midi[nextMidi_];
        const std::uint64_t due = dueFrame(message.seconds, plan_.sampleRate);
        if (due >= firstFrame + frames) return;
        host_.queueMidi(message.bytes.data(), message.length,
                        static_cast<std::uint32_t>(std::max(due, firstFrame) - firstFrame));
    }
}

std::uint32_t OfflineRender::nextBlockLength(std::uint64_t firstFrame) const {
    std::uint64_t end = firstFrame + static_cast<std::uint64_t>(plan_.blockFrames);
    for (const std::uint64_t border : {plan_.stopFrame.value_or(0), plan_.playFrames, plan_.frames})
        if (border > firstFrame) end = std::min(end, border);
    // In pieces, or what moves the amplitude would raise it again within a block.
    if (firstFrame >= plan_.playFrames)
        end = std::min(end, firstFrame + MyAudioUnit::kMostFramesToRender);
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

OSStatus OfflineRender::renderBlock(std::uint64_t firstFrame, std::uint32_t frames) {
    return host_.render(
        {.frames = frames,
         .inputLeft = inputAt(source_.inputLeft, paddedLeft_, firstFrame, frames),
         .inputRight = inputAt(source_.inputRight, paddedRight_, firstFrame, frames),
         .left = left_.data(),
         .right = right_.data()});
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
        {
            const RunLoop::Scope main(instance_.runLoop);
            if (const auto done = applyDue(first + frames); !done) return Failure{done.message()};
            if (first == plan_.stopFrame) stream().setDisplayed(ControlId::playStop, 0.0f);
        }
        queueAutomation(first, frames);
        queueMidi(first, frames);
        if (first >= plan_.playFrames) {
            motion_.stopRecording();
            // What sounds runs out under its envelope, what still starts is silent: no click.
            instance_.runLoop.runPosted(); // nothing that waits may raise the level again
            stream().engine().setLevel(0.0f);
        }
        const float amplitude = stream().engine().currentLevel();
        if (const OSStatus status = renderBlock(first, frames);
            status != audio_unit_status::noError)
            return Failure{"the audio unit does not render (" + std::to_string(status) + ")"};
        takeGrains(first);
        const auto done = consumer({.firstFrame = first,
                                    .frames = frames,
                                    .left = left_.data(),
                                    .right = right_.data(),
                                    .grains = grains_,
                                    .scanPosition = stream().getTimePhasor(),
                                    .amplitude = amplitude,
                                    .moved = motion_.values()});
        if (!done) return Failure{done.message()};
        first += frames;
    }
    statistics_.renderSeconds = host_.renderSeconds();
    return statistics_;
}

} // namespace zephyra
