#include "screens/desktop/x11_display.h"

#if defined(__linux__)

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace zephyra::x11 {

namespace {

constexpr std::size_t kMostOthers = 64; // of our connections besides JUCE's: one a window

std::atomic<::Display*> ownDisplay = nullptr;
std::array<std::atomic<::Display*>, kMostOthers> others = {};
::XErrorHandler before = nullptr;

int handleError(::Display* display, ::XErrorEvent* event) {
    const auto isIt = [display](const auto& one) { return one.load() == display; };
    if (isIt(ownDisplay) || std::any_of(others.begin(), others.end(), isIt)) return 0;
    return before ? before(display, event) : 0;
}

void handleErrors() {
    const auto current = juce::X11Symbols::getInstance()->xSetErrorHandler(handleError);
    if (current != handleError) before = current;
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
    if (ownDisplay) handleErrors();
}

bool dropErrorsOf(::Display* display) {
    const auto free = std::find(others.begin(), others.end(), nullptr);
    if (free == others.end()) return false;
    *free = display;
    handleErrors();
    return true;
}

void forgetErrorsOf(::Display* display) {
    const auto one = std::find(others.begin(), others.end(), display);
    if (one != others.end()) *one = nullptr;
}

std::string displayName() {
    ::Display* const display = juceDisplay();
    return display ? DisplayString(display) : "";
}

void forgetOwnDisplay() {
    ownDisplay = nullptr;
}

} // namespace zephyra::x11

#else

namespace zephyra::x11 {
void flush() {}
void dropOwnErrors() {}
bool dropErrorsOf(_XDisplay*) {
    return false;
}
void forgetErrorsOf(_XDisplay*) {}
std::string displayName() {
    return {};
}
void forgetOwnDisplay() {}
} // namespace zephyra::x11

#endif
