// ClientBufferMapperData of JUCE's VST3 wrapper, for blocks of any length and without allocating.
#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

namespace juce {

template <typename FloatType>
class ClientBufferMapperData;

/// Stands in front of the wrapper's source and takes the place of its own, which has room for the
/// announced length, is written beyond it, and copies a list on the heap in each block. Hands a
/// host's buses to the processor in JUCE's order of channels. RENDER after prepare; only blocks
/// beyond kLongest that were not announced allocate.
template <>
class ClientBufferMapperData<float> {
public:
    /// What is never touched of so much costs no memory.
    void prepare(int numChannels, int blockSize) {
        buffer_.setSize(numChannels, jmax(blockSize, kLongest));
    }

    template <typename Data, typename Maps>
    AudioBuffer<float> getMappedBuffer(Data& data, const Maps& inputs, const Maps& outputs) {
        if (data.numSamples > buffer_.getNumSamples())
            buffer_.setSize(buffer_.getNumChannels(), data.numSamples);
        int used = 0, written = 0;
        for (std::size_t bus = 0; bus < inputs.size(); ++bus) {
            const auto& map = inputs[bus];
            if (!map.isClientActive()) continue;
            const int channels = static_cast<int>(map.size());
            for (int c = 0; c < channels; ++c) {
                const float* const from = hostChannel(data, bus, map, c);
                float* const to =
                    buffer_.getWritePointer(used + map.getJuceChannelForVst3Channel(c));
                if (from)
                    FloatVectorOperations::copy(to, from, data.numSamples);
                else
                    FloatVectorOperations::clear(to, data.numSamples);
            }
            used += channels;
        }
        for (const auto& map : outputs)
            if (map.isClientActive()) written += static_cast<int>(map.size());
        return {buffer_.getArrayOfWritePointers(), jmax(used, written), data.numSamples};
    }

private:
    /// Null, for silence, where the host sends no such channel.
    template <typename Data, typename Map>
    static const float* hostChannel(Data& data, std::size_t bus, const Map& map, int channel) {
        if (!map.isHostActive() || bus >= static_cast<std::size_t>(data.numInputs)) return nullptr;
        const auto& sent = data.inputs[bus];
        return sent.channelBuffers32 && channel < sent.numChannels ? sent.channelBuffers32[channel]
                                                                   : nullptr;
    }

    static constexpr int kLongest = 65536; // frames
    AudioBuffer<float> buffer_;
};

} // namespace juce
