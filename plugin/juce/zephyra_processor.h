// ZephyraProcessor: what JUCE's wrappers load: a translation of their calls into PluginInstance.
#pragma once

#include "hosting/gesture_listener.h"
#include "hosting/plugin_instance.h"
#include "plugin/juce/host_news.h"

#include <juce_audio_processors/juce_audio_processors.h>

namespace zephyra {

/// Threads: what is called between processBlocks is HOST, processBlock and processBlockBypassed are
/// RENDER; made, prepared, released and destroyed on any thread, also without a display. JUCE hands
/// over one value a parameter and block.
class ZephyraProcessor final : public juce::AudioProcessor {
public:
    /// prepare: see PluginInstance.
    explicit ZephyraProcessor(PluginKind kind, const HostedInstance::Prepare& prepare = {});

    PluginInstance& plugin() noexcept { return plugin_; }

    const juce::String getName() const override;
    bool isBusesLayoutSupported(const BusesLayout& layouts) const override;
    bool acceptsMidi() const override { return true; }
    bool producesMidi() const override { return false; }
    double getTailLengthSeconds() const override { return plugin_.tailSeconds(); }

    void prepareToPlay(double sampleRate, int mostFrames) override;
    void releaseResources() override { plugin_.release(); }
    void processBlock(juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi) override;
    void processBlockBypassed(juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi) override;
    using AudioProcessor::processBlock, AudioProcessor::processBlockBypassed;

    bool hasEditor() const override { return true; }
    juce::AudioProcessorEditor* createEditor() override;

    int getNumPrograms() override;
    int getCurrentProgram() override;
    void setCurrentProgram(int number) override;
    const juce::String getProgramName(int number) override;
    void changeProgramName(int, const juce::String&) override {} ///< the factory's keep theirs

    void getStateInformation(juce::MemoryBlock& state) override;
    void setStateInformation(const void* state, int bytes) override;

    /// The size in pixels that the last window had; 0 before the first. JUCE's message thread.
    struct Window {
        int width = 0, height = 0;
    } window;

private:
    static BusesProperties buses(PluginKind kind);
    void render(juce::AudioBuffer<float>& buffer, const juce::MidiBuffer& midi);

    PluginInstance plugin_;
    HostNews news_{*this};
    GestureListener gestures_; // ends before news_
};

} // namespace zephyra
