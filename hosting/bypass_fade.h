// BypassFade: crossfades between what a plug-in makes and what it passes on.
#pragma once

#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra {

/// A ramp of equal length both ways, counted in frames, that turns round where it stands. RENDER,
/// unless said otherwise.
class BypassFade {
public:
    static constexpr double kSeconds = 0.010;

    /// Hz above 0; at the target at once. OFF.
    void start(double sampleRate) noexcept;

    /// What the next frames go towards: passed on, or made.
    void setTarget(bool bypassed) ZEPHYRA_NONBLOCKING { bypassed_ = bypassed; }
    /// Whether the next frames hold anything of what is passed on.
    bool isHeard() const ZEPHYRA_NONBLOCKING { return bypassed_ || at_ > 0; }

    /// Mixes frames of what is passed on into what was made, channel by channel; null passes on
    /// silence. Nothing that is not finite, nor any denormal, comes out of what is passed on.
    void mix(float* const (&made)[2], const float* const (&passed)[2],
             std::uint32_t frames) ZEPHYRA_NONBLOCKING;

private:
    std::uint32_t length_ = 1; // frames of a whole fade
    std::uint32_t at_ = 0;     // of them: 0 is all made, length_ all passed on
    bool bypassed_ = false;
};

} // namespace zephyra
