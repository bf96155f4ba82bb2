// SecondWindow: a plug-in's window in a library with a copy of JUCE of its own.
#pragma once

#include "tests/plugin/lv2_window/host_window.h"

namespace window_host {

class SecondWindow final : public HostWindow {
public:
    explicit SecondWindow(Display* server);
    ~SecondWindow() override { close(); }
    void close() override;

private:
    void turn() override {}

    void* handle_ = nullptr;
};

} // namespace window_host
