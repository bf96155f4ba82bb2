// MidiValues: a MIDI message as a value of 0..1, with 14-bit controllers put together.
#pragma once

#include "modulation/midi_binding.h"

#include <array>
#include <cstdint>
#include <optional>

namespace zephyra {

/// MAIN.
class MidiValues {
public:
    /// The first controller that is none, but a mode of the channel.
    static constexpr int kFirstChannelMode = 120;
    static constexpr int kFineHalf = 32; ///< so far above the coarse one

    /// Keeps what controllers and pitch wheels stand at. A coarse half resets its fine one. Before
    /// value().
    void keep(const MidiMessage& message);

    /// 0..1, where the middle of a pitch bend is exactly a half; nothing when message does not
    /// concern trigger, and for a note's end.
    std::optional<double> value(const MidiTrigger& trigger, const MidiMessage& message) const;

    /// Where the wheel of a channel (1..16) stands, as value() says it; a half at first.
    double bend(int channel) const;
    /// Whose wheel moved last; 1 at first.
    int lastBent() const { return lastBent_; }

private:
    std::array<std::array<std::uint8_t, 128>, 16> controllers_{}; // by channel and number
    std::array<std::optional<int>, 16> bends_;                    // none: it rests
    int lastBent_ = 1;
};

/// The trigger that message alone shows, on any channel: a controller is one of 7 bits. Nothing for
/// what cannot move controls.
std::optional<MidiTrigger> triggerOf(const MidiMessage& message);

} // namespace zephyra
