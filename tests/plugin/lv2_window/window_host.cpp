// window_host SCENARIO [TIMES]: shows LV2 windows as a host does that is nothing but Xlib, and
// prints what it saw. Any other X client's error would end it, as it would end a real host.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <utility>

namespace {

const std::string kBundle = std::string(ZEPHYRA_LV2_BUNDLE) + "/";

[[noreturn]] void fail(const std::string& why) {
    std::printf("failed: %s\n", why.c_str());
    std::fflush(stdout);
    std::_Exit(3);
}

template <typename Function>
Function entry(const char* library, const char* name) {
    void* const handle = dlopen((kBundle + library).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) fail(dlerror());
    const auto found = reinterpret_cast<Function>(dlsym(handle, name));
    return found ? found : (fail(name), found);
}

LV2_URID mapUri(LV2_URID_Map_Handle, const char* uri) {
    static std::map<std::string, LV2_URID> all;
    return all.try_emplace(uri, static_cast<LV2_URID>(all.size() + 1)).first->second;
}

struct Plugin {
    explicit Plugin(std::uint32_t index) {
        descriptor = entry<LV2_Descriptor_Function>("zephyra.so", "lv2_descriptor")(index);
        LV2_URID_Map map{nullptr, mapUri};
        const LV2_Feature feature{LV2_URID__map, &map};
        const LV2_Feature* const features[] = {&feature, nullptr};
        handle = descriptor->instantiate(descriptor, 48000.0, kBundle.c_str(), features);
        if (!handle) fail("no instance");
    }
    ~Plugin() { descriptor->cleanup(handle); }
    const LV2_Descriptor* descriptor;
    LV2_Handle handle;
};

struct Window {
    Window(Display* server, Plugin& of) : display(server) {
        parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1100, 700, 0, 0, 0);
        XMapWindow(display, parent);
        XSync(display, False);
        const LV2UI_Resize resize{this, [](LV2UI_Feature_Handle window, int width, int height) {
                                      auto& self = *static_cast<Window*>(window);
                                      XResizeWindow(self.display, self.parent,
                                                    static_cast<unsigned>(width),
                                                    static_cast<unsigned>(height));
                                      return 0;
                                  }};
        const LV2_Feature instance{LV2_INSTANCE_ACCESS_URI, of.handle};
        const LV2_Feature parentFeature{LV2_UI__parent, reinterpret_cast<void*>(parent)};
        const LV2_Feature resizing{LV2_UI__resize, const_cast<LV2UI_Resize*>(&resize)};
        const LV2_Feature* const features[] = {&instance, &parentFeature, &resizing, nullptr};
        descriptor = entry<LV2UI_DescriptorFunction>("zephyra_window.so", "lv2ui_descriptor")(0);
        handle = descriptor->instantiate(
            descriptor, of.descriptor->URI, kBundle.c_str(),
            [](LV2UI_Controller window, std::uint32_t port, std::uint32_t, std::uint32_t,
               const void*) { static_cast<Window*>(window)->written.insert(port); },
            this, &widget, features);
        if (!handle || !widget) fail("no window");
        idleInterface = static_cast<const LV2UI_Idle_Interface*>(
            descriptor->extension_data(LV2_UI__idleInterface));
    }
    void close() {
        if (handle) descriptor->cleanup(std::exchange(handle, nullptr));
    }
    ~Window() {
        close();
        if (parent) XDestroyWindow(display, parent);
        XSync(display, False);
    }
    void idle(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 20) {
            idleInterface->idle(handle);
            while (XPending(display)) {
                XEvent event;
                XNextEvent(display, &event);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    /// A hand's drag upwards.
    void drag(int x, int y, int by) {
        const auto send = [&](int type, int at, unsigned state, long mask) {
            XEvent event{};
            event.xbutton.type = type;
            event.xbutton.display = display;
            event.xbutton.window = reinterpret_cast<::Window>(widget);
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
        for (int i = 1; i <= 8; ++i)
            send(MotionNotify, y - by * i / 8, Button1Mask, PointerMotionMask);
        send(ButtonRelease, y - by, Button1Mask, ButtonReleaseMask);
    }
    /// How many colours are seen in it.
    std::size_t colours() {
        XImage* const image = XGetImage(display, reinterpret_cast<::Window>(widget), 0, 0, 400, 300,
                                        AllPlanes, ZPixmap);
        if (!image) fail("no picture of the window");
        std::set<unsigned long> all;
        for (int y = 0; y < 300; y += 3)
            for (int x = 0; x < 400; x += 3) all.insert(XGetPixel(image, x, y));
        XDestroyImage(image);
        return all.size();
    }

    Display* display;
    ::Window parent;
    const LV2UI_Descriptor* descriptor;
    LV2UI_Handle handle;
    LV2UI_Widget widget = nullptr;
    const LV2UI_Idle_Interface* idleInterface;
    std::set<std::uint32_t> written;
};

long kilobytes() {
    std::ifstream status("/proc/self/statm");
    long all = 0, resident = 0;
    status >> all >> resident;
    return resident * 4;
}

void run(const std::string& scenario, int times, Display* display) {
    Plugin effect(0), instrument(1);
    if (scenario == "loop") {
        long before = 0;
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < times; ++i) {
            Window window(display, i % 2 ? effect : instrument);
            if (i % 3 == 0) window.idle(40);
            if (i == 10) before = kilobytes();
        }
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        std::printf("%d openings, %.1f ms each, grew by %ld kB\n", times,
                    1000 * took.count() / times, kilobytes() - before);
    } else if (scenario == "paint") {
        Window one(display, effect), two(display, instrument);
        one.idle(400);
        two.idle(400);
        std::printf("%zu and %zu colours\n", one.colours(), two.colours());
        const auto* const resize =
            static_cast<const LV2UI_Resize*>(one.descriptor->extension_data(LV2_UI__resize));
        resize->ui_resize(one.handle, 1300, 800);
        one.idle(200);
        XWindowAttributes attributes;
        XGetWindowAttributes(display, reinterpret_cast<::Window>(one.widget), &attributes);
        std::printf("resized to %d x %d\n", attributes.width, attributes.height);
    } else if (scenario == "hand") {
        Window window(display, instrument);
        window.idle(300);
        window.drag(142, 484, 40);
        window.idle(300);
        std::printf("wrote %zu ports, density %s\n", window.written.size(),
                    window.written.contains(5) ? "moved" : "stood");
    } else if (scenario == "orphan") {
        for (int i = 0; i < times; ++i) {
            Window window(display, effect);
            window.idle(60);
            XDestroyWindow(display, std::exchange(window.parent, 0));
            XSync(display, False);
            window.idle(60);
        }
        std::puts("survived its parent");
    } else if (scenario == "exit") {
        Window window(display, effect), other(display, instrument);
        window.idle(100);
        std::puts("exits");
        std::fflush(stdout);
        std::exit(0);
    } else {
        fail("knows loop, paint, hand, orphan and exit");
    }
}

} // namespace

int main(int count, char** words) {
    if (count < 2) fail("needs a scenario");
    Display* const display = XOpenDisplay(nullptr);
    if (!display) fail("no display");
    run(words[1], count > 2 ? std::atoi(words[2]) : 1, display);
    std::puts("done");
    XCloseDisplay(display);
}
