#include "modulation/midi_binding.h"

#include "controls/named_knobs.h"
#include "controls/scan_target.h"
#include "controls/toggle.h"
#include "modulation/midi_values.h"

namespace zephyra {

namespace {

constexpr float kLeastCurve = 0.1f, kMostCurve = 10.0f;

bool within(float value, float least, float most) {
    return value >= least && value <= most; // false for what is no number
}

std::string sourceText(const MidiTrigger& trigger) {
    const std::string number = std::to_string(trigger.number);
    switch (trigger.source) {
    case MidiSource::controller:
        return "CC " + number;
    case MidiSource::controller14:
        return "CC " + number + "/" + std::to_string(trigger.number + MidiValues::kFineHalf);
    case MidiSource::pitchBend:
        return "Pitch Bend";
    case MidiSource::note:
        return "Note " + midiNoteName(trigger.number);
    case MidiSource::channelPressure:
        return "Pressure";
    }
    return {};
}

/// So many numbers a source has; 0 for an unknown source.
int numbersOf(MidiSource source) {
    switch (source) {
    case MidiSource::controller:
        return MidiValues::kFirstChannelMode;
    case MidiSource::controller14:
        return MidiValues::kFineHalf;
    case MidiSource::note:
        return 128;
    case MidiSource::pitchBend:
    case MidiSource::channelPressure:
        return 1;
    }
    return 0;
}

Result<void> checkTrigger(const MidiTrigger& trigger) {
    const int numbers = numbersOf(trigger.source);
    if (numbers == 0)
        return Failure{"there is no MIDI source " +
                       std::to_string(static_cast<std::int64_t>(trigger.source)) +
                       "; they are 0 to 4"};
    if (trigger.number < 0 || trigger.number >= numbers)
        return Failure{"number " + std::to_string(trigger.number) + " must be 0 to " +
                       std::to_string(numbers - 1)};
    if (trigger.channel < 0 || trigger.channel > 16)
        return Failure{"channel " + std::to_string(trigger.channel) +
                       " must be 1 to 16, or 0 for any"};
    return {};
}

} // namespace

std::string triggerText(const MidiTrigger& trigger) {
    const std::string channel =
        trigger.channel == 0 ? "" : ", channel " + std::to_string(trigger.channel);
    return sourceText(trigger) + channel;
}

bool movesByMidi(const Control& control) {
    return dynamic_cast<const MOK_KNOB*>(&control) || dynamic_cast<const Toggle*>(&control) ||
           dynamic_cast<const Button*>(&control) || dynamic_cast<const ScanTarget*>(&control);
}

Result<void> checkBinding(const MidiBinding& binding) {
    if (!binding.control || !movesByMidi(*binding.control))
        return Failure{"it must be bound to a knob, a toggle, a button or a scan"};
    if (const auto trigger = checkTrigger(binding.trigger); !trigger) return trigger;
    if (!within(binding.min, 0.0f, 1.0f) || !within(binding.max, 0.0f, 1.0f))
        return Failure{"min and max must be 0 to 1"};
    if (!within(binding.curve, kLeastCurve, kMostCurve))
        return Failure{"the curve must be 0.1 to 10"};
    if (binding.takeover != MidiTakeover::soft && binding.takeover != MidiTakeover::jump)
        return Failure{"takeOver must be 0 (pick up) or 1 (jump)"};
    if (binding.relative && (binding.trigger.source != MidiSource::pitchBend ||
                             !dynamic_cast<const MOK_KNOB*>(binding.control)))
        return Failure{"only a pitch bend of a knob can be relative"};
    return {};
}

} // namespace zephyra
