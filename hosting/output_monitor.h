// OutputMonitor: what leaves a plug-in, for the meters of its windows.
#pragma once

#include "hosting/unit_host.h"
#include "stream/oscilloscope.h"
#include "stream/output_levels.h"

namespace zephyra {

/// Both see what a listener hears: dry and wet, bypass included. They pass it by while nobody
/// looks.
struct OutputMonitor {
    Oscilloscope oscilloscope; ///< for scope and spectrum
    OutputLevels levels;       ///< for the level meter

    /// Shows them a cycle that was rendered, both channels. RENDER.
    void add(const float* left, const float* right, std::uint32_t frames) ZEPHYRA_NONBLOCKING;
};

} // namespace zephyra
