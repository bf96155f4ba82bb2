// MidiInputs: every MIDI device of the system, as they come and go.
#pragma once

#include "plugin/juce/standalone/standalone_player.h"

#include <juce_audio_devices/juce_audio_devices.h>

#include <memory>
#include <vector>

namespace zephyra {

/// Besides the devices, an input "Zephyra" that other programs may be connected to. Nothing where
/// the system has no sequencer. Message thread.
class MidiInputs final : juce::MidiInputCallback {
public:
    /// player must outlive it.
    explicit MidiInputs(StandalonePlayer& player) : player_(player) {}

    /// Opens what is there now and lets go of what is not any more.
    void refresh();
    /// "Keys, Pads"; empty without any.
    juce::String names() const;

private:
    void handleIncomingMidiMessage(juce::MidiInput*, const juce::MidiMessage& message) override {
        player_.pushMidi(message);
    }

    StandalonePlayer& player_;
    std::unique_ptr<juce::MidiInput> own_;
    std::vector<std::unique_ptr<juce::MidiInput>> devices_;
};

} // namespace zephyra
