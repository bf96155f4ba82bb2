#if defined(__linux__)
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#endif
#include "screens/desktop/host_keys.h"

#include <utility>

namespace zephyra {

#if defined(__linux__)

namespace {

constexpr std::uint32_t kComesBack = 20; // milliseconds; keys that are held come less often
constexpr int kPressed = 2;              // X's KeyPress, of whose name JUCE makes its own

/// JUCE keeps the lower byte of a key without a letter, marked.
::KeySym symbolOf(const juce::KeyPress& key) {
    constexpr int kMark = 0x10000000;
    const int code = key.getKeyCode();
    return static_cast<::KeySym>(code & kMark ? 0xFF00 | (code & 0xFF) : code & 0xFFFF);
}

unsigned stateOf(const juce::ModifierKeys& held) {
    return (held.isShiftDown() ? ShiftMask : 0u) | (held.isCtrlDown() ? ControlMask : 0u) |
           (held.isAltDown() ? Mod1Mask : 0u);
}

} // namespace

void HostKeys::passOn(const juce::Component& component, const juce::KeyPress& key) {
    const auto now = juce::Time::getMillisecondCounter();
    const bool cameBack = key == last_ && now - lastTime_ < kComesBack;
    last_ = key;
    lastTime_ = now;
    auto* const system = juce::XWindowSystem::getInstanceWithoutCreating();
    ::Display* const display = system ? system->getDisplay() : nullptr;
    const auto window = reinterpret_cast<::Window>(component.getWindowHandle());
    if (cameBack || !display || !window) return;
    auto& x = *juce::X11Symbols::getInstance();
    ::Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    if (!x.xQueryTree(display, window, &root, &parent, &children, &count)) return;
    if (children) x.xFree(children);
    if (!parent || parent == root) return;
    ::XEvent event{};
    event.xkey.display = display;
    event.xkey.window = parent;
    event.xkey.root = root;
    event.xkey.same_screen = True;
    event.xkey.state = stateOf(key.getModifiers());
    event.xkey.keycode = x.xKeysymToKeycode(display, symbolOf(key));
    for (const auto& [type, mask] :
         {std::pair{kPressed, KeyPressMask}, {KeyRelease, KeyReleaseMask}}) {
        event.xkey.type = type;
        x.xSendEvent(display, parent, True, mask, &event);
    }
    x.xFlush(display);
}

#else

void HostKeys::passOn(const juce::Component&, const juce::KeyPress&) {}

#endif

} // namespace zephyra
