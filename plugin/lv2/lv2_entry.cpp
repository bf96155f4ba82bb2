// lv2_descriptor: what a host finds in the library, C functions around Lv2Plugin.
#include "hosting/plugin_names.h"
#include "plugin/lv2/live_plugins.h"
#include "plugin/lv2/lv2_plugin.h"

#include <exception>
#include <iterator>
#include <memory>
#include <string_view>

namespace zephyra {

namespace {

Lv2Plugin& pluginOf(LV2_Handle handle) {
    return *static_cast<Lv2Plugin*>(handle);
}

/// Null without urid:map, at rates that the system does not know, and where memory is short.
LV2_Handle instantiate(const LV2_Descriptor* descriptor, double sampleRate, const char*,
                       const LV2_Feature* const* features) {
    const HostFeatures offered(features);
    if (!offered.map || !(sampleRate >= PluginInstance::kLeastRate) ||
        sampleRate > PluginInstance::kMostRate)
        return nullptr;
    const auto kind = std::string_view(descriptor->URI) == kEffectNames.lv2Uri
                          ? PluginKind::effect
                          : PluginKind::instrument;
    try {
        auto made = std::make_unique<Lv2Plugin>(kind, sampleRate, offered);
        addLivePlugin(*made);
        return made.release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) {
    pluginOf(handle).connect(port, data);
}

void activate(LV2_Handle handle) {
    pluginOf(handle).activate();
}

void run(LV2_Handle handle, std::uint32_t frames) {
    pluginOf(handle).run(frames);
}

void deactivate(LV2_Handle handle) {
    pluginOf(handle).deactivate();
}

void cleanup(LV2_Handle handle) {
    removeLivePlugin(pluginOf(handle));
    delete &pluginOf(handle);
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle host,
                      std::uint32_t, const LV2_Feature* const*) {
    try {
        return pluginOf(handle).save(store, host);
    } catch (const std::exception&) {
        return LV2_STATE_ERR_NO_SPACE;
    }
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle host, std::uint32_t, const LV2_Feature* const*) {
    try {
        return pluginOf(handle).restore(retrieve, host);
    } catch (const std::exception&) {
        return LV2_STATE_ERR_NO_SPACE;
    }
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state = {save, restore};
    return std::string_view(uri) == LV2_STATE__interface ? &state : nullptr;
}

constexpr LV2_Descriptor descriptorOf(const PluginNames& names) {
    return {names.lv2Uri, instantiate, connectPort, activate,
            run,          deactivate,  cleanup,     extensionData};
}

constexpr LV2_Descriptor kDescriptors[] = {descriptorOf(kEffectNames),
                                           descriptorOf(kInstrumentNames)};

} // namespace

} // namespace zephyra

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < std::size(zephyra::kDescriptors) ? &zephyra::kDescriptors[index] : nullptr;
}
