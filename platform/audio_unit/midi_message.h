// MidiMessage: one channel message of MIDI 1.0, whole.
#pragma once

#include <array>
#include <cstdint>

namespace zephyra {

/// The high nibble of a channel message's status byte.
enum class MidiKind : std::uint8_t {
    noteOff = 0x8,
    noteOn = 0x9,
    polyPressure = 0xA,
    controller = 0xB,
    program = 0xC,
    channelPressure = 0xD,
    pitchBend = 0xE,
};

/// Plain data. Bytes that a message does not have are 0.
struct MidiMessage {
    std::array<std::uint8_t, 3> bytes{}; ///< status 0x80..0xEF, then data 0..127

    MidiKind kind() const noexcept { return static_cast<MidiKind>(bytes[0] >> 4); }
    int channel() const noexcept { return (bytes[0] & 0x0F) + 1; } ///< 1..16
    int data1() const noexcept { return bytes[1]; }
    int data2() const noexcept { return bytes[2]; }
    /// Of a pitch bend: 0..16383, 8192 in the middle.
    int bend() const noexcept { return bytes[2] << 7 | bytes[1]; }
    bool operator==(const MidiMessage&) const = default;
};

} // namespace zephyra
