#include "hosting/held_notes.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr int kSustain = 64, kSoundOff = 120, kResetControllers = 121, kNotesOff = 123;
constexpr int kPedalDown = 64; ///< the value from which on it is

} // namespace

void HeldNotes::Channel::keyUp(std::size_t note) {
    if (down.test(note) && pedal) sustained.set(note);
    down.reset(note);
}

void HeldNotes::Channel::allKeysUp() {
    if (pedal) sustained |= down;
    down.reset();
}

void HeldNotes::Channel::setPedal(bool on) {
    pedal = on;
    if (!on) sustained.reset();
}

bool HeldNotes::any() const {
    return std::any_of(channels_.begin(), channels_.end(), [](const Channel& channel) {
        return channel.down.any() || channel.sustained.any();
    });
}

HeldNotes::Change HeldNotes::take(const MidiMessage& message) {
    Channel& channel = channels_[static_cast<std::size_t>(message.channel() - 1)];
    const auto note = static_cast<std::size_t>(message.data1() & 0x7F);
    const bool held = any();
    switch (message.kind()) {
    case MidiKind::noteOn:
        if (message.data2() != 0) {
            channel.down.set(note);
            return Change::began;
        }
        [[fallthrough]];
    case MidiKind::noteOff:
        channel.keyUp(note);
        break;
    case MidiKind::controller:
        control(channel, message.data1(), message.data2());
        if (message.data1() == kSoundOff) return any() ? Change::none : Change::silenced;
        break;
    default:
        break;
    }
    return held && !any() ? Change::ended : Change::none;
}

void HeldNotes::control(Channel& channel, int controller, int value) {
    if (controller == kSustain) return channel.setPedal(value >= kPedalDown);
    if (controller == kResetControllers) return channel.setPedal(false);
    if (controller >= kNotesOff) return channel.allKeysUp();
    if (controller != kSoundOff) return;
    channel.down.reset();
    channel.sustained.reset();
}

} // namespace zephyra
