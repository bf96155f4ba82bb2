// MidiBinding: one MIDI mapping, which message moves which control, over which range and curve.
#pragma once

#include "controls/control.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/text/result.h"

#include <cstdint>
#include <string>

namespace zephyra {

/// The numbers are saved in states.
enum class MidiSource : std::int64_t {
    controller = 0,   ///< 7 bits
    controller14 = 1, ///< 14 bits: number 0..31 and the fine half 32 above
    pitchBend = 2,
    note = 3, ///< its velocity, on note-on
    channelPressure = 4,
};

/// Where values come from.
struct MidiTrigger {
    MidiSource source = MidiSource::controller;
    int number = 0;  ///< of the controller (0..119) or note; 0 for the others
    int channel = 0; ///< 1..16; 0 is any
    bool operator==(const MidiTrigger&) const = default;
};

/// "CC 1", "CC 1/33", "Pitch Bend", "Note C4", "Pressure", with ", channel 3" unless it is any.
std::string triggerText(const MidiTrigger& trigger);

/// What happens while controller and control stand at different places. The numbers are saved in
/// states.
enum class MidiTakeover : std::int64_t {
    soft = 0, ///< soft takeover, pick-up: it waits until the controller passes where it stands
    jump = 1,
};

struct MidiBinding {
    MidiTrigger trigger{};
    Control* control = nullptr;
    float min = 0.0f, max = 1.0f; ///< fractions of the linear range at the lowest and highest value
    float curve = 1.0f;           ///< exponent of the value, 0.1..10: above 1 finer at the bottom
    MidiTakeover takeover = MidiTakeover::soft;
    /// A pitch bend that adds to where the control stands instead of setting it; min and max are
    /// then how far it goes down and up, as fractions of the linear range.
    bool relative = false;
};

/// Fails with one line for what is out of range, for a relative one that is no pitch bend of a
/// knob, and for a control that MIDI cannot move: it moves knobs, toggles, buttons and scans.
Result<void> checkBinding(const MidiBinding& binding);
/// Whether it is one of those.
bool movesByMidi(const Control& control);

} // namespace zephyra
