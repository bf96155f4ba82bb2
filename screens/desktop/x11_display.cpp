#include "screens/desktop/x11_display.h"

#if defined(__linux__)

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace juce {
struct LinuxEventLoopInternal { // of juce_events, which keeps its header to itself
    static void invokeEventLoopCallbackForFd(int file);
};
} // namespace juce

namespace zephyra::x11 {

namespace {

constexpr std::size_t kMostOthers = 64; // of our connections besides JUCE's: one a window

std::atomic<::Display*> ownDisplay = nullptr;
std::array<std::atomic<::Display*>, kMostOthers> others = {};
// Whose handlers ours took the place of, when it came first and when it came last.
std::atomic<::XErrorHandler> first = nullptr, last = nullptr;

/// A process may have several libraries with this handler, each above another of them at some time:
/// then last leads round to here again, and first leads out.
int handleError(::Display* display, ::XErrorEvent* event) {
    const auto isIt = [display](const auto& one) { return one.load() == display; };
    if (isIt(ownDisplay) || std::any_of(others.begin(), others.end(), isIt)) return 0;
    thread_local int depth = 0;
    const ::XErrorHandler next = depth == 0 ? last.load() : depth == 1 ? first.load() : nullptr;
    ++depth;
    const int answer = next ? next(display, event) : 0;
    --depth;
    return answer;
}

void handleErrors() {
    const auto current = juce::X11Symbols::getInstance()->xSetErrorHandler(handleError);
    if (current == handleError) return;
    last = current;
    if (!first) first = current;
}

::Display* juceDisplay() {
    auto* const system = juce::XWindowSystem::getInstanceWithoutCreating();
    return system ? system->getDisplay() : nullptr;
}

/// JUCE is about to close its connection: what is made at that address next may be a host's. What
/// is still on its way comes before.
struct UntilItCloses final : juce::DeletedAtShutdown {
    ~UntilItCloses() override {
        if (::Display* const display = juceDisplay())
            juce::X11Symbols::getInstance()->xSync(display, False);
        ownDisplay = nullptr;
        clearSingletonInstance();
    }
    JUCE_DECLARE_SINGLETON(UntilItCloses, false)
};

JUCE_IMPLEMENT_SINGLETON(UntilItCloses)

} // namespace

void flush() {
    if (::Display* const display = juceDisplay()) juce::X11Symbols::getInstance()->xFlush(display);
}

bool hasUnread() {
    ::Display* const display = juceDisplay();
    return display && juce::X11Symbols::getInstance()->xEventsQueued(display, QueuedAlready) > 0;
}

void readEvents() {
    if (::Display* const display = juceDisplay())
        juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd(ConnectionNumber(display));
}

void findUnderPointer(void* window, int width, int height) {
    ::Display* const display = juceDisplay();
    if (!display || !window) return;
    const auto own = reinterpret_cast<::Window>(window);
    ::Window root, child;
    int rootX, rootY, x, y;
    unsigned int keys;
    const bool knows = juce::X11Symbols::getInstance()->xQueryPointer(
        display, own, &root, &child, &rootX, &rootY, &x, &y, &keys);
    if (!knows || x < 0 || y < 0 || x >= width || y >= height) return;
    auto* const windows = juce::XWindowSystem::getInstance();
    if (windows->getPhysicalParentScreenPosition() == juce::Point<int>(rootX - x, rootY - y))
        return;
    juce::ignoreUnused(windows->getWindowBounds(own, root));
}

void freeColourmap(void* window) {
    ::Display* const display = juceDisplay();
    if (!display || !window) return;
    auto& x = *juce::X11Symbols::getInstance();
    ::XWindowAttributes is;
    if (!x.xGetWindowAttributes(display, reinterpret_cast<::Window>(window), &is)) return;
    if (is.colormap != None && is.colormap != DefaultColormapOfScreen(is.screen) &&
        is.visual == DefaultVisualOfScreen(is.screen))
        x.xFreeColormap(display, is.colormap);
}

void dropOwnErrors() {
    ownDisplay = juceDisplay();
    if (!ownDisplay) return;
    UntilItCloses::getInstance();
    handleErrors();
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

} // namespace zephyra::x11

#else

namespace zephyra::x11 {
void flush() {}
bool hasUnread() {
    return false;
}
void readEvents() {}
void findUnderPointer(void*, int, int) {}
void freeColourmap(void*) {}
void dropOwnErrors() {}
bool dropErrorsOf(_XDisplay*) {
    return false;
}
void forgetErrorsOf(_XDisplay*) {}
std::string displayName() {
    return {};
}
} // namespace zephyra::x11

#endif
