// JuceShell: the processor behind VST3 as JUCE's wrapper calls it, in place, with the music in each
// block.
#pragma once

#include "bench/shell_work.h"
#include "plugin/juce/zephyra_processor.h"

namespace zephyra {

struct JuceShell {
    static constexpr const char* kName = "JUCE (VST3)";

    /// A host that plays at 120 beats a minute.
    struct Head final : juce::AudioPlayHead {
        juce::Optional<PositionInfo> getPosition() const override {
            PositionInfo position;
            position.setBpm(120.0);
            position.setTimeSignature(TimeSignature{4, 4});
            position.setIsPlaying(true);
            return position;
        }
    };

    JuceShell(PluginKind kind, ShellMemory& host, const HostedInstance::Prepare& prepare)
        : processor(kind, prepare), memory(host) {
        processor.setPlayHead(&head);
        processor.prepareToPlay(double{BenchWork::kRate}, ShellMemory::kMostFrames);
    }
    void render(int frames) {
        float* const channels[2] = {memory.output.left.data(), memory.output.right.data()};
        juce::AudioBuffer<float> buffer(channels, 2, frames);
        processor.processBlock(buffer, midi);
    }
    PluginInstance& plugin() { return processor.plugin(); }

    juce::ScopedJuceInitialiser_GUI juce;
    Head head;
    ZephyraProcessor processor;
    ShellMemory& memory;
    juce::MidiBuffer midi;
};

} // namespace zephyra
