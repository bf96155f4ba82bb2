// JackDeviceType: JACK as one of JUCE's devices, with what JUCE's own lacks.
#pragma once

#include "plugin/juce/standalone/standalone_player.h"

#include <juce_audio_devices/juce_audio_devices.h>

#include <memory>

namespace zephyra {

/// JUCE's own takes another client for the device, is silent while nothing is connected, knows
/// neither MIDI nor transport, and dies on JACK's thread when the server goes. This one has the
/// ports of a JackClient and stays as it is until it is closed. Message thread.
class JackDeviceType final : public juce::AudioIODeviceType {
public:
    static constexpr const char* kName = "JACK"; ///< of the type and of its only device

    /// Null where there is no libjack. player hears MIDI and transport of JACK, and must outlive
    /// it.
    static std::unique_ptr<JackDeviceType> make(StandalonePlayer& player);

    void scanForDevices() override {}
    juce::StringArray getDeviceNames(bool) const override { return {kName}; }
    int getDefaultDeviceIndex(bool) const override { return 0; }
    int getIndexOfDevice(juce::AudioIODevice* device, bool) const override;
    bool hasSeparateInputsAndOutputs() const override { return false; }
    juce::AudioIODevice* createDevice(const juce::String& output,
                                      const juce::String& input) override;

private:
    explicit JackDeviceType(StandalonePlayer& player) : AudioIODeviceType(kName), player_(player) {}

    StandalonePlayer& player_;
};

/// How a device stands, for those that tell: JACK's.
struct DeviceHealth {
    bool isLost = false;
    bool hasInput = true;
};
DeviceHealth healthOf(const juce::AudioIODevice& device);

} // namespace zephyra
