#if defined(__linux__)

#include "screens/desktop/xinput_library.h"

#include <dlfcn.h>
#include <optional>

namespace zephyra {

namespace {

template <typename Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<XinputLibrary> open() {
    void* const x = ::dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
    void* const xi = x ? ::dlopen("libXi.so.6", RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (!xi) return std::nullopt;
    XinputLibrary it;
    const bool isWhole =
        find(x, "XOpenDisplay", it.openDisplay) && find(x, "XCloseDisplay", it.closeDisplay) &&
        find(x, "XConnectionNumber", it.connectionNumber) &&
        find(x, "XDefaultRootWindow", it.rootWindow) && find(x, "XFlush", it.flush) &&
        find(x, "XPending", it.pending) && find(x, "XNextEvent", it.nextEvent) &&
        find(x, "XGetEventData", it.eventData) && find(x, "XFreeEventData", it.freeEventData) &&
        find(x, "XQueryExtension", it.queryExtension) &&
        find(xi, "XIQueryVersion", it.queryVersion) && find(xi, "XIQueryDevice", it.queryDevice) &&
        find(xi, "XIFreeDeviceInfo", it.freeDeviceInfo) &&
        find(xi, "XISelectEvents", it.selectEvents);
    return isWhole ? std::optional(it) : std::nullopt;
}

} // namespace

const XinputLibrary* XinputLibrary::shared() {
    static const std::optional<XinputLibrary> library = open();
    return library ? &*library : nullptr;
}

} // namespace zephyra

#endif
