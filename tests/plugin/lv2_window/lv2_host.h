// Lv2Plugin, Lv2Window: an instance as LV2 hosts make it, and its window.
#pragma once

#include "tests/plugin/lv2_window/host_window.h"

#include <cstdint>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>
#include <set>

namespace window_host {

struct Lv2Plugin {
    explicit Lv2Plugin(bool isInstrument);
    ~Lv2Plugin();
    Lv2Plugin(const Lv2Plugin&) = delete;
    Lv2Plugin& operator=(const Lv2Plugin&) = delete;

    const LV2_Descriptor* descriptor;
    LV2_Handle handle;
};

class Lv2Window final : public HostWindow {
public:
    /// scale: what the host's ui:scaleFactor says; null and it says none.
    Lv2Window(Display* server, Lv2Plugin& of, const float* scale = nullptr);
    ~Lv2Window() override { close(); }
    void close() override;
    /// The host's user makes it so large.
    void resize(int width, int height);

    std::set<std::uint32_t> written; ///< ports

private:
    void turn() override;

    const LV2UI_Resize resize_;
    const LV2UI_Descriptor* descriptor_;
    LV2UI_Handle handle_ = nullptr;
};

} // namespace window_host
