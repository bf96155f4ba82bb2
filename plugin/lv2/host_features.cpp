#include "plugin/lv2/host_features.h"

#include <cstring>
#include <initializer_list>
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

std::uint32_t mostFrames(const HostFeatures& features, const Lv2Uris& uris) {
    for (const LV2_URID key : {uris.maxBlockLength, uris.nominalBlockLength})
        for (const LV2_Options_Option* option = features.options; option && option->key; ++option) {
            std::int32_t frames = 0;
            if (option->key != key || option->type != uris.atomInt || !option->value ||
                option->size != sizeof frames)
                continue;
            std::memcpy(&frames, option->value, sizeof frames);
            if (frames > 0) return static_cast<std::uint32_t>(frames);
        }
    return 4096;
}

} // namespace zephyra
