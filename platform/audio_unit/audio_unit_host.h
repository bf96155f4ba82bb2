// AUHostMusicalContextBlock and its kin: what a host offers while an audio unit renders.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/realtime.h"

#include <cstdint>
#include <limits>

namespace zephyra {

/// What the host knows of the music; what is not finite was not reported.
struct AUMusicalContext {
    double currentTempo = std::numeric_limits<double>::quiet_NaN(); ///< beats per minute
    double timeSignatureNumerator = std::numeric_limits<double>::quiet_NaN();
    /// Of the block's start, in quarters.
    double currentBeatPosition = std::numeric_limits<double>::quiet_NaN();
    double timeSignatureDenominator = std::numeric_limits<double>::quiet_NaN(); ///< then 4 counts
};

/// Bits of AUTransportState::flags.
namespace transport_flag {
inline constexpr std::uint32_t changed = 1;
inline constexpr std::uint32_t moving = 2;
inline constexpr std::uint32_t recording = 4;
inline constexpr std::uint32_t cycling = 8;
/// Ours alone: the position jumped, so that the first beat of a bar is another one than before.
inline constexpr std::uint32_t jumped = 0x10000;
} // namespace transport_flag

struct AUTransportState {
    std::uint32_t flags = 0;
};

/// The host's musical-context block; owned by the host, who keeps it while resources are allocated.
class AUHostMusicalContextBlock {
public:
    virtual ~AUHostMusicalContextBlock() = default;
    /// Fills in what is known. False when nothing is. RENDER.
    virtual bool musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING = 0;
};

/// The host's transport-state block, likewise.
class AUHostTransportStateBlock {
public:
    virtual ~AUHostTransportStateBlock() = default;
    /// False when the host does not know. RENDER.
    virtual bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING = 0;
};

/// Where an effect's input comes from.
class AURenderPullInputBlock {
public:
    virtual ~AURenderPullInputBlock() = default;
    /// Writes frames samples of an input bus into list, or points its buffers at the host's own. A
    /// status other than 0 ends the cycle. RENDER.
    virtual OSStatus pullInput(std::uint32_t frames, std::int64_t bus,
                               AudioBufferList& list) ZEPHYRA_NONBLOCKING = 0;
};

} // namespace zephyra
