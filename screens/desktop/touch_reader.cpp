#if defined(__linux__)

#include "screens/desktop/touch_reader.h"

#include "screens/desktop/x11_display.h"

#include <array>
#include <utility>

namespace zephyra {

std::unique_ptr<TouchReader> TouchReader::open(const char* name, ::Window window,
                                               TouchTranslation::Sink sink) {
    const XinputLibrary* const x = XinputLibrary::shared();
    ::Display* const display = x ? x->openDisplay(name) : nullptr;
    if (!display) return nullptr;
    std::unique_ptr<TouchReader> reader(new TouchReader(*x, display, window, std::move(sink)));
    if (!x11::dropErrorsOf(display) || !reader->knowsTouches()) return nullptr;
    reader->selectDevices();
    reader->findScreens();
    return reader;
}

TouchReader::TouchReader(const XinputLibrary& x, ::Display* display, ::Window window,
                         TouchTranslation::Sink sink)
    : x_(x), display_(display), window_(window), translation_(window, std::move(sink)) {}

TouchReader::~TouchReader() {
    *isAlive_ = false;
    x_.closeDisplay(display_); // ends what was selected; errors until here are dropped
    x11::forgetErrorsOf(display_);
}

bool TouchReader::knowsTouches() {
    int event = 0, error = 0, major = 2, minor = 2;
    return x_.queryExtension(display_, "XInputExtension", &extension_, &event, &error) &&
           x_.queryVersion(display_, &major, &minor) == Success &&
           (major > 2 || (major == 2 && minor >= 2));
}

/// Of devices that come and go.
void TouchReader::selectDevices() {
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    XISetMask(bits.data(), XI_HierarchyChanged);
    XIEventMask mask{XIAllDevices, static_cast<int>(bits.size()), bits.data()};
    x_.selectEvents(display_, x_.rootWindow(display_), &mask, 1);
}

void TouchReader::selectTouches(bool on) {
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    if (on)
        for (const int type : {XI_TouchBegin, XI_TouchUpdate, XI_TouchEnd})
            XISetMask(bits.data(), type);
    XIEventMask mask{XIAllMasterDevices, static_cast<int>(bits.size()), bits.data()};
    x_.selectEvents(display_, window_, &mask, 1);
    x_.flush(display_);
}

void TouchReader::findScreens() {
    int count = 0;
    XIDeviceInfo* const devices = x_.queryDevice(display_, XIAllDevices, &count);
    auto screens = TouchTranslation::touchScreens(devices, devices ? count : 0);
    if (devices) x_.freeDeviceInfo(devices);
    if (screens.empty() == hasTouchScreen()) selectTouches(!screens.empty());
    translation_.setScreens(std::move(screens));
}

int TouchReader::descriptor() const {
    return x_.connectionNumber(display_);
}

void TouchReader::read() {
    const auto alive = isAlive_;
    while (*alive && x_.pending(display_) > 0) {
        ::XEvent event;
        x_.nextEvent(display_, &event);
        XGenericEventCookie& cookie = event.xcookie;
        if (cookie.type != GenericEvent || cookie.extension != extension_ ||
            !x_.eventData(display_, &cookie))
            continue;
        const bool isDevices = cookie.evtype == XI_HierarchyChanged;
        XIDeviceEvent touch{};
        if (!isDevices) touch = *static_cast<const XIDeviceEvent*>(cookie.data);
        x_.freeEventData(display_, &cookie);
        if (isDevices)
            findScreens();
        else
            translation_.take(touch);
    }
}

} // namespace zephyra

#endif
