#include "hosting/host_channels.h"

#include "platform/threads/flush_denormals.h"

#include <algorithm>
#include <new>

namespace zephyra {

bool HostChannels::start(double sampleRate, std::uint32_t mostFrames) noexcept {
    if (!makeRoom(mostFrames)) return false;
    fade_.start(sampleRate);
    return true;
}

bool HostChannels::makeRoom(std::uint32_t mostFrames) noexcept {
    if (mostFrames <= frames_) return true;
    try {
        memory_.resize(kMemories * std::size_t{mostFrames});
    } catch (const std::bad_alloc&) {
        return false;
    }
    frames_ = mostFrames;
    return true;
}

HostCycle HostChannels::open(const PluginBlock& block, std::uint32_t begin,
                             std::uint32_t end) ZEPHYRA_NONBLOCKING {
    const auto at = [begin](auto* channel) { return channel ? channel + begin : nullptr; };
    HostCycle cycle{.frames = end - begin,
                    .input = {at(block.input[0]), at(block.input[1])},
                    .output = {at(block.output[0]), at(block.output[1])}};
    if (!cycle.input[1]) cycle.input[1] = cycle.input[0];
    sumsToMono_ = cycle.output[0] && !cycle.output[1];
    if (!cycle.output[0]) cycle.output[0] = memory(ownLeft);
    if (!cycle.output[1]) cycle.output[1] = memory(ownRight);
    if (!fade_.isHeard()) return cycle;
    for (const Memory side : {dryLeft, dryRight}) {
        const float* const input = passes_ == Passes::input ? cycle.input[side] : nullptr;
        dry_[side] = input ? memory(side) : nullptr;
        if (input) std::copy_n(input, cycle.frames, memory(side));
    }
    return cycle;
}

void HostChannels::close(const HostCycle& cycle) ZEPHYRA_NONBLOCKING {
    if (!fade_.isHeard() && !sumsToMono_) return;
    const FlushDenormals flush;
    float* const left = cycle.output[0];
    const float* const right = cycle.output[1];
    if (fade_.isHeard()) fade_.mix(cycle.output, dry_, cycle.frames);
    if (!sumsToMono_) return;
    for (std::uint32_t n = 0; n < cycle.frames; ++n) left[n] = 0.5f * (left[n] + right[n]);
}

void HostChannels::silence(const PluginBlock& block, std::uint32_t begin,
                           std::uint32_t end) ZEPHYRA_NONBLOCKING {
    for (float* const channel : block.output)
        if (channel) std::fill_n(channel + begin, end - begin, 0.0f);
}

} // namespace zephyra
