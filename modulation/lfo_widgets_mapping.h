// LFO_WIDGETS_MAPPING: the routing table that connects LFOs to the controls they move.
#pragma once

#include "platform/realtime.h"

#include <cstddef>

namespace zephyra {

/// Modulation runs on MAIN alone; RENDER only passes the table to the empty hook. The list is
/// empty. MAIN.
class LFO_WIDGETS_MAPPING {
public:
    /// While off no LFO advances.
    void setIsEnabled(bool on) noexcept { enabled_ = on; }
    bool getIsEnabled() const noexcept { return enabled_; }
    /// How many controls are modulated.
    std::size_t count() const noexcept { return 0; }

private:
    bool enabled_ = true;
};

/// Called once per render cycle with the table (null is fine) and the cycle's frames; returns at
/// once and changes nothing. RENDER.
void lfotTickProcessing(LFO_WIDGETS_MAPPING* mapping, int frames) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
