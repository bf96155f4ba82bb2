#include "plugin/lv2/host_features.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <lv2/atom/atom.h>
#include <lv2/ui/ui.h>
#include <string_view>

namespace zephyra {

HostFeatures::HostFeatures(const LV2_Feature* const* features) {
    for (; features && *features; ++features) {
        const std::string_view uri = (*features)->URI;
        if (uri == LV2_URID__map) map = static_cast<const LV2_URID_Map*>((*features)->data);
        if (uri == LV2_LOG__log) log = static_cast<const LV2_Log_Log*>((*features)->data);
        if (uri == LV2_OPTIONS__options)
            options = static_cast<const LV2_Options_Option*>((*features)->data);
    }
}

namespace {

/// The value of the option that is of that key and type; fallback when none is.
template <typename Value>
Value option(const HostFeatures& features, LV2_URID key, LV2_URID type, Value fallback) {
    for (const LV2_Options_Option* option = features.options; option && option->key; ++option) {
        if (option->key != key || option->type != type || !option->value ||
            option->size != sizeof fallback)
            continue;
        std::memcpy(&fallback, option->value, sizeof fallback);
        break;
    }
    return fallback;
}

} // namespace

std::uint32_t mostFrames(const HostFeatures& features, const Lv2Uris& uris) {
    for (const LV2_URID key : {uris.maxBlockLength, uris.nominalBlockLength}) {
        const auto frames = option<std::int32_t>(features, key, uris.atomInt, 0);
        if (frames > 0) return static_cast<std::uint32_t>(frames);
    }
    return 4096;
}

double windowScale(const LV2_Feature* const* of) {
    const HostFeatures features(of);
    if (!features.map || !features.options) return 1.0;
    const auto urid = [&map = *features.map](const char* uri) { return map.map(map.handle, uri); };
    const float scale = option(features, urid(LV2_UI__scaleFactor), urid(LV2_ATOM__Float), 1.0f);
    return scale > 0.0f && std::isfinite(scale) ? std::clamp<double>(scale, 0.5, 4.0) : 1.0;
}

} // namespace zephyra
