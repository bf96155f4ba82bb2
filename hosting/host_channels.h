// HostChannels: between the channels of a host's block and the two in and two out of the audio
// unit.
#pragma once

#include "hosting/bypass_fade.h"
#include "hosting/plugin_block.h"
#include "hosting/unit_host.h"
#include "platform/text/result.h"

#include <cstdint>
#include <vector>

namespace zephyra {

/// A block is worked through in stretches, each between open and close: one channel of input goes
/// to both of the unit's, one of output gets half their sum, and bypass hears the input as it was
/// before the output overwrote it. RENDER unless said otherwise.
class HostChannels {
public:
    /// What bypass passes on.
    enum class Passes : std::uint8_t { input, silence };

    explicit HostChannels(Passes passes) : passes_(passes) {}

    /// Memory for stretches of so many frames; false, and as before, when it is short. OFF.
    bool start(double sampleRate, std::uint32_t mostFrames) noexcept;
    /// The same for longer ones, while blocks follow each other: only where waiting is allowed.
    bool makeRoom(std::uint32_t mostFrames) noexcept;

    /// From the next stretch on. The last one said holds.
    void setBypass(bool on) ZEPHYRA_NONBLOCKING { fade_.setTarget(on); }

    /// What the unit reads and writes for the frames of block from begin to end, which are no more
    /// than there is memory for.
    HostCycle open(const PluginBlock& block, std::uint32_t begin,
                   std::uint32_t end) ZEPHYRA_NONBLOCKING;
    /// Finishes what the unit made of it.
    void close(const HostCycle& cycle) ZEPHYRA_NONBLOCKING;

    /// Silence in what the host gave of block from begin to end.
    static void silence(const PluginBlock& block, std::uint32_t begin,
                        std::uint32_t end) ZEPHYRA_NONBLOCKING;

private:
    enum Memory : std::uint8_t { dryLeft, dryRight, ownLeft, ownRight, kMemories };
    float* memory(Memory which) ZEPHYRA_NONBLOCKING { return memory_.data() + which * frames_; }

    const Passes passes_;
    BypassFade fade_;
    std::vector<float> memory_; // kMemories of frames_ each
    std::size_t frames_ = 0;
    const float* dry_[2] = {}; // of the stretch that is open
    bool sumsToMono_ = false;
};

} // namespace zephyra
