#include "plugin/juce/standalone/standalone_player.h"

#include "plugin/standalone/output_limit.h"

#include <algorithm>
#include <cstddef>

namespace zephyra {

namespace {

/// What JUCE stamps messages with, in seconds.
double now() noexcept {
    return juce::Time::getMillisecondCounterHiRes() * 0.001;
}

} // namespace

void StandalonePlayer::pushMidi(const juce::MidiMessage& message) {
    const auto size = static_cast<std::size_t>(message.getRawDataSize());
    const double stamp = message.getTimeStamp();
    midi_.push({message.getRawData(), size}, stamp > 0.0 ? stamp : now());
}

void StandalonePlayer::audioDeviceAboutToStart(juce::AudioIODevice* device) {
    rate_ = device->getCurrentSampleRate();
    const int most = std::max(device->getCurrentBufferSizeSamples(), 1);
    const auto prepared =
        instance_.prepare({.sampleRate = rate_, .mostFrames = static_cast<std::uint32_t>(most)});
    problem_ = prepared ? "" : prepared.message();
}

void StandalonePlayer::audioDeviceIOCallbackWithContext(const float* const* inputs, int inputCount,
                                                        float* const* outputs, int outputCount,
                                                        int frames,
                                                        const juce::AudioIODeviceCallbackContext&) {
    PluginBlock block{.frames = static_cast<std::uint32_t>(std::max(frames, 0)),
                      .transport = transport_};
    midi_.take(now(), rate_, block.frames,
               [this](const std::uint8_t* bytes, std::size_t length, std::uint32_t frame) {
                   instance_.queueMidi(bytes, length, frame);
               });
    for (int c = 0; c < std::min(inputCount, 2); ++c) block.input[c] = inputs[c];
    for (int c = 0; c < std::min(outputCount, 2); ++c) block.output[c] = outputs[c];
    for (int c = 0; c < outputCount; ++c) // what stays unprepared, and channels above stereo
        if (outputs[c]) std::fill_n(outputs[c], block.frames, 0.0f);
    if (block.output[0]) instance_.render(block);
    for (float* const channel : block.output)
        if (channel) limitOutput(channel, block.frames);
    transport_ = {};
    blocks_ = blocks_ + 1;
}

} // namespace zephyra
