// The blocks of PluginInstance, in real time and offline.
#include "hosting/plugin_instance.h"

#include <algorithm>

namespace zephyra {

void PluginInstance::queue(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING {
    events_.add(frame, event);
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
    for (std::uint32_t begin = 0; host_.isRunning() && begin < block.frames;) {
        const std::uint32_t end = std::min(block.frames, begin + host_.setup().blockFrames);
        const AURenderEvent* const due = events_.take(end);
        for (const AURenderEvent* event = due; event; event = event->next)
            if (event->eventType == AURenderEventType::MIDI)
                system_.inlet.push(event->MIDI.data, event->MIDI.length);
        host_.render({.frames = end - begin,
                      .input = {block.input[0] ? block.input[0] + begin : nullptr,
                                block.input[1] ? block.input[1] + begin : nullptr},
                      .output = {block.output[0] + begin, block.output[1] + begin}},
                     due);
        begin = end;
    }
    events_.clear();
}

void PluginInstance::renderOffline(const PluginBlock& block) {
    if (system_.instance.runLoop.clock() != RunLoop::Clock::sample) offline_.goOffline();
    for (const AURenderEvent& event : events_.all()) {
        const auto frame = static_cast<std::uint32_t>(event.eventSampleTime);
        if (event.eventType == AURenderEventType::MIDI)
            offline_.queueMidi(event.MIDI.data, event.MIDI.length, frame);
        else
            offline_.queueRamp(event.parameter.parameterAddress, event.parameter.value,
                               event.parameter.rampDurationSampleFrames, frame);
    }
    events_.clear();
    offline_.render({.frames = block.frames,
                     .inputLeft = block.input[0],
                     .inputRight = block.input[1],
                     .left = block.output[0],
                     .right = block.output[1]});
}

double PluginInstance::tailSeconds() const {
    return 0.0;
}

} // namespace zephyra
