// AURenderEvent: what a host sends with a render cycle, as a linked list.
#pragma once

#include <cstdint>

namespace zephyra {

using AUEventSampleTime = std::int64_t; ///< frames on the host's clock
using AUParameterAddress = std::uint64_t;
using AUValue = float;

enum class AURenderEventType : std::uint8_t {
    parameter = 1,
    parameterRamp = 2,
    MIDI = 8,
    MIDISysEx = 9,
    MIDIEventList = 10,
};

struct AUParameterEvent {
    AUParameterAddress parameterAddress;
    AUValue value;                          ///< of a ramp its end
    std::uint32_t rampDurationSampleFrames; ///< 0 for a plain parameter event
};

struct AUMIDIEvent {
    std::uint16_t length; ///< bytes of data that count
    std::uint8_t cable;
    std::uint8_t data[3]; ///< status byte first
};

/// One event; the host owns it and what it points to until the render call returns.
struct AURenderEvent {
    const AURenderEvent* next = nullptr; ///< null ends the list
    AUEventSampleTime eventSampleTime = 0;
    AURenderEventType eventType = AURenderEventType::parameter;
    union {
        AUParameterEvent parameter = {};
        AUMIDIEvent MIDI;
    };
};

} // namespace zephyra
