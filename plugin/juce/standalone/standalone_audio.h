// StandaloneAudio: the sound device of the standalone program, through losses and returns.
#pragma once

#include "plugin/juce/standalone/midi_inputs.h"
#include "plugin/juce/standalone/standalone_player.h"
#include "plugin/standalone/device_watch.h"

#include <juce_audio_utils/juce_audio_utils.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// What was chosen is opened, and waited for where it is not there. Without a choice it is JACK
/// where a server runs, else ALSA's default; what has once run is waited for as if it were chosen,
/// so that a server that starts anew finds its sound card free. Message thread.
class StandaloneAudio final : juce::AudioDeviceManager, juce::ChangeListener {
public:
    /// chosen: what choice() gave once, or empty. system: "jack", "alsa", or empty for either.
    StandaloneAudio(PluginInstance& instance, const std::string& chosen, const std::string& system);
    ~StandaloneAudio() override;

    /// Whether the device was lost, came, or changed since the last call. Several times a second.
    bool look();

    bool isRunning() const { return getCurrentAudioDevice() != nullptr; }
    bool hasInput() const;
    /// "JACK, 48000 Hz, 256 frames", or what is missing and what to do about it.
    std::string status() const;
    /// What a person chose, to be remembered; empty for nothing.
    const std::string& choice() const { return choice_; }
    void setChoiceListener(std::function<void()> listener) { listener_ = std::move(listener); }

    /// The window in which devices are chosen; while it is open, only one that was lost is opened
    /// by itself.
    void showSettings(juce::Component& besides);

    StandalonePlayer& player() { return player_; }
    const MidiInputs& midi() const { return midi_; }

private:
    using Setup = std::unique_ptr<juce::XmlElement>;

    void createAudioDeviceTypes(juce::OwnedArray<juce::AudioIODeviceType>& types) override;
    void changeListenerCallback(juce::ChangeBroadcaster*) override;
    DeviceWatch::Signs signs() const;
    void tryAll();
    bool tryOne(const juce::XmlElement& setup);
    void findNewCards();
    std::vector<Setup> wanted();
    void addDefault(std::vector<Setup>& setups, const char* type);

    StandalonePlayer player_;
    MidiInputs midi_{player_};
    DeviceWatch watch_;
    std::string choice_;
    const std::string system_;
    Setup lastGood_;
    std::string lost_; // the device that was; empty for none
    std::string problem_;
    std::string shown_;
    std::function<void()> listener_;
    juce::Component::SafePointer<juce::DialogWindow> settings_;
    double nextMidiLook_ = 0.0;
};

} // namespace zephyra
