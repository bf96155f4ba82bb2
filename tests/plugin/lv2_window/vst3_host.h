// Vst3Plugin, Vst3Window: an instance as VST3 hosts make it, and its window.
#pragma once

#include "tests/plugin/lv2_window/host_window.h"

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>

namespace window_host {

struct Vst3Plugin {
    explicit Vst3Plugin(bool isInstrument);
    ~Vst3Plugin();
    Vst3Plugin(const Vst3Plugin&) = delete;
    Vst3Plugin& operator=(const Vst3Plugin&) = delete;

    Steinberg::Vst::IComponent* component = nullptr;
    Steinberg::Vst::IEditController* controller = nullptr;
};

class Vst3Window final : public HostWindow, Steinberg::IPlugFrame {
public:
    Vst3Window(Display* server, Vst3Plugin& of);
    ~Vst3Window() override { close(); }
    void close() override;

private:
    using TUID = Steinberg::TUID;
    using tresult = Steinberg::tresult;

    void turn() override;
    tresult PLUGIN_API queryInterface(const TUID wanted, void** object) override;
    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }
    Steinberg::uint32 PLUGIN_API release() override { return 1; }
    tresult PLUGIN_API resizeView(Steinberg::IPlugView* view, Steinberg::ViewRect* size) override;

    Steinberg::IPlugView* view_ = nullptr;
};

} // namespace window_host
