// Meter, strip and foot on a real instance: what they show, and that they cost nothing while off.
#include "screens/model/foot/foot_boxes.h"
#include "screens/model/foot/foot_line.h"
#include "screens/model/meter/meter_model.h"
#include "screens/model/meter/meter_scale.h"
#include "screens/model/strip/strip_model.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

namespace zephyra {
namespace {

struct Window : HostedPlugin {
    Window() : HostedPlugin(PluginKind::effect) {
        spectrum.spectrum().setColumns(64);
        scope.trace().setColumns(64);
    }
    /// Whether anything that is shown changed.
    bool frame() {
        time.now += time.elapsed = 0.01;
        render();
        readFrameOf(source, time);
        const bool changes[] = {meter.advance(time), spectrum.advance(time), scope.advance(time)};
        return std::ranges::find(changes, true) != std::end(changes);
    }

    ScreenSource source{*this};
    ScreenContext context{.source = source};
    FrameTime time;
    FootLine foot{context};
    MeterModel meter{context};
    SpectrumModel spectrum{context};
    ScopeModel scope{context};
};

TEST(Displays, ShowTheOutputWhileTheyAreOnAndAreFreeWhileOff) {
    Window window;
    window.setBypass(true); // the input, a quarter of full scale
    for (int i = 0; i < 100; ++i) window.frame();
    EXPECT_NEAR(window.meter.meter().channels()[0].rms, -12.0, 0.5);
    EXPECT_GT(window.spectrum.spectrum().decibels()[0], LiveSpectrum::kFloor);
    EXPECT_NEAR(window.scope.trace().columns()[9].high, 0.25f, 1e-3f);
    EXPECT_EQ(window.scope.zoom(), 1);
    for (int i = 0; i < 150; ++i) window.frame();
    EXPECT_EQ(window.scope.zoom(), 2); // there was room for a second

    for (const MenuRow& row : displayMenu(window.context)) row.chosen();
    EXPECT_EQ(window.context.settings,
              (ScreenSettings{.showsMeter = false, .showsScope = false, .showsSpectrum = false}));
    EXPECT_TRUE(window.frame());
    EXPECT_FALSE(window.frame());
    EXPECT_FALSE(window.monitor().levels.watchers.isWatched());
    EXPECT_FALSE(window.monitor().oscilloscope.watchers.isWatched());
    window.spectrum.toggle();
    EXPECT_TRUE(window.frame());
    EXPECT_TRUE(window.monitor().oscilloscope.watchers.isWatched());
}

TEST(ScopeZoom, FallsAtOnceAndRisesInTime) {
    ScopeZoom zoom;
    for (int i = 0; i < 39; ++i) zoom.advance(0.01f, 0.1);
    EXPECT_EQ(zoom.factor(), 8);
    zoom.advance(0.0f, 9.0); // silence keeps it
    EXPECT_EQ(zoom.factor(), 8);
    EXPECT_TRUE(zoom.advance(0.6f, 0.1));
    EXPECT_EQ(zoom.factor(), 1);
}

TEST(MeterScale, GivesTheUpperDecibelsMoreRoom) {
    const MeterBoxes of = meterBoxes(layOut(1100, 700, 1.0));
    EXPECT_EQ(of.bars[0], (Box{10, 36, 9, 288}));
    struct Row {
        double decibels;
        int y; // as drawn
        const char* text;
    };
    for (const auto& [decibels, y, text] :
         {Row{3.0, 0, "+3.0"}, Row{-0.04, 0, "0.0"}, Row{-6.0, 45, "\u22126.0"},
          Row{-12.0, 86, "\u221212.0"}, Row{-48.0, 266, "\u221248.0"},
          Row{LevelMeter::kFloor, 288, "\u2212\u221e"}}) {
        EXPECT_NEAR(meterY(decibels, 288), y, 1) << decibels;
        EXPECT_EQ(meterText(decibels), text);
    }
}

TEST(FootLine, WritesCountsInFourPlaces) {
    const std::pair<std::uint64_t, const char*> rows[] = {
        {0, "0"},         {999, "999"},     {1000, "1.0k"},    {99'949, "99.9k"},
        {99'950, "100k"}, {99'999, "100k"}, {999'499, "999k"}, {999'500, "many"}};
    for (const auto& [count, text] : rows) EXPECT_EQ(countText(count), text);
}

TEST(FootLine, CountsDroppedGrainsFromAClick) {
    Window window;
    window.context.help("Density: grains a second");
    const auto dense = [&] {
        const auto main = window.main();
        window.system().stream().setDisplayed(ControlId::density, 400.0f);
        window.system().stream().setDisplayed(ControlId::length, 2000.0f);
    };
    dense();
    for (int i = 0; i < 60; ++i) window.frame();
    EXPECT_EQ(window.foot.shown().help, "Density: grains a second");
    EXPECT_NE(window.foot.shown().dropped, "0 dropped");
    EXPECT_TRUE(window.foot.shown().dropsNow);
    window.system().stream().stopAtOnce();
    window.foot.forgetDropped();
    window.frame();
    EXPECT_EQ(window.foot.shown().dropped, "0 dropped");
    EXPECT_FALSE(window.foot.shown().dropsNow);
}

TEST(FootBoxes, LeaveOutTabsOfDrawersThatAreNotThere) {
    const ScreenLayout layout = layOut(800, 520, 1.0);
    const FootBoxes some =
        footBoxes(layout, {.tabs = {0, 60, 0, 0, 0, 40}, .cpu = 60, .dropped = 70});
    EXPECT_EQ(some.tabs[0].width, 0);
    EXPECT_LT(some.tabs[1].x, some.tabs[5].x);
    const FootBoxes all =
        footBoxes(layout, {.tabs = {50, 50, 70, 35, 28, 24}, .cpu = 62, .dropped = 90});
    EXPECT_GE(all.help.x, all.tabs[5].right());
    EXPECT_GE(all.help.width, 160);
    EXPECT_EQ(all.dropped.right(), 788);
}

} // namespace
} // namespace zephyra
