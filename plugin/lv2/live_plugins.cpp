#include "plugin/lv2/live_plugins.h"

#include "plugin/lv2/lv2_plugin.h"

#include <mutex>
#include <set>

namespace zephyra {

namespace {

struct LivePlugins {
    std::mutex mutex;
    std::set<LV2_Handle> handles;
};

LivePlugins& live() {
    static LivePlugins all;
    return all;
}

} // namespace

void addLivePlugin(Lv2Plugin& plugin) {
    const std::lock_guard lock(live().mutex);
    live().handles.insert(&plugin);
}

void removeLivePlugin(Lv2Plugin& plugin) {
    const std::lock_guard lock(live().mutex);
    live().handles.erase(&plugin);
}

Lv2Plugin* livePlugin(LV2_Handle handle) {
    const std::lock_guard lock(live().mutex);
    return live().handles.contains(handle) ? static_cast<Lv2Plugin*>(handle) : nullptr;
}

} // namespace zephyra
