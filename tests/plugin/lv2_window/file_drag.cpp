#include "tests/plugin/lv2_window/file_drag.h"

#include <array>

namespace window_host {
namespace {

/// By the protocol XDND, version 3, on a connection of its own.
class Drag {
public:
    Drag(HostWindow& onto, const std::string& uri) : window_(onto), uri_(uri) {
        XSetSelectionOwner(display_, atom("XdndSelection"), source_, CurrentTime);
    }
    ~Drag() { XCloseDisplay(display_); }
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;

    void send(const char* message, const std::array<long, 4>& data) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window_.widget;
        event.xclient.message_type = atom(message);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(source_);
        for (std::size_t i = 0; i < data.size(); ++i) event.xclient.data.l[i + 1] = data[i];
        XSendEvent(display_, window_.widget, False, 0, &event);
        for (int i = 0; i < 10; ++i) answer();
    }
    long named(const char* name) { return static_cast<long>(atom(name)); }

private:
    Atom atom(const char* name) { return XInternAtom(display_, name, False); }
    void answer() {
        XSync(display_, False);
        window_.idle(20);
        while (XPending(display_)) {
            XEvent event;
            XNextEvent(display_, &event);
            if (event.type != SelectionRequest) continue;
            const XSelectionRequestEvent asked = event.xselectionrequest;
            XChangeProperty(display_, asked.requestor, asked.property, asked.target, 8,
                            PropModeReplace, reinterpret_cast<const unsigned char*>(uri_.data()),
                            static_cast<int>(uri_.size()));
            XEvent given{};
            given.xselection = {SelectionNotify, 0,
                                False,           display_,
                                asked.requestor, asked.selection,
                                asked.target,    asked.property,
                                asked.time};
            XSendEvent(display_, asked.requestor, False, 0, &given);
        }
    }

    HostWindow& window_;
    const std::string uri_;
    Display* const display_ = XOpenDisplay(nullptr);
    const ::Window source_ =
        XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
};

} // namespace

void dropFile(HostWindow& window, const std::string& uri, int x, int y) {
    Drag drag(window, uri + "\r\n");
    const long copy = drag.named("XdndActionCopy");
    drag.send("XdndEnter", {3L << 24, drag.named("text/uri-list"), 0, 0});
    drag.send("XdndPosition", {0, static_cast<long>(x - 1) << 16 | y, CurrentTime, copy});
    drag.send("XdndPosition", {0, static_cast<long>(x) << 16 | y, CurrentTime, copy});
    drag.send("XdndDrop", {0, CurrentTime, 0, 0});
}

} // namespace window_host
