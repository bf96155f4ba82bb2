// The blocks of PluginInstance, in real time and offline.
#include "hosting/plugin_instance.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zephyra {

/// Of a host gone wild nothing is lost, it only acts too early.
void PluginInstance::queue(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING {
    if (events_.add(frame, event)) return;
    actNow();
    events_.add(frame, event);
}

/// Parameters go to MAIN by a way of their own, and are marked there by now: so a note finds what
/// was said of Play Stop before it, and not what is said after it.
void PluginInstance::pushMidi(const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    constexpr auto kPlayStop = static_cast<AUParameterAddress>(ControlId::playStop);
    for (const AURenderEvent* event = events; event; event = event->next)
        if (event->eventType == AURenderEventType::MIDI)
            system_.inlet.push(event->MIDI.data, event->MIDI.length);
        else if (event->parameter.parameterAddress == kPlayStop)
            system_.inlet.mark();
}

/// All that waits.
void PluginInstance::actNow() ZEPHYRA_NONBLOCKING {
    if (!host_.isRunning()) return actUnprepared();
    const AURenderEvent* const waiting = events_.take(std::numeric_limits<std::uint64_t>::max());
    host_.handOver(waiting);
    pushMidi(waiting);
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
        return HostChannels::silence(block, 0, block.frames);
    }
    const RenderLoad::Block measured(load_, block.frames, host_.setup().sampleRate);
    channels_.setBypass(bypassed_);
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
    shownTime_.show(host_.time);
}

void PluginInstance::renderCycle(const PluginBlock& block, std::uint32_t begin,
                                 std::uint32_t end) ZEPHYRA_NONBLOCKING {
    const AURenderEvent* const due = events_.take(std::max(end, 1u)); // also of 0 frames
    const HostCycle cycle = channels_.open(block, begin, end);
    const OSStatus status = host_.renderOrRest(cycle, due);
    close(block, cycle, begin, status);
    pushMidi(due);
}

void PluginInstance::close(const PluginBlock& block, const HostCycle& cycle, std::uint32_t begin,
                           OSStatus status) ZEPHYRA_NONBLOCKING {
    channels_.close(cycle);
    if (status != audio_unit_status::noError)
        return HostChannels::silence(block, begin, begin + cycle.frames);
    const bool isMono = block.output[0] && !block.output[1];
    monitor_.add(cycle.output[0], cycle.output[isMono ? 0 : 1], cycle.frames);
}

void PluginInstance::renderOffline(const PluginBlock& block) {
    if (!host_.isRunning()) {
        actUnprepared();
        return HostChannels::silence(block, 0, block.frames);
    }
    if (!channels_.makeRoom(block.frames)) return HostChannels::silence(block, 0, block.frames);
    channels_.setBypass(bypassed_);
    const bool goesOffline = !std::exchange(rendersOffline_, true);
    host_.time.follow(block.transport);
    if (goesOffline) {
        load_.reset();
        offline_.goOffline();
    }
    const bool starts = host_.time.starts() && startsAnew(StartAnew::inBounces);
    if (starts || (goesOffline && startAnew_ != StartAnew::never)) startAnewOffline();
    renderOfflineBlock(block);
    shownTime_.show(host_.time);
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
    const HostCycle whole = channels_.open(block, 0, block.frames);
    const OSStatus status = offline_.render({.frames = block.frames,
                                             .inputLeft = whole.input[0],
                                             .inputRight = whole.input[1],
                                             .left = whole.output[0],
                                             .right = whole.output[1]});
    close(block, whole, 0, status);
    if (block.frames == 0) offline_.tellTime();
    for (const EventQueue::Entry& left : offline_.takeQueued()) events_.add(left.frame, left.event);
}

} // namespace zephyra
