// HostWrites: what hands in a window do to the ports, on its way to the host.
#pragma once

#include "plugin/lv2/lv2_plugin.h"

#include <cstdint>
#include <lv2/ui/ui.h>
#include <mutex>
#include <optional>
#include <vector>

namespace zephyra {

/// Hears the gestures of an instance while it lives, and hands them over when the host is idle: a
/// host takes writes on its own thread only, and a window never waits for it.
class HostWrites {
public:
    /// plugin outlives it. touch may be null. HOST.
    HostWrites(Lv2Plugin& plugin, LV2UI_Write_Function write, LV2UI_Controller controller,
               const LV2UI_Touch* touch);
    ~HostWrites();
    HostWrites(const HostWrites&) = delete;
    HostWrites& operator=(const HostWrites&) = delete;

    /// Writes what came since the last call. The host's thread.
    void deliver();

private:
    struct Write {
        std::uint32_t port;
        std::optional<float> value; ///< none: a touch
        bool grabbed = false;
    };
    void hear(const AUParameterAutomationEvent& event);

    Lv2Plugin& plugin_;
    const LV2UI_Write_Function write_;
    const LV2UI_Controller controller_;
    const LV2UI_Touch* const touch_;
    std::mutex mutex_; // guards what follows
    std::vector<Write> waiting_;
};

} // namespace zephyra
