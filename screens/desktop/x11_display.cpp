#include "screens/desktop/x11_display.h"

#if defined(__linux__)

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <atomic>

namespace zephyra::x11 {

namespace {

std::atomic<::Display*> ownDisplay = nullptr;
::XErrorHandler before = nullptr;

int handleError(::Display* display, ::XErrorEvent* event) {
    if (display == ownDisplay.load()) return 0;
    return before ? before(display, event) : 0;
}

::Display* juceDisplay() {
    auto* const system = juce::XWindowSystem::getInstanceWithoutCreating();
    return system ? system->getDisplay() : nullptr;
}

} // namespace

void flush() {
    if (::Display* const display = juceDisplay()) juce::X11Symbols::getInstance()->xFlush(display);
}

void dropOwnErrors() {
    ownDisplay = juceDisplay();
    if (!ownDisplay) return;
    const auto current = juce::X11Symbols::getInstance()->xSetErrorHandler(handleError);
    if (current != handleError) before = current;
}

void forgetOwnDisplay() {
    ownDisplay = nullptr;
}

} // namespace zephyra::x11

#else

namespace zephyra::x11 {
void flush() {}
void dropOwnErrors() {}
void forgetOwnDisplay() {}
} // namespace zephyra::x11

#endif
