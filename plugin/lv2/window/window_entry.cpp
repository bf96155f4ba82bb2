// lv2ui_descriptor: what a host finds in the window's library, C functions around Lv2Window.
#include "plugin/lv2/host_features.h"
#include "plugin/lv2/live_plugins.h"
#include "plugin/lv2/window/lv2_window.h"
#include "plugin/lv2/window_names.h"

#include <cstdio>
#include <exception>
#include <lv2/core/lv2_util.h>
#include <lv2/instance-access/instance-access.h>
#include <string_view>

namespace zephyra {

namespace {

/// Null, after a line that says why, without instance-access, an instance of this very version, a
/// window to stand in, and a display.
LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char*, const char*,
                         LV2UI_Write_Function write, LV2UI_Controller controller,
                         LV2UI_Widget* widget, const LV2_Feature* const* features) {
    const auto feature = [&](const char* uri) { return lv2_features_data(features, uri); };
    Lv2Plugin* const plugin = livePlugin(feature(LV2_INSTANCE_ACCESS_URI));
    const Lv2Window::Host host{.write = write,
                               .controller = controller,
                               .parent = feature(LV2_UI__parent),
                               .resize = static_cast<const LV2UI_Resize*>(feature(LV2_UI__resize)),
                               .touch = static_cast<const LV2UI_Touch*>(feature(LV2_UI__touch)),
                               .scale = windowScale(features)};
    if (!plugin || !host.parent || !write) {
        std::fputs("Zephyra's window needs instance-access to a Zephyra of its own bundle, and a "
                   "parent window\n",
                   stderr);
        return nullptr;
    }
    try {
        auto thread = MessageThread::shared();
        if (!thread) {
            std::fputs("Zephyra's window needs an X display\n", stderr);
            return nullptr;
        }
        auto window = std::make_unique<Lv2Window>(*plugin, host, std::move(thread));
        *widget = window->widget();
        return *widget ? window.release() : nullptr;
    } catch (const std::exception&) {
        return nullptr;
    }
}

void cleanup(LV2UI_Handle handle) {
    delete static_cast<Lv2Window*>(handle);
}

int idle(LV2UI_Handle handle) {
    try {
        static_cast<Lv2Window*>(handle)->idle();
    } catch (const std::exception&) { // what it could not tell now is lost; the window goes on
    }
    return 0;
}

int resize(LV2UI_Feature_Handle handle, int width, int height) {
    try {
        static_cast<Lv2Window*>(handle)->resize(width, height);
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idleInterface = {idle};
    static const LV2UI_Resize resizeInterface = {nullptr, resize};
    if (std::string_view(uri) == LV2_UI__idleInterface) return &idleInterface;
    return std::string_view(uri) == LV2_UI__resize ? &resizeInterface : nullptr;
}

// What ports stand at is read from the instance.
void portEvent(LV2UI_Handle, std::uint32_t, std::uint32_t, std::uint32_t, const void*) {}

constexpr LV2UI_Descriptor kDescriptor = {kLv2WindowUri, instantiate, cleanup, portEvent,
                                          extensionData};

} // namespace

} // namespace zephyra

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return index == 0 ? &zephyra::kDescriptor : nullptr;
}
