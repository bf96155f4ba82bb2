// HeldNotes: which notes keys and pedals hold, on each MIDI channel by itself.
#pragma once

#include "platform/audio_unit/midi_message.h"

#include <array>
#include <bitset>
#include <cstddef>

namespace zephyra {

/// Reads note-ons and note-offs (a note-on of velocity 0 is one), the sustain pedal (controller
/// 64), and what ends all of a channel: 120 (sound off), 121 (which lets the pedal go), 123 and
/// above (all keys up; the pedal still holds). MAIN.
class HeldNotes {
public:
    enum class Change {
        none,
        began,    ///< a key went down
        ended,    ///< nothing is held any more
        silenced, ///< the same by controller 120, also where nothing was held
    };
    Change take(const MidiMessage& message);

    /// Whether a note is held on any channel.
    bool any() const;

private:
    using Notes = std::bitset<128>;
    struct Channel {
        Notes down;      // keys
        Notes sustained; // keys that went up while the pedal was down
        bool pedal = false;

        void keyUp(std::size_t note);
        void allKeysUp();
        void setPedal(bool on);
    };

    void control(Channel& channel, int controller, int value);

    std::array<Channel, 16> channels_;
};

} // namespace zephyra
