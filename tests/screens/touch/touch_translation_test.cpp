// Touches as the X server tells them, and what of them are fingers on the window.
#include "screens/desktop/touch_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace zephyra {
namespace {

constexpr ::Window kWindow = 77;
constexpr int kScreen = 6, kPad = 9;

XIDeviceEvent raw(int type, int finger, double x, double y, ::Time time, int device = kScreen,
                  ::Window window = kWindow) {
    XIDeviceEvent event{};
    event.type = GenericEvent;
    event.evtype = type;
    event.deviceid = 2; // the pointer that it moves
    event.sourceid = device;
    event.detail = finger;
    event.event = window;
    event.event_x = x;
    event.event_y = y;
    event.time = time;
    return event;
}

struct Translated : testing::Test {
    Translated() { translation.setScreens({kScreen}); }
    std::vector<TouchEvent> told;
    TouchTranslation translation{kWindow, [this](const TouchEvent& it) { told.push_back(it); }};
};

TEST_F(Translated, KeepsIdentitiesPlacesAndTimes) {
    translation.take(raw(XI_TouchBegin, 5, 10.5, 20.25, 4'294'967'290)); // soon begins again
    translation.take(raw(XI_TouchUpdate, 5, 30, 40, 4));
    translation.take(raw(XI_TouchBegin, 6, 50, 60, 4));
    translation.take(raw(XI_TouchEnd, 5, 31, 41, 104));
    translation.setScreens({kScreen, kPad});
    translation.take(raw(XI_TouchBegin, 6, 50, 60, 104, kPad)); // with the number of another's
    ASSERT_EQ(told.size(), 5u);
    EXPECT_NE(told[4].id, told[2].id);
    constexpr std::array kPhases = {TouchPhase::began, TouchPhase::moved, TouchPhase::began,
                                    TouchPhase::ended};
    for (std::size_t i = 0; i < kPhases.size(); ++i) EXPECT_EQ(told[i].phase, kPhases[i]) << i;
    EXPECT_EQ(told[0].at, (Point{10.5, 20.25}));
    EXPECT_EQ(told[0].id, told[3].id);
    EXPECT_NE(told[0].id, told[2].id);
    EXPECT_GT(told[0].id, 0xffffffffu); // no mouse's
    EXPECT_NEAR(told[1].time - told[0].time, 0.010, 1e-9);
    EXPECT_NEAR(told[3].time - told[1].time, 0.100, 1e-9);
}

TEST_F(Translated, IgnoresOtherWindowsDevicesAndEvents) {
    translation.take(raw(XI_TouchBegin, 5, 1, 1, 1, kPad));
    translation.take(raw(XI_TouchBegin, 5, 1, 1, 1, kScreen, kWindow + 1));
    translation.take(raw(XI_ButtonPress, 5, 1, 1, 1));
    EXPECT_TRUE(told.empty());
}

TEST_F(Translated, CancelsFingersOfAScreenThatIsGone) {
    translation.setScreens({kScreen, 7});
    translation.take(raw(XI_TouchBegin, 5, 1, 2, 1));
    translation.take(raw(XI_TouchUpdate, 5, 8, 9, 1));
    translation.take(raw(XI_TouchBegin, 6, 3, 4, 1, 7));
    translation.take(raw(XI_TouchBegin, 8, 1, 2, 1));
    translation.take(raw(XI_TouchEnd, 8, 1, 2, 1));
    told.clear();
    translation.setScreens({7});
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].phase, TouchPhase::cancelled);
    EXPECT_EQ(told[0].at, (Point{8, 9})); // where it was last
    translation.take(raw(XI_TouchUpdate, 5, 1, 1, 2));
    EXPECT_EQ(told.size(), 1u);
}

TEST(TouchScreens, AreDevicesWhoseTouchesAreWhereTheFingersAre) {
    const auto finds = [](int use, int type, int mode, bool enabled) {
        XITouchClassInfo touch{type, kScreen, mode, 10};
        XIAnyClassInfo* classes[] = {reinterpret_cast<XIAnyClassInfo*>(&touch)};
        const XIDeviceInfo device{kScreen, nullptr, use, 2, enabled, 1, classes};
        return !TouchTranslation::touchScreens(&device, 1).empty();
    };
    EXPECT_TRUE(finds(XISlavePointer, XITouchClass, XIDirectTouch, true));
    EXPECT_FALSE(finds(XISlavePointer, XITouchClass, XIDependentTouch, true)); // a pad
    EXPECT_FALSE(finds(XISlavePointer, XIValuatorClass, XIDirectTouch, true));
    EXPECT_FALSE(finds(XISlavePointer, XITouchClass, XIDirectTouch, false));
    EXPECT_FALSE(finds(XIMasterPointer, XITouchClass, XIDirectTouch, true)); // has the screen's
}

TEST(TouchReader, IsNotThereWithoutADisplay) {
    EXPECT_EQ(TouchReader::open(":none", kWindow, [](const TouchEvent&) {}), nullptr);
}

} // namespace
} // namespace zephyra
