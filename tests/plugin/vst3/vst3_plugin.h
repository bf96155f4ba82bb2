// Vst3Plugin: a built VST3 in this process, loaded and driven as JUCE's hosts do it.
#pragma once

#include "hosting/plugin_block.h"
#include "hosting/plugin_instance.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// The bundle of the build tree.
juce::File vst3Bundle(PluginKind kind);

/// Lets the messages of JUCE's thread, this one, be handled for so long.
void pumpMessages(int milliseconds);

/// What is loaded; empty, and the test fails, when it cannot be. On JUCE's message thread; play()
/// and values may go to one other thread.
class Vst3Plugin {
public:
    explicit Vst3Plugin(PluginKind kind);
    ~Vst3Plugin();

    juce::AudioPluginInstance* operator->() const { return instance_.get(); }
    explicit operator bool() const { return instance_ != nullptr; }

    void start(double sampleRate, int mostFrames, bool offline = false);
    /// Of the frames of left and right, in place; the transport is what a host tells.
    void play(float* left, float* right, int frames, juce::MidiBuffer& midi);
    void play(int frames) { play(frames, {}); }
    /// Of an input that is repeatable noise; what comes out is in heard, left then right.
    void play(int frames, juce::MidiBuffer midi);
    /// Over the output of play(frames): the largest absolute value; infinite for what is no number
    /// or subnormal.
    float peak() const;

    juce::AudioProcessorParameter& parameter(int id) const {
        return *byId_.at(static_cast<std::size_t>(id));
    }
    /// The plug-in's own bytes, without what the formats wrap around them.
    std::string state() const;
    void setState(const std::string& bytes) const;
    /// Plays on in real time until it is true, for some seconds at most; whether it became so.
    bool playUntil(const std::function<bool()>& isTrue);

    PluginTransport transport; ///< from the next block on; without a tempo there is none
    std::vector<float> heard[2];

private:
    struct Clock;
    std::unique_ptr<Clock> clock_;
    std::unique_ptr<juce::AudioPluginInstance> instance_;
    std::vector<juce::AudioProcessorParameter*> byId_;
    juce::AudioBuffer<float> buffer_;
    std::uint32_t noise_ = 1;
};

} // namespace zephyra
