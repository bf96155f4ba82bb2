// The blocks of PluginInstance, in real time and offline.
#include "hosting/plugin_instance.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zephyra {

namespace {

const float* from(const float* samples, std::uint32_t frame) ZEPHYRA_NONBLOCKING {
    return samples ? samples + frame : nullptr;
}

void silence(const PluginBlock& block) ZEPHYRA_NONBLOCKING {
    for (float* const channel : block.output)
        if (channel) std::fill_n(channel, block.frames, 0.0f);
}

} // namespace

/// Of a host gone wild nothing is lost, it only acts too early.
void PluginInstance::queue(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING {
    if (events_.add(frame, event)) return;
    actNow();
    events_.add(frame, event);
}

void PluginInstance::pushMidi(const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    for (const AURenderEvent* event = events; event; event = event->next)
        if (event->eventType == AURenderEventType::MIDI)
            system_.inlet.push(event->MIDI.data, event->MIDI.length);
}

/// All that waits.
void PluginInstance::actNow() ZEPHYRA_NONBLOCKING {
    if (!host_.isRunning()) return actUnprepared();
    const AURenderEvent* const waiting = events_.take(std::numeric_limits<std::uint32_t>::max());
    pushMidi(waiting);
    host_.handOver(waiting);
    events_.clear();
}

/// The same while the unit takes no events: values hold, and MAIN hears the MIDI.
void PluginInstance::actUnprepared() ZEPHYRA_NONBLOCKING {
    for (const AURenderEvent& event : events_.all())
        if (event.eventType == AURenderEventType::MIDI)
            system_.inlet.push(event.MIDI.data, event.MIDI.length);
        else
            setParameter(event.parameter.parameterAddress, event.parameter.value);
    events_.clear();
}

void PluginInstance::queueParameter(AUParameterAddress address, AUValue linear,
                                    std::uint32_t frame) ZEPHYRA_NONBLOCKING {
    queueRamp(address, linear, 0, frame);
}

void PluginInstance::queueRamp(AUParameterAddress address, AUValue linearEnd, std::uint32_t frames,
                               std::uint32_t frame) ZEPHYRA_NONBLOCKING {
    AURenderEvent event;
    event.eventType = frames == 0 ? AURenderEventType::parameter : AURenderEventType::parameterRamp;
    event.parameter = {address, linearEnd, frames};
    queue(frame, event);
}

void PluginInstance::queueMidi(const std::uint8_t* bytes, std::size_t length,
                               std::uint32_t frame) ZEPHYRA_NONBLOCKING {
    AURenderEvent event;
    event.eventType = AURenderEventType::MIDI;
    event.MIDI = {};
    if (!bytes || length == 0 || length > sizeof event.MIDI.data) return;
    event.MIDI.length = static_cast<std::uint16_t>(length);
    std::copy_n(bytes, length, event.MIDI.data);
    queue(frame, event);
}

void PluginInstance::render(const PluginBlock& block) ZEPHYRA_NONBLOCKING {
    RunLoop& loop = system_.instance.runLoop;
    if (loop.clock() != RunLoop::Clock::wall) loop.askForWallClock();
    rendersOffline_ = false;
    if (!host_.isRunning()) {
        actUnprepared();
        return silence(block);
    }
    host_.time.follow(block.transport);
    if (host_.time.starts() && startsAnew(StartAnew::always)) startAnew();
    std::uint32_t begin = 0;
    do {
        const std::uint32_t left = block.frames - begin;
        const std::uint32_t end = begin + std::min(left, host_.setup().blockFrames);
        renderCycle(block, begin, end);
        begin = end;
    } while (begin < block.frames);
    events_.endBlock(block.frames);
}

void PluginInstance::renderCycle(const PluginBlock& block, std::uint32_t begin,
                                 std::uint32_t end) ZEPHYRA_NONBLOCKING {
    const AURenderEvent* const due = events_.take(std::max(end, 1u)); // also of 0 frames
    pushMidi(due);
    const OSStatus status =
        host_.render({.frames = end - begin,
                      .input = {from(block.input[0], begin), from(block.input[1], begin)},
                      .output = {block.output[0] + begin, block.output[1] + begin}},
                     due);
    if (status == audio_unit_status::noError) return;
    for (float* const channel : block.output) std::fill(channel + begin, channel + end, 0.0f);
}

void PluginInstance::renderOffline(const PluginBlock& block) {
    const GestureRelay::Deaf here(gestures_);
    if (!host_.isRunning()) {
        actUnprepared();
        return silence(block);
    }
    const bool goesOffline = !std::exchange(rendersOffline_, true);
    host_.time.follow(block.transport);
    if (goesOffline) offline_.goOffline();
    const bool starts = host_.time.starts() && startsAnew(StartAnew::inBounces);
    if (starts || (goesOffline && startAnew_ != StartAnew::never)) startAnewOffline();
    renderOfflineBlock(block);
}

/// What does not act in this block stays ours: the next one may come in real time.
void PluginInstance::renderOfflineBlock(const PluginBlock& block) {
    for (const AURenderEvent& event : events_.all()) {
        const auto frame = static_cast<std::uint32_t>(event.eventSampleTime);
        if (event.eventType == AURenderEventType::MIDI)
            offline_.queueMidi(event.MIDI.data, event.MIDI.length, frame);
        else
            offline_.queueRamp(event.parameter.parameterAddress, event.parameter.value,
                               event.parameter.rampDurationSampleFrames, frame);
    }
    events_.clear();
    const OSStatus status = offline_.render({.frames = block.frames,
                                             .inputLeft = block.input[0],
                                             .inputRight = block.input[1],
                                             .left = block.output[0],
                                             .right = block.output[1]});
    if (status != audio_unit_status::noError) silence(block);
    if (block.frames == 0) offline_.tellTime();
    for (const EventQueue::Entry& left : offline_.takeQueued()) events_.add(left.frame, left.event);
}

double PluginInstance::tailSeconds() const {
    return 0.0;
}

} // namespace zephyra
