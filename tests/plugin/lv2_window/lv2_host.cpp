#include "tests/plugin/lv2_window/lv2_host.h"

#include <lv2/atom/atom.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>
#include <map>
#include <utility>

namespace window_host {

namespace {

const std::string kBundle = std::string(ZEPHYRA_LV2_BUNDLE) + "/";

LV2_URID mapUri(LV2_URID_Map_Handle, const char* uri) {
    static std::map<std::string, LV2_URID> all;
    return all.try_emplace(uri, static_cast<LV2_URID>(all.size() + 1)).first->second;
}

} // namespace

Lv2Plugin::Lv2Plugin(bool isInstrument) {
    descriptor = reinterpret_cast<LV2_Descriptor_Function>(
        entry(kBundle + "zephyra.so", "lv2_descriptor"))(isInstrument ? 1 : 0);
    LV2_URID_Map map{nullptr, mapUri};
    const LV2_Feature feature{LV2_URID__map, &map};
    const LV2_Feature* const features[] = {&feature, nullptr};
    handle = descriptor->instantiate(descriptor, 48000.0, kBundle.c_str(), features);
    if (!handle) fail("no instance");
}

Lv2Plugin::~Lv2Plugin() {
    descriptor->cleanup(handle);
}

Lv2Window::Lv2Window(Display* server, Lv2Plugin& of, const float* scale)
    : HostWindow(server), resize_{this, [](LV2UI_Feature_Handle window, int width, int height) {
                                      auto& self = *static_cast<Lv2Window*>(window);
                                      XResizeWindow(self.display, self.parent,
                                                    static_cast<unsigned>(width),
                                                    static_cast<unsigned>(height));
                                      return 0;
                                  }} {
    const LV2_Feature instance{LV2_INSTANCE_ACCESS_URI, of.handle};
    const LV2_Feature parentFeature{LV2_UI__parent, reinterpret_cast<void*>(parent)};
    const LV2_Feature resizing{LV2_UI__resize, const_cast<LV2UI_Resize*>(&resize_)};
    LV2_URID_Map map{nullptr, mapUri};
    const LV2_Feature mapping{LV2_URID__map, &map};
    const LV2_Options_Option options[] = {{LV2_OPTIONS_INSTANCE, 0,
                                           mapUri(nullptr, LV2_UI__scaleFactor), sizeof *scale,
                                           mapUri(nullptr, LV2_ATOM__Float), scale},
                                          {}};
    const LV2_Feature told{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)};
    const LV2_Feature* const features[] = {&instance, &parentFeature,          &resizing,
                                           &mapping,  scale ? &told : nullptr, nullptr};
    descriptor_ = reinterpret_cast<LV2UI_DescriptorFunction>(
        entry(kBundle + "zephyra_window.so", "lv2ui_descriptor"))(0);
    LV2UI_Widget made = nullptr;
    handle_ = descriptor_->instantiate(
        descriptor_, of.descriptor->URI, kBundle.c_str(),
        [](LV2UI_Controller window, std::uint32_t port, std::uint32_t, std::uint32_t, const void*) {
            static_cast<Lv2Window*>(window)->written.insert(port);
        },
        this, &made, features);
    if (!handle_ || !made) fail("no LV2 window");
    widget = reinterpret_cast<::Window>(made);
}

void Lv2Window::close() {
    if (handle_) descriptor_->cleanup(std::exchange(handle_, nullptr));
}

void Lv2Window::resize(int width, int height) {
    static_cast<const LV2UI_Resize*>(descriptor_->extension_data(LV2_UI__resize))
        ->ui_resize(handle_, width, height);
}

void Lv2Window::turn() {
    if (handle_)
        static_cast<const LV2UI_Idle_Interface*>(descriptor_->extension_data(LV2_UI__idleInterface))
            ->idle(handle_);
}

} // namespace window_host
