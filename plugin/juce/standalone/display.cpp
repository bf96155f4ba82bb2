#include "plugin/juce/standalone/display.h"

#include <cstdlib>
#include <dlfcn.h>
#include <utility>

namespace zephyra {

namespace {

// As X11/Xlib.h declares them; JUCE does not link libX11 either.
struct Display;
using OpenDisplay = Display* (*)(const char*);
using CloseDisplay = int (*)(Display*);
using IOErrorHandler = int (*)(Display*);
using SetIOErrorHandler = IOErrorHandler (*)(IOErrorHandler);

void* xlib() {
    static void* const library = ::dlopen("libX11.so.6", RTLD_LAZY | RTLD_LOCAL);
    return library;
}

template <typename Function>
Function xlibFunction(const char* name) {
    return xlib() ? reinterpret_cast<Function>(::dlsym(xlib(), name)) : nullptr;
}

std::function<void()>& lastAct() {
    static std::function<void()> act;
    return act;
}

/// Xlib would end the program, too, but by exit(), under which JUCE's statics ask the server again.
int endNow(Display*) {
    if (const auto act = std::exchange(lastAct(), {})) act();
    std::_Exit(EXIT_FAILURE);
}

} // namespace

bool displayIsThere() {
    const auto open = xlibFunction<OpenDisplay>("XOpenDisplay");
    const auto close = xlibFunction<CloseDisplay>("XCloseDisplay");
    Display* const display = open && close ? open(nullptr) : nullptr;
    if (display) close(display);
    return display != nullptr;
}

std::string displayName() {
    const char* const name = std::getenv("DISPLAY");
    return name ? name : "";
}

void whenDisplayBreaks(std::function<void()> last) {
    lastAct() = std::move(last);
    if (const auto set = xlibFunction<SetIOErrorHandler>("XSetIOErrorHandler")) set(endNow);
}

} // namespace zephyra
