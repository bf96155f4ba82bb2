// PluginSetup, PluginTransport, PluginBlock: what a plug-in's host announces, and sends with a
// block.
#pragma once

#include <cstdint>
#include <optional>

namespace zephyra {

/// What holds until the next one.
struct PluginSetup {
    double sampleRate = 44100.0;    ///< Hz, PluginInstance::kLeastRate to kMostRate
    std::uint32_t mostFrames = 512; ///< of one block, as announced; longer ones are rendered, too
};

/// What the host tells of the music at a block's first frame. What is not there is no news: the
/// last value holds, and the position goes on with the tempo.
struct PluginTransport {
    std::optional<double> tempo = {};       ///< beats per minute
    std::optional<double> numerator = {};   ///< of the meter; a bar is 4 · numerator / denominator
    std::optional<double> denominator = {}; ///< quarters long
    std::optional<double> beats = {};       ///< in quarters; below 0 in a pre-roll
    std::optional<bool> moving = {};        ///< whether the transport rolls
};

/// One block of sound. Input and output may be the same memory.
struct PluginBlock {
    std::uint32_t frames = 0;   ///< any number; 0 hands over events and music alone
    const float* input[2] = {}; ///< null: silence; only the second null: one channel for both
    float* output[2] = {};      ///< only the second null: one channel, (L + R) / 2
    PluginTransport transport = {};
};

} // namespace zephyra
