#include "tests/plugin/lv2_window/host_window.h"

#include <X11/Xutil.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <set>
#include <thread>
#include <utility>

namespace window_host {

void fail(const std::string& why) {
    std::printf("failed: %s\n", why.c_str());
    std::fflush(stdout);
    std::_Exit(3);
}

void* entry(const std::string& library, const char* name) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) fail(dlerror());
    void* const found = dlsym(handle, name);
    return found ? found : (fail(name), found);
}

HostWindow::HostWindow(Display* server) : display(server) {
    parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1100, 700, 0, 0, 0);
    XSetWindowAttributes unmanaged;
    unmanaged.override_redirect = True; // on top, where what it shows can be read
    XChangeWindowAttributes(display, parent, CWOverrideRedirect, &unmanaged);
    XMapRaised(display, parent);
    XSync(display, False);
}

HostWindow::~HostWindow() {
    destroyParent();
}

void HostWindow::destroyParent() {
    if (parent) XDestroyWindow(display, std::exchange(parent, 0));
    XSync(display, False);
}

void HostWindow::idle(int milliseconds) {
    const int step = std::min(milliseconds, 20);
    for (int i = 0; i < milliseconds; i += step) {
        turn();
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == KeyPress && event.xkey.window == parent)
                keys_ += static_cast<char>(XLookupKeysym(&event.xkey, 0));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(step));
    }
}

void HostWindow::drag(int x, int y, int by) {
    const auto send = [&](int type, int at, unsigned state, long mask) {
        XEvent event{};
        event.xbutton.type = type;
        event.xbutton.display = display;
        event.xbutton.window = widget;
        event.xbutton.root = DefaultRootWindow(display);
        event.xbutton.x = event.xbutton.x_root = x;
        event.xbutton.y = event.xbutton.y_root = at;
        event.xbutton.state = state;
        event.xbutton.button = type == MotionNotify ? 0 : Button1;
        event.xbutton.same_screen = True;
        XSendEvent(display, event.xbutton.window, True, mask, &event);
        XSync(display, False);
        idle(40);
    };
    send(MotionNotify, y, 0, PointerMotionMask);
    send(ButtonPress, y, 0, ButtonPressMask);
    for (int i = 1; i <= 8; ++i) send(MotionNotify, y - by * i / 8, Button1Mask, PointerMotionMask);
    send(ButtonRelease, y - by, Button1Mask, ButtonReleaseMask);
}

std::string HostWindow::keysThatComeBack(const std::string& letters) {
    XSelectInput(display, parent, KeyPressMask);
    keys_.clear();
    for (const char letter : letters) strike(static_cast<KeySym>(letter));
    return keys_;
}

void HostWindow::strike(KeySym key) {
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.display = display;
    event.xkey.window = widget;
    event.xkey.root = DefaultRootWindow(display);
    event.xkey.keycode = XKeysymToKeycode(display, key);
    event.xkey.same_screen = True;
    XSendEvent(display, widget, True, KeyPressMask, &event);
    XSync(display, False);
    idle(60);
}

std::size_t HostWindow::colours() const {
    XImage* const image = XGetImage(display, widget, 0, 0, 400, 300, AllPlanes, ZPixmap);
    if (!image) fail("no picture of the window");
    std::set<unsigned long> all;
    for (int y = 0; y < 300; y += 3)
        for (int x = 0; x < 400; x += 3) all.insert(XGetPixel(image, x, y));
    XDestroyImage(image);
    return all.size();
}

bool HostWindow::isPainted() const {
    XWindowAttributes is;
    if (!XGetWindowAttributes(display, widget, &is) || is.map_state != IsViewable) return false;
    XImage* const image =
        XGetImage(display, widget, is.width / 2, is.height / 2, 1, 1, AllPlanes, ZPixmap);
    if (!image) return false;
    const bool painted = (XGetPixel(image, 0, 0) & 0xFFFFFF) != 0;
    XDestroyImage(image);
    return painted;
}

bool HostWindow::paintsAgain() {
    XRaiseWindow(display, parent);
    const ::Window above = XCreateSimpleWindow(display, parent, 0, 0, 1100, 700, 0, 0, 0);
    XMapRaised(display, above);
    XSync(display, False);
    const GC black = XCreateGC(display, widget, 0, nullptr);
    XSetSubwindowMode(display, black, IncludeInferiors);
    XDestroyWindow(display, above);
    XFillRectangle(display, widget, black, 0, 0, 8192, 8192);
    XClearArea(display, widget, 0, 0, 0, 0, True); // exposes it
    XFreeGC(display, black);
    XSync(display, False);
    for (int i = 0; i < 100 && !isPainted(); ++i) idle(20);
    return isPainted();
}

} // namespace window_host
