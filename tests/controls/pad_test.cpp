// The pad: what its notes may be, what a finger does to its values, what it remembers.

#include "controls/pad.h"
#include "platform/user_defaults.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Pad, FollowsItsFirstFingerAcrossItsNotes) {
    MOK_PAD pad;
    pad.setSize(240.0, 100.0);
    pad.yValueExp = 2.0f;
    pad.xValueExp = -1.0f; // counts as 1
    int changes = 0;
    pad.addTarget(&pad, "v", control_event::valueChanged, [&](Control&) { ++changes; });
    pad.touchesBegan(1, {60.0, 75.0}, 0.0);
    EXPECT_EQ(std::tuple(pad.yValue(), pad.note()), std::tuple(0.0625f, 48.0 + 6.0));
    pad._diatonics = true;
    EXPECT_EQ(pad.note(), 48.0 + 5.0); // between fourth and fifth
    pad.touchesMoved(1, {60.0, 75.0}, 0.1);
    pad.touchesBegan(2, {100.0, 10.0}, 0.1);
    pad.touchesMoved(1, {117.0, -3.0}, 0.1);
    EXPECT_EQ(std::tuple(pad.note(), changes), std::tuple(48.0 + 12.0, 2));
}

TEST(Pad, ComesBackAsItWasOrAsFarAsAStateIsUsable) {
    const std::tuple<PropertyArray, PropertyArray, bool> cases[] = {
        {{1.0, 120.0, 0.125, 1.0}, {1.0, 120.0, 0.125, 1.0}, false},
        {{5.0, 36.0}, {5.0, 36.0, 0.5, 0.5}, false},
        {{3.0}, {2.0, 120.0, 0.5, 0.5}, true},
        {{"3", 30, PropertyArray{}, std::nan("")}, {2.0, 30.0, 0.5, 0.5}, true},
        {{3.9, 50.9}, {3.0, 50.0, 0.5, 0.5}, false},
        {{3.0, 100.0}, {2.0, 100.0, 0.5, 0.5}, false}, // as many as fit above it
        {{-7.0, -7.0}, {1.0, 0.0, 0.5, 0.5}, false},
        {{1e300, -1e300, 1e300}, {10.0, 0.0, 1.0, 0.5}, false}};
    for (int row = 0; const auto& [state, wanted, complains] : cases) {
        MOK_PAD pad;
        pad.saveLoad_XY = true;
        pad.setBaseNote(120.0f);
        EXPECT_EQ(!pad.restoreState(state).empty(), complains) << row;
        EXPECT_EQ(pad.getState(), wanted) << row++;
    }
}

TEST(Pad, KeepsItsDefaultsByChannel) {
    UserDefaults defaults;
    MOK_PAD pad("P"), other("P");
    pad.userDefaults = other.userDefaults = &defaults;
    pad.decrBaseNote();
    pad.incrOctNum();
    pad.setYValue(0.75f);
    pad.saveAsDefault();
    EXPECT_TRUE(defaults.value("_OCT_NUM_P") && !defaults.value("P_X"));
    pad.saveLoad_XY = other.saveLoad_XY = true;
    pad.saveAsDefault();
    other.loadAsDefault();
    EXPECT_EQ(other.getState(), (PropertyArray{3.0, 36.0, 0.5, 0.75}));
}

} // namespace
} // namespace zephyra
