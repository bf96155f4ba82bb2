// HostFeatures: what an LV2 host offers to an instance.
#pragma once

#include "plugin/lv2/uris.h"

#include <cstdint>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

namespace zephyra {

/// The host's, for as long as the instance lives; options only until it is made. Null for what it
/// does not offer.
struct HostFeatures {
    const LV2_URID_Map* map = nullptr;
    const LV2_Log_Log* log = nullptr;
    const LV2_Options_Option* options = nullptr;

    /// features: as handed to instantiate(); may be null.
    explicit HostFeatures(const LV2_Feature* const* features);
};

/// How long the host's blocks are at most, else usually; 4096 where it does not say.
std::uint32_t mostFrames(const HostFeatures& features, const Lv2Uris& uris);

/// How many times the usual size a window is to have, as the host's desktop or user wants it: 0.5
/// to 4; 1 where the host does not say, or says nonsense. features: as handed to the window.
double windowScale(const LV2_Feature* const* features);

} // namespace zephyra
