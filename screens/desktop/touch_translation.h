// TouchTranslation: from the X server's touch events to ours.
#pragma once

#include "screens/model/touch/touch_event.h"

#include <X11/extensions/XInput2.h>

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace zephyra {

/// Knows which devices are touch screens, and which fingers are on them. Places are pixels of the
/// window, times seconds on the server's clock. One thread.
class TouchTranslation {
public:
    using Sink = std::function<void(const TouchEvent&)>;

    TouchTranslation(::Window window, Sink sink) : window_(window), sink_(std::move(sink)) {}

    /// Of what XIQueryDevice lists: devices whose touches are where the fingers are. A pad before
    /// the screen moves the pointer instead, and is the mouse.
    static std::vector<int> touchScreens(const XIDeviceInfo* devices, int count);

    /// The screens that are there now; fingers on others are cancelled.
    void setScreens(std::vector<int> devices);
    const std::vector<int>& screens() const noexcept { return screens_; }

    /// A touch event; those of other windows and devices are ignored.
    void take(const XIDeviceEvent& event);

private:
    struct Finger {
        int device;
        Point at;
    };
    double seconds(::Time time);

    const ::Window window_;
    const Sink sink_;
    std::vector<int> screens_;
    std::map<TouchId, Finger> fingers_;
    std::uint32_t lastTime_ = 0; // ms, begins again after 50 days
    double seconds_ = 0.0;
};

} // namespace zephyra
