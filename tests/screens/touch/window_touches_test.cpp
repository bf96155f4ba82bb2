// Fingers on the whole window: what they turn, and what a host hears of it.
#include "hosting/gesture_listener.h"
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

#include <map>

namespace zephyra {
namespace {

using enum ControlId;

constexpr ControlId kTen[] = {density,  rndDensity, length, rndLength, pitch,
                              rndPitch, width,      dryWet, amplitude, jittering};

struct TouchedWindow : testing::Test {
    TouchedWindow() {
        screen->setVisible(true);
        screen->frame(0.0);
    }

    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    template <typename Area>
    Area& area() {
        for (juce::Component* const child : screen->getChildren())
            if (auto* const one = dynamic_cast<Area*>(child)) return *one;
        std::abort();
    }
    Point on(const juce::Component& it, double x, double y) {
        const auto at = screen->getLocalPoint(
            &it, juce::Point(x * it.getWidth(), y * it.getHeight()).toFloat());
        return {double{at.x}, double{at.y}};
    }
    void touch(TouchId id, TouchPhase phase, Point at) {
        screen->touches().take({id, phase, at, now += 0.01});
    }
    /// Each finger, identities 1 to 10, comes down on its knob and goes up by 30.
    void turnTen() {
        TouchId id = 0;
        for (const ControlId one : kTen) {
            plugin.main(), knob(one).setKnobInteractionStyle(kVertical);
            touch(++id, TouchPhase::began, on(*area<PathArea>().knobCell(one), 0.5, 0.5));
        }
        id = 0;
        for (const double y : {0.0, 30.0})
            for (TouchId finger = 1; finger <= std::size(kTen); ++finger) {
                Point at = on(*area<PathArea>().knobCell(kTen[finger - 1]), 0.5, 0.5);
                at.y += 15.0 - y;
                touch(finger, TouchPhase::moved, at);
            }
    }
    bool nothingIsHeld() {
        for (const ControlId one : kTen)
            if (knob(one).isTracking()) return false;
        return !plugin.system().stream().scrubArea.isHeld();
    }

    juce::ScopedJuceInitialiser_GUI gui;
    HostedPlugin plugin{PluginKind::effect};
    std::unique_ptr<ZephyraScreen> screen = std::make_unique<ZephyraScreen>(plugin);
    std::map<AUParameterAddress, int> begun, ended;
    GestureListener gestures{plugin.system(), [this](const AUParameterAutomationEvent& event) {
                                 using enum AUParameterAutomationEventType;
                                 if (event.eventType == touch) ++begun[event.address];
                                 if (event.eventType == release) ++ended[event.address];
                             }};
    double now = 1.0;
};

TEST_F(TouchedWindow, TenFingersTurnTenKnobs) {
    std::vector<float> before;
    for (const ControlId one : kTen) before.push_back(knob(one).value());
    turnTen();
    for (std::size_t i = 0; i < std::size(kTen); ++i) {
        EXPECT_TRUE(knob(kTen[i]).isTracking()) << i;
        EXPECT_NE(knob(kTen[i]).value(), before[i]) << i;
    }
    const Point taken = on(*area<PathArea>().knobCell(pitch), 0.5, 0.5);
    touch(11, TouchPhase::began, taken); // another finger has it
    const float held = knob(pitch).value();
    touch(11, TouchPhase::moved, {taken.x, taken.y - 90.0});
    touch(11, TouchPhase::ended, taken);
    EXPECT_EQ(knob(pitch).value(), held);
    for (TouchId id = 1; id <= std::size(kTen); ++id) touch(id, TouchPhase::ended, {NAN, NAN});
    EXPECT_TRUE(nothingIsHeld());
    EXPECT_FALSE(begun.empty());
    EXPECT_EQ(begun, ended);
}

TEST_F(TouchedWindow, LetsGoOfAllThatIsLost) {
    const struct {
        const char* what;
        std::function<void()> happens;
    } kRows[] = {
        {"cancelled",
         [this] {
             for (TouchId id = 1; id < 20; ++id) touch(id, TouchPhase::cancelled, {});
         }},
        {"a dialog", [this] { screen->context().cancelTouches(); }},
        {"identities again",
         [this] {
             for (TouchId id = 1; id < 20; ++id) touch(id, TouchPhase::began, {-5, -5});
         }},
        {"the window closed", [this] { screen.reset(); }},
    };
    for (const auto& row : kRows) {
        begun.clear(), ended.clear();
        turnTen();
        touch(12, TouchPhase::began, on(area<StageArea>(), 0.4, 0.4));
        EXPECT_FALSE(nothingIsHeld()) << row.what;
        row.happens();
        EXPECT_TRUE(nothingIsHeld()) << row.what;
        EXPECT_GE(begun.size(), std::size(kTen)) << row.what;
        EXPECT_EQ(begun, ended) << row.what;
    }
}

TEST_F(TouchedWindow, TwoFingersMoveBothEndsOfTheRegion) {
    MOK_SCRUB_GRANULATOR& stream = plugin.system().stream();
    StageArea& stage = area<StageArea>();
    const auto& [start, end] = [&] {
        std::array<juce::Component*, 2> handles{};
        for (juce::Component* const child : stage.getChildren())
            if (auto* const one = dynamic_cast<RegionHandle*>(child))
                handles[one->getTitle() == "Region end"] = one;
        return handles;
    }();
    const Point left = on(*start, 0.5, 0.5), right = on(*end, 0.5, 0.5);
    const double quarter = stage.getWidth() / 4.0;
    touch(1, TouchPhase::began, left);
    touch(2, TouchPhase::began, right);
    for (const double way : {0.1, 0.5, 1.0}) {
        touch(1, TouchPhase::moved, {left.x + way * quarter, left.y});
        touch(2, TouchPhase::moved, {right.x - way * quarter, right.y});
        screen->frame(now); // the handles follow
    }
    EXPECT_NEAR(stream.regionStart(), 0.225f, 0.01f); // but for the first part, a tap's circle
    EXPECT_NEAR(stream.regionEnd(), 0.775f, 0.01f);
    touch(1, TouchPhase::ended, left);
    EXPECT_FALSE(stage.hands().isHeld(RegionEdge::start));
    EXPECT_TRUE(stage.hands().isHeld(RegionEdge::end));
    touch(2, TouchPhase::cancelled, right);
    EXPECT_FALSE(stage.hands().isHeld(RegionEdge::end));
}

} // namespace
} // namespace zephyra
