// The window on a display that has a touch screen: each finger acts once, and none is left behind.
#include "hosting/gesture_listener.h"
#include "screens/desktop/x11_display.h"
#include "screens/zephyra_screen.h"
#include "tests/screens/touch/touch_display.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <map>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {
namespace {

using enum ControlId;
using Act = TouchDisplay::Act;

struct Presses final : juce::MouseListener {
    void mouseDown(const juce::MouseEvent&) override { ++count; }
    int count = 0;
};

struct OnATouchScreen : testing::Test {
    static void SetUpTestSuite() {
        display = new TouchDisplay;
        ::setenv("DISPLAY", display->name().empty() ? ":none" : display->name().c_str(), 1);
    }
    static void TearDownTestSuite() { delete std::exchange(display, nullptr); }

    void SetUp() override {
        if (display->name().empty())
            GTEST_SKIP() << "no Xorg with its input-test driver "
                            "(xserver-xorg-core, xserver-xorg-video-dummy)";
        gui.emplace();
        juce::Desktop::getInstance().getDisplays();
        x11::dropOwnErrors(); // without a window manager JUCE makes some
        open();
    }
    void TearDown() override { screen.reset(); }

    void open() {
        screen = std::make_unique<ZephyraScreen>(plugin);
        screen->addToDesktop(0);
        screen->setVisible(true);
        screen->addMouseListener(&presses, true);
        messages(300);
    }
    static void messages(int milliseconds) {
        const auto end = juce::Time::getMillisecondCounter() + juce::uint32(milliseconds);
        while (juce::Time::getMillisecondCounter() < end)
            if (!juce::dispatchNextMessageOnSystemQueue(true)) juce::Thread::sleep(1);
    }
    template <typename Area>
    Area& area() {
        for (juce::Component* const child : screen->getChildren())
            if (auto* const one = dynamic_cast<Area*>(child)) return *one;
        std::abort();
    }
    juce::Component& cell(ControlId id) { return *area<PathArea>().knobCell(id); }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    bool scrubs() { return plugin.system().stream().scrubArea.isHeld(); }
    /// So many pixels above a component's middle.
    void touch(std::uint32_t finger, Act act, juce::Component& on, int above = 0) {
        const auto at = on.getScreenBounds().getCentre();
        display->touch(finger, act, at.x, at.y - above);
        messages(60);
    }
    void enableScreen(bool on) {
        ::Display* const x = ::XOpenDisplay(nullptr);
        int count = 0;
        XIDeviceInfo* const devices = ::XIQueryDevice(x, XIAllDevices, &count);
        for (int i = 0; i < count; ++i) {
            unsigned char value = on;
            if (std::string(devices[i].name) == "touch")
                ::XIChangeProperty(x, devices[i].deviceid,
                                   ::XInternAtom(x, "Device Enabled", False), XA_INTEGER, 8,
                                   XIPropModeReplace, &value, 1);
        }
        ::XIFreeDeviceInfo(devices);
        ::XCloseDisplay(x);
        messages(100);
    }

    static inline TouchDisplay* display = nullptr;
    std::optional<juce::ScopedJuceInitialiser_GUI> gui;
    HostedPlugin plugin{PluginKind::effect};
    std::map<AUParameterAddress, int> begun, ended;
    GestureListener gestures{plugin.system(), [this](const AUParameterAutomationEvent& event) {
                                 using enum AUParameterAutomationEventType;
                                 if (event.eventType == touch) ++begun[event.address];
                                 if (event.eventType == release) ++ended[event.address];
                             }};
    Presses presses;
    std::unique_ptr<ZephyraScreen> screen;
};

TEST_F(OnATouchScreen, EachFingerActsOnce) {
    // What knows nothing of touches has a finger as the mouse that the server makes of it.
    juce::Component other;
    Presses others;
    other.addMouseListener(&others, false);
    other.setBounds(1120, 100, 100, 100);
    other.addToDesktop(0);
    other.setVisible(true);
    messages(200);
    touch(1, Act::begin, other);
    touch(1, Act::end, other);
    EXPECT_EQ(others.count, 1);

    plugin.main(), knob(density).setKnobInteractionStyle(kVertical);
    plugin.main(), knob(pitch).setKnobInteractionStyle(kVertical);
    const float before[] = {knob(density).value(), knob(pitch).value()};
    touch(1, Act::begin, area<StageArea>());
    touch(2, Act::begin, cell(density));
    touch(3, Act::begin, cell(pitch));
    EXPECT_TRUE(scrubs());
    touch(1, Act::update, area<StageArea>(), 40); // else it rests, and holds
    for (const int above : {15, 30, 45}) {
        touch(2, Act::update, cell(density), -above);
        touch(3, Act::update, cell(pitch), above);
    }
    EXPECT_LT(knob(density).value(), before[0]);
    EXPECT_GT(knob(pitch).value(), before[1]);
    touch(2, Act::end, cell(density));
    touch(1, Act::end, area<StageArea>());
    touch(3, Act::end, cell(pitch));
    EXPECT_EQ(presses.count, 0); // none of them was a mouse
    EXPECT_FALSE(scrubs());
    EXPECT_EQ(begun.size(), 3u);
    EXPECT_EQ(begun, ended);
}

TEST_F(OnATouchScreen, ATapPressesAButtonOnce) {
    juce::Component* play = nullptr;
    for (juce::Component* const child : area<TopArea>().getChildren())
        if (!play && child->getTitle().containsIgnoreCase("play")) play = child;
    ASSERT_TRUE(play);
    const bool played = plugin.plays();
    touch(1, Act::begin, *play);
    touch(1, Act::end, *play);
    EXPECT_EQ(presses.count, 1);
    EXPECT_NE(plugin.plays(), played);
    EXPECT_FALSE(juce::Desktop::getInstance().getMainMouseSource().isDragging());
}

TEST_F(OnATouchScreen, NothingStaysHeldWhenTheScreenGoes) {
    touch(1, Act::begin, area<StageArea>());
    touch(2, Act::begin, cell(density));
    EXPECT_TRUE(scrubs());
    enableScreen(false);
    EXPECT_FALSE(scrubs());
    EXPECT_EQ(begun, ended);
    enableScreen(true); // and it comes back
    display->reconnect();
    touch(3, Act::begin, area<StageArea>());
    EXPECT_TRUE(scrubs());
    screen.reset(); // the window goes under the finger
    EXPECT_FALSE(scrubs());
    EXPECT_EQ(begun, ended);
    display->touch(3, Act::end, 0.0, 0.0);
    open();
    touch(4, Act::begin, cell(density));
    EXPECT_TRUE(knob(density).isTracking());
    touch(4, Act::end, cell(density));
    EXPECT_EQ(begun, ended);
}

TEST_F(OnATouchScreen, OpeningsLeaveNoConnectionBehind) {
    const auto files = [] {
        const fs::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const auto before = files();
    for (int i = 0; i < 10; ++i) {
        screen.reset();
        open();
    }
    EXPECT_EQ(files(), before);
}

} // namespace
} // namespace zephyra
