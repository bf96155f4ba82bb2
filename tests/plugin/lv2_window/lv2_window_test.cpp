// The windows of LV2 and VST3 in a host that is nothing but Xlib, with and without shared memory.
#include "tests/support/child_program.h"

namespace zephyra {
namespace {

struct Scenario {
    const char *name, *times, *format, *says;
    bool once = false; ///< not without shared memory, too
};

constexpr Scenario kScenarios[] = {
    {"loop", "16", "lv2", "beside another: 0 files", true},
    {"loop", "16", "vst3", "beside another: 0 files", true},
    {"loop", "4", "lv2", "beside another: 0 files"},
    {"beside", "1", "", "all paint beside each other", true},
    {"paint", "1", "", "resized to 1300 x 800"},
    {"scale", "1", "", "2200 x 1400, 1650 x 1050, 1100 x 700, 1100 x 700", true},
    {"hand", "1", "", "from 1100 to 1375 in 1375, left qx and qx of"},
    {"drop", "1", "lv2", "q, then asked", true},
    {"drop", "1", "vst3", "q, then asked", true},
    {"orphan", "3", "", "survived its parent"},
    {"exit", "1", "", "exits"}};

/// With a server's options.
struct Lv2Window : testing::TestWithParam<const char*> {};

TEST_P(Lv2Window, OpensClosesAndOutlivesWhatHostsDoToIt) {
    HiddenDisplay hidden(GetParam());
    const std::string display = hidden.name();
    if (display.empty()) GTEST_SKIP() << "Xvfb is not installed (xvfb)";
    for (const Scenario& scenario : kScenarios) {
        if (scenario.once && *GetParam()) continue;
        const TemporaryFolder folder;
        ChildProgram host({WINDOW_HOST, scenario.name, scenario.times, scenario.format},
                          {"DISPLAY=" + display, "HOME=" + folder.path().string()}, folder / "log");
        EXPECT_EQ(host.end(0), 0) << scenario.name << ": " << host.output();
        EXPECT_THAT(host.output(), HasSubstr(scenario.says));
    }
}

INSTANTIATE_TEST_SUITE_P(Servers, Lv2Window, testing::Values("", "-extension MIT-SHM"),
                         [](const auto& one) { return *one.param ? "Plain" : "SharedMemory"; });

} // namespace
} // namespace zephyra
