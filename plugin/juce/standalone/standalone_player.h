// StandalonePlayer: what a sound device plays: blocks and MIDI, translated for a PluginInstance.
#pragma once

#include "hosting/plugin_instance.h"
#include "plugin/standalone/midi_queue.h"

#include <juce_audio_devices/juce_audio_devices.h>

#include <cstdint>
#include <string>

namespace zephyra {

/// Whichever device calls it, one at a time.
class StandalonePlayer final : public juce::AudioIODeviceCallback {
public:
    /// instance must outlive it.
    explicit StandalonePlayer(PluginInstance& instance) : instance_(instance) {}

    /// From devices and keys; taken by the next block. Any thread but RENDER.
    void pushMidi(const juce::MidiMessage& message);
    /// In the block that comes, by a device that brings MIDI along. RENDER.
    void queueMidi(const std::uint8_t* bytes, std::size_t length,
                   std::uint32_t frame) ZEPHYRA_NONBLOCKING {
        instance_.queueMidi(bytes, length, frame);
    }
    /// Of the block that comes. RENDER.
    void setTransport(const PluginTransport& transport) ZEPHYRA_NONBLOCKING {
        transport_ = transport;
    }

    std::uint64_t blocks() const { return blocks_; } ///< played so far; any thread
    /// Why nothing can be played at the device's rate; empty where it can. Message thread.
    const std::string& problem() const { return problem_; }

    // AudioIODeviceCallback: begun and ended on the message thread.
    void audioDeviceAboutToStart(juce::AudioIODevice* device) override;
    void audioDeviceStopped() override { instance_.release(); }
    /// RENDER.
    void audioDeviceIOCallbackWithContext(const float* const* inputs, int inputCount,
                                          float* const* outputs, int outputCount, int frames,
                                          const juce::AudioIODeviceCallbackContext&) override;

private:
    PluginInstance& instance_;
    MidiQueue midi_;
    PluginTransport transport_; // RENDER
    double rate_ = 44100.0;
    Relaxed<std::uint64_t> blocks_ = 0;
    std::string problem_;
};

} // namespace zephyra
