// ScratchBuffer of JUCE's VST3 wrapper, for blocks that are longer than their host announced.
#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

namespace juce {

template <typename FloatType>
class ScratchBuffer;

/// Stands in front of the wrapper's source and takes the place of its own, which has room for the
/// announced length and is written beyond it. RENDER after setSize.
template <>
class ScratchBuffer<float> {
public:
    /// What is never touched of so much costs no memory.
    void setSize(int numChannels, int blockSize) {
        constexpr int kLongest = 65536; // frames
        buffer_.setSize(numChannels, jmax(blockSize, kLongest));
    }
    void clear() { next_ = 0; }
    float* getNextChannelBuffer() { return buffer_.getWritePointer(next_++); }
    auto getArrayOfWritePointers() { return buffer_.getArrayOfWritePointers(); }

private:
    AudioBuffer<float> buffer_;
    int next_ = 0;
};

} // namespace juce
