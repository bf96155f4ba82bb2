// What a window does at an X server beside a host: whose errors it drops, and which keys it passes
// on.
#include "tests/screens/desktop/on_a_display.h" // before X's macros

#include "screens/desktop/host_keys.h"
#include "screens/desktop/x11_display.h"

namespace zephyra {
namespace {

struct BesideAHost : OnADisplay {
    /// A request about a window that is none.
    static void err(::Display* display) {
        ::XMapWindow(display, 1);
        ::XSync(display, False);
    }
};

TEST_F(BesideAHost, DropsErrorsOfItsOwnConnectionsAlone) {
    x11::dropOwnErrors();
    x11::dropOwnErrors(); // of a second window
    ::Display* const touches = ::XOpenDisplay(nullptr);
    ASSERT_TRUE(x11::dropErrorsOf(touches));
    const auto told = [](::Display* display) {
        return err(display), std::exchange(hostsErrors, 0);
    };
    EXPECT_EQ(told(juceDisplay()), 0);
    EXPECT_EQ(told(touches), 0);
    EXPECT_EQ(told(host), 1);
    EXPECT_EQ(told(host), 1);
    x11::forgetErrorsOf(touches);
    EXPECT_EQ(told(touches), 1);
    ::XCloseDisplay(touches);

    // Another library's handler above ours, which then takes its place again: they lead round.
    static int others = 0;
    static const ::XErrorHandler ours =
        ::XSetErrorHandler([](::Display* display, ::XErrorEvent* error) {
            ++others;
            return ours(display, error);
        });
    x11::dropOwnErrors();
    x11::dropOwnErrors();
    EXPECT_EQ(told(host), 1);
    EXPECT_EQ(others, 1);
    EXPECT_EQ(told(juceDisplay()), 0);
}

TEST_F(BesideAHost, PassesKeysOnToTheWindowAroundItsOwnAsTheyWere) {
    const ::Window around =
        ::XCreateSimpleWindow(host, DefaultRootWindow(host), 0, 0, 200, 200, 0, 0, 0);
    ::XSelectInput(host, around, KeyPressMask | KeyReleaseMask);
    ::XSync(host, False);
    juce::Component inside;
    inside.setSize(100, 100);
    inside.addToDesktop(0, reinterpret_cast<void*>(around));
    HostKeys keys;
    const auto heard = [&] {
        ::XSync(host, False);
        x11::flush();
        std::string all;
        for (int i = 0; i < 20; ++i, juce::Thread::sleep(2))
            while (::XPending(host)) {
                ::XEvent event;
                ::XNextEvent(host, &event);
                const ::KeySym symbol = ::XLookupKeysym(&event.xkey, 0);
                all += event.type == 2 ? '+' : '-';
                if (event.xkey.state & ControlMask) all += "Ctrl ";
                if (event.xkey.state & ShiftMask) all += "Shift ";
                all += symbol ? ::XKeysymToString(symbol) : "none";
            }
        return all;
    };
    using Key = juce::KeyPress;
    constexpr auto kBoth = juce::ModifierKeys::ctrlModifier | juce::ModifierKeys::shiftModifier;
    const struct {
        Key key;
        const char* heard;
    } rows[] = {{Key('q', {}, 'q'), "+q-q"},
                {Key('s', kBoth, 's'), "+Ctrl Shift s-Ctrl Shift s"},
                {Key(Key::F5Key), "+F5-F5"},
                {Key(Key::leftKey), "+Left-Left"}};
    for (const auto& [key, expected] : rows) {
        keys.passOn(inside, key);
        EXPECT_EQ(heard(), expected);
    }
    keys.passOn(inside, Key('x', {}, 'x'));
    keys.passOn(inside, Key('x', {}, 'x')); // the host gives back what it does not take
    EXPECT_EQ(heard(), "+x-x");

    ::XSelectInput(host, DefaultRootWindow(host), KeyPressMask);
    ::XSync(host, False);
    juce::Component alone;
    alone.setSize(100, 100);
    alone.addToDesktop(juce::ComponentPeer::windowIsTemporary);
    keys.passOn(alone, Key('y', {}, 'y'));
    EXPECT_EQ(heard(), ""); // with no window around it but the display's
}

} // namespace
} // namespace zephyra
