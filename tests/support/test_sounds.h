// Small sounds and stereo blocks for tests of the engine.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/sound/audio_buffer_list.h"

#include <array>
#include <random>
#include <vector>

namespace zephyra {

/// White noise in -1..1, the same for the same seed: every frame matters to a comparison.
inline std::unique_ptr<mokSample> noiseSample(std::uint64_t frames, float rate,
                                              std::uint32_t seed = 7) {
    auto sample = std::make_unique<mokSample>(frames, rate);
    std::mt19937 random(seed);
    for (std::uint64_t n = 0; n < sample->size; ++n)
        sample->data[n] = static_cast<float>(static_cast<std::int32_t>(random())) * 0x1p-31f;
    sample->writeGuardPoint();
    return sample;
}

/// Two channels of equal length, and a buffer list over a part of them.
struct StereoBlock {
    std::vector<float> left, right;
    std::array<AudioBuffer, 2> buffers;

    explicit StereoBlock(std::size_t frames) : left(frames), right(frames) {}

    AudioBufferList from(std::size_t frame) {
        buffers[0].mData = left.data() + frame;
        buffers[1].mData = right.data() + frame;
        for (auto& buffer : buffers)
            buffer.mDataByteSize =
                static_cast<std::uint32_t>((left.size() - frame) * sizeof(float));
        return {.mNumberBuffers = 2, .mBuffers = buffers.data()};
    }
};

} // namespace zephyra
