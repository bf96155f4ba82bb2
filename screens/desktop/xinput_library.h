// XinputLibrary: the functions of X that a touch screen is read with.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

namespace zephyra {

/// Opened by name, as JUCE opens its own: a machine without them has a window without touches, not
/// none. Any thread.
struct XinputLibrary {
    /// Null where one is missing. They stay open: libXi hangs on every connection that it served.
    static const XinputLibrary* shared();

    decltype(&::XOpenDisplay) openDisplay = nullptr;
    decltype(&::XCloseDisplay) closeDisplay = nullptr;
    decltype(&::XConnectionNumber) connectionNumber = nullptr;
    decltype(&::XDefaultRootWindow) rootWindow = nullptr;
    decltype(&::XFlush) flush = nullptr;
    decltype(&::XPending) pending = nullptr;
    decltype(&::XNextEvent) nextEvent = nullptr;
    decltype(&::XGetEventData) eventData = nullptr;
    decltype(&::XFreeEventData) freeEventData = nullptr;
    decltype(&::XQueryExtension) queryExtension = nullptr;
    decltype(&::XIQueryVersion) queryVersion = nullptr;
    decltype(&::XIQueryDevice) queryDevice = nullptr;
    decltype(&::XIFreeDeviceInfo) freeDeviceInfo = nullptr;
    decltype(&::XISelectEvents) selectEvents = nullptr;
};

} // namespace zephyra
