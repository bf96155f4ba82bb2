// window_host SCENARIO [TIMES [FORMAT]]: shows windows as a host does that is nothing but Xlib, and
// prints what it saw. Any other X client's error would end it, as it would end a real host.
#include "tests/plugin/lv2_window/file_drag.h"
#include "tests/plugin/lv2_window/lv2_host.h"
#include "tests/plugin/lv2_window/second_window.h"
#include "tests/plugin/lv2_window/vst3_host.h"
#include "tests/plugin/lv2_window/x_resources.h"
#include "tests/support/process_use.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace window_host {
namespace {

using zephyra::ProcessUse;

/// How windows of a format are opened, of two instances in turn.
using Open = std::function<std::unique_ptr<HostWindow>(int turn)>;

template <typename Plugin, typename Window>
Open opensOf(Display* display) {
    return [display, one = std::make_shared<Plugin>(false),
            other = std::make_shared<Plugin>(true)](int turn) -> std::unique_ptr<HostWindow> {
        return std::make_unique<Window>(display, turn % 2 ? *one : *other);
    };
}

void waitForPaint(HostWindow& window) {
    for (int i = 0; i < 200 && !window.isPainted(); ++i) window.idle(20);
    if (!window.isPainted()) fail("not painted within four seconds");
}

/// Opens and closes until nothing is new any more, then so often, and fails where anything grew.
/// beside: a window that stays, or null.
void loop(const Open& open, int times, HostWindow* beside) {
    constexpr int kSettles = 6;
    // Bytes: letters that JUCE keeps for the next time, and the heap's own waste.
    constexpr long kKept = 400'000, kWasteEach = 1024;
    ProcessUse before;
    long resources = 0;
    for (int i = 0; i < kSettles + times; ++i) {
        if (i == kSettles) {
            before = ProcessUse::now();
            if (beside) resources = xResources(beside->widget);
        }
        const auto window = open(beside ? 1 : i); // VST3 has one window an instance
        if (i % 4 < 2) waitForPaint(*window);
        window->close();
    }
    const ProcessUse grown = ProcessUse::now() - before;
    if (beside) resources = xResources(beside->widget) - resources;
    std::printf("%d openings %s: %ld files, %ld threads, %ld X resources, %ld bytes of heap and "
                "%ld kB of memory more\n",
                times, beside ? "beside another" : "alone", grown.files, grown.threads, resources,
                grown.heap, grown.resident / 1024);
    if (grown.files > 0 || grown.threads > 0 || resources > 0 ||
        grown.heap > kKept + times * kWasteEach)
        fail("it leaks");
}

/// From the host's call to the first paint.
void time(const Open& open, int times) {
    std::vector<double> all;
    for (int i = 0; i < times; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const auto window = open(i);
        while (!window->isPainted()) window->idle(1);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        all.push_back(took.count());
    }
    std::printf("the first one painted after %.0f ms, ", all.front());
    std::ranges::sort(all);
    std::printf("then %.0f, at most %.0f\n", all[all.size() / 2], all.back());
}

void paint(Display* display, Lv2Plugin& effect, Lv2Plugin& instrument) {
    Lv2Window one(display, effect), two(display, instrument);
    one.idle(400);
    two.idle(400);
    std::printf("%zu and %zu colours\n", one.colours(), two.colours());
    one.resize(1300, 800);
    one.idle(200);
    XWindowAttributes attributes;
    XGetWindowAttributes(display, one.widget, &attributes);
    std::printf("resized to %d x %d\n", attributes.width, attributes.height);
}

/// As large as a host wants it that knows how fine the display is.
void scale(Display* display, Lv2Plugin& effect) {
    for (const float factor : {2.0f, 1.5f, -2.0f, NAN}) {
        Lv2Window window(display, effect, &factor);
        waitForPaint(window);
        XWindowAttributes own;
        XGetWindowAttributes(display, window.widget, &own);
        std::printf("%d x %d, ", own.width, own.height);
    }
}

/// Larger by the settings, whose rows are tried until one of them is the zoom.
void zoom(Lv2Window& window) {
    XWindowAttributes own, around;
    XGetWindowAttributes(window.display, window.widget, &own);
    window.drag(own.width - 24, 28, 0);
    const int before = own.width;
    for (int row = 0; row < 12 && own.width == before; ++row) {
        window.strike(XK_Right);
        window.strike(XK_Down);
        XGetWindowAttributes(window.display, window.widget, &own);
    }
    window.strike(XK_Escape);
    XGetWindowAttributes(window.display, window.parent, &around);
    std::printf("zoomed from %d to %d in %d, ", before, own.width, around.width);
}

/// A drag reaches the host's ports, also after another window of the instance has closed, a zoom
/// its window; keys that are not the window's reach the host.
void hand(Display* display, Lv2Plugin& instrument) {
    Lv2Window window(display, instrument);
    Lv2Window(display, instrument).idle(100);
    window.idle(300);
    window.drag(142, 484, 40);
    window.idle(300);
    std::printf("wrote %zu ports, density %s, ", window.written.size(),
                window.written.contains(5) ? "moved" : "stood");
    const std::string ofLv2 = window.keysThatComeBack("qfx");
    zoom(window);
    Vst3Plugin effect(false);
    Vst3Window other(display, effect);
    waitForPaint(other);
    other.drag(500, 200, 8); // else keys are the host's from the start
    const std::string ofVst3 = other.keysThatComeBack("qfx");
    std::printf("left %s and %s of qfx to the host\n", ofLv2.c_str(), ofVst3.c_str());
}

/// A file that is missing is dropped on what the host has moved below the pointer: the dialog that
/// says so takes the keys that came to the host before.
void drop(HostWindow& window) {
    waitForPaint(window);
    XWarpPointer(window.display, None, DefaultRootWindow(window.display), 0, 0, 0, 0, 850, 500);
    window.idle(200);
    window.drag(500, 200, 8);
    XMoveWindow(window.display, window.parent, 600, 300);
    window.idle(200);
    const std::string before = window.keysThatComeBack("q");
    dropFile(window, "file:///no%20where.wav", 1250, 500);
    const std::string after = window.keysThatComeBack("q");
    std::printf("%s, then %s, ", before.c_str(), after.empty() ? "asked" : "nothing");
}

/// An LV2 window, a VST3 window and another JUCE plug-in's, each with JUCE of its own: closed in
/// every order, and what is still open goes on painting.
void beside(Display* display) {
    // The other one needs it where no window manager answers; ours have to pass its errors on.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    Lv2Plugin effect(false);
    Vst3Plugin instrument(true);
    const auto orderly = [&](const std::array<int, 3>& order) {
        std::unique_ptr<HostWindow> all[3];
        const auto allPaint = [&] {
            for (int i = 0; i < 3; ++i)
                if (all[i] && !all[i]->paintsAgain())
                    fail("number " + std::to_string(i) + " stopped to paint");
        };
        for (const int i : order) {
            if (i == 0) all[i] = std::make_unique<Lv2Window>(display, effect);
            if (i == 1) all[i] = std::make_unique<Vst3Window>(display, instrument);
            if (i == 2) all[i] = std::make_unique<SecondWindow>(display);
            allPaint();
        }
        for (const int i : order) {
            all[i].reset();
            allPaint();
        }
    };
    std::array order{0, 1, 2};
    orderly(order);
    const ProcessUse before = ProcessUse::now();
    while (std::next_permutation(order.begin(), order.end())) orderly(order);
    const ProcessUse grown = ProcessUse::now() - before;
    if (grown.threads > 0 || grown.files > 0) fail("a message thread or a connection stayed");
    std::puts("all paint beside each other");
}

void run(const std::string& scenario, int times, bool isVst3, Display* display) {
    const auto open = [&] {
        return isVst3 ? opensOf<Vst3Plugin, Vst3Window>(display)
                      : opensOf<Lv2Plugin, Lv2Window>(display);
    };
    if (scenario == "loop") {
        const Open windows = open();
        loop(windows, times, nullptr);
        const auto stays = windows(0);
        waitForPaint(*stays);
        loop(windows, times, stays.get());
        return;
    }
    if (scenario == "time") return time(open(), times);
    if (scenario == "beside") return beside(display);
    if (scenario == "drop") return drop(*open()(0));
    Lv2Plugin effect(false), instrument(true);
    if (scenario == "paint") {
        paint(display, effect, instrument);
    } else if (scenario == "scale") {
        scale(display, effect);
    } else if (scenario == "hand") {
        hand(display, instrument);
    } else if (scenario == "orphan") {
        for (int i = 0; i < times; ++i) {
            Lv2Window window(display, effect);
            window.idle(60);
            window.destroyParent();
            window.idle(60);
        }
        std::puts("survived its parent");
    } else if (scenario == "exit") {
        Lv2Window window(display, effect), other(display, instrument);
        window.idle(100);
        std::puts("exits");
        std::fflush(stdout);
        std::exit(0);
    } else {
        fail("knows loop, time, beside, drop, paint, scale, hand, orphan and exit");
    }
}

} // namespace
} // namespace window_host

int main(int count, char** words) {
    using namespace window_host;
    if (count < 2) fail("needs a scenario");
    Display* const display = XOpenDisplay(nullptr);
    if (!display) fail("no display");
    run(words[1], count > 2 ? std::atoi(words[2]) : 1, count > 3 && words[3] == std::string("vst3"),
        display);
    std::puts("done");
    XCloseDisplay(display);
}
