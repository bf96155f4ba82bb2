#include "modulation/midi_values.h"

namespace zephyra {

namespace {

constexpr double kMost7 = 127.0, kMost14 = 16383.0;
constexpr int kBendMiddle = 8192;

double bendValue(int bend) {
    const double fromMiddle = bend - kBendMiddle;
    return 0.5 + 0.5 * fromMiddle / (fromMiddle < 0.0 ? 8192.0 : 8191.0);
}

bool concerns(const MidiTrigger& trigger, const MidiMessage& message) {
    if (trigger.channel != 0 && trigger.channel != message.channel()) return false;
    const int number = message.data1();
    switch (trigger.source) {
    case MidiSource::controller:
        return message.kind() == MidiKind::controller && number == trigger.number;
    case MidiSource::controller14:
        return message.kind() == MidiKind::controller &&
               (number == trigger.number || number == trigger.number + MidiValues::kFineHalf);
    case MidiSource::pitchBend:
        return message.kind() == MidiKind::pitchBend;
    case MidiSource::note:
        return message.kind() == MidiKind::noteOn && message.data2() != 0 &&
               number == trigger.number;
    case MidiSource::channelPressure:
        return message.kind() == MidiKind::channelPressure;
    }
    return false;
}

} // namespace

void MidiValues::keep(const MidiMessage& message) {
    if (message.kind() == MidiKind::pitchBend) {
        lastBent_ = message.channel();
        bends_[static_cast<std::size_t>(lastBent_ - 1)] = message.bend();
    }
    if (message.kind() != MidiKind::controller) return;
    auto& controllers = controllers_[static_cast<std::size_t>(message.channel() - 1)];
    const auto number = static_cast<std::size_t>(message.data1());
    controllers[number] = message.bytes[2];
    if (number < kFineHalf) controllers[number + kFineHalf] = 0;
}

double MidiValues::bend(int channel) const {
    return bendValue(bends_[static_cast<std::size_t>(channel - 1)].value_or(kBendMiddle));
}

std::optional<double> MidiValues::value(const MidiTrigger& trigger,
                                        const MidiMessage& message) const {
    if (!concerns(trigger, message)) return std::nullopt;
    switch (trigger.source) {
    case MidiSource::controller14: {
        const auto& controllers = controllers_[static_cast<std::size_t>(message.channel() - 1)];
        const auto coarse = static_cast<std::size_t>(trigger.number);
        return (controllers[coarse] << 7 | controllers[coarse + kFineHalf]) / kMost14;
    }
    case MidiSource::pitchBend:
        return bendValue(message.bend());
    case MidiSource::channelPressure:
        return message.data1() / kMost7;
    default:
        return message.data2() / kMost7;
    }
}

std::optional<MidiTrigger> triggerOf(const MidiMessage& message) {
    const int number = message.data1();
    switch (message.kind()) {
    case MidiKind::controller:
        if (number >= MidiValues::kFirstChannelMode) return std::nullopt;
        return MidiTrigger{MidiSource::controller, number};
    case MidiKind::pitchBend:
        return MidiTrigger{MidiSource::pitchBend};
    case MidiKind::noteOn:
        if (message.data2() == 0) return std::nullopt; // a release
        return MidiTrigger{MidiSource::note, number};
    case MidiKind::channelPressure:
        return MidiTrigger{MidiSource::channelPressure};
    default:
        return std::nullopt;
    }
}

} // namespace zephyra
