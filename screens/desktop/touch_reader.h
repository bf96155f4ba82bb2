// TouchReader: reads the touch screens of an X display for one window.
#pragma once

#include "screens/desktop/touch_translation.h"
#include "screens/desktop/xinput_library.h"

#include <memory>

namespace zephyra {

/// Has a connection of its own: JUCE drops events that it does not know before one could see them,
/// what a connection says of the extension's version holds for all of it, and a host's is the
/// host's. While a touch screen is there, the window asks for its touches; the server then makes no
/// mouse of these fingers, so that each acts once. Screens may come and go. One thread.
class TouchReader {
public:
    /// Null where there is no display of that name, or none that knows touches (XInput 2.2). The
    /// window may be gone, or go first.
    static std::unique_ptr<TouchReader> open(const char* display, ::Window window,
                                             TouchTranslation::Sink sink);
    ~TouchReader();
    TouchReader(const TouchReader&) = delete;
    TouchReader& operator=(const TouchReader&) = delete;

    /// Can be read when something came.
    int descriptor() const;
    /// Tells what came; never waits for more. It may be destroyed by whom it tells.
    void read();
    bool hasTouchScreen() const { return !translation_.screens().empty(); }

private:
    TouchReader(const XinputLibrary& x, ::Display* display, ::Window window,
                TouchTranslation::Sink sink);
    bool knowsTouches();
    void selectDevices();
    void selectTouches(bool on);
    void findScreens();

    const XinputLibrary& x_;
    ::Display* const display_;
    const ::Window window_;
    int extension_ = 0;
    TouchTranslation translation_;
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

} // namespace zephyra
