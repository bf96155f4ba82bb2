// HostWrites: what hands in a window do to the ports, on its way to the host.
#pragma once

#include "hosting/gesture_listener.h"
#include "hosting/gesture_queue.h"
#include "plugin/lv2/lv2_plugin.h"

#include <lv2/ui/ui.h>
#include <mutex>

namespace zephyra {

/// Hears the gestures of an instance while it lives, and hands them over when the host is idle: a
/// host takes writes on its own thread only, and a window never waits for it.
class HostWrites {
public:
    /// plugin outlives it. touch may be null. HOST.
    HostWrites(Lv2Plugin& plugin, LV2UI_Write_Function write, LV2UI_Controller controller,
               const LV2UI_Touch* touch);
    HostWrites(const HostWrites&) = delete;
    HostWrites& operator=(const HostWrites&) = delete;

    /// Writes what came since the last call. The host's thread.
    void deliver();

private:
    void hear(const AUParameterAutomationEvent& event);
    void tell(const AUParameterAutomationEvent& event) const;

    Lv2Plugin& plugin_;
    const LV2UI_Write_Function write_;
    const LV2UI_Controller controller_;
    const LV2UI_Touch* const touch_;
    std::mutex mutex_; // guards waiting_
    GestureQueue waiting_;
    GestureListener gestures_; // ends first
};

} // namespace zephyra
