// What is remembered of windows.
#include "screens/model/screen_settings_store.h"

#include "platform/text/log.h"
#include "tests/support/testing.h"

#include <sys/wait.h>
#include <unistd.h>

namespace zephyra {
namespace {

TEST(ScreenSettingsStore, RemembersWhatWasChosenAndFallsBackValueByValue) {
    UserDefaults defaults;
    ScreenSettingsStore store(defaults);
    EXPECT_EQ(store.read(), ScreenSettings());
    ScreenSettings chosen;
    chosen.zoom = 1.25;
    chosen.showsScope = false;
    chosen.reducedMotion = true;
    chosen.knobStyle = 2;
    store.write(chosen, {});
    EXPECT_EQ(ScreenSettingsStore(defaults).read(), chosen);

    defaults.setValue(
        "Screen",
        PropertyDictionary{
            {"Zoom", 9.0}, {"KnobStyle", 4}, {"Meter", "off"}, {"Scope", false}, {"Later", 3}});
    EXPECT_EQ(store.read(), (ScreenSettings{.showsScope = false}));
    store.write(chosen, store.read());
    EXPECT_EQ(store.read(), chosen);
    ScreenSettings others = chosen, own = chosen; // two windows
    others.knobStyle = 1;
    own.zoom = 2.0;
    store.write(others, chosen);
    store.write(own, chosen);
    ScreenSettings third = chosen;
    third.showsMeter = false;
    store.write(third, chosen);
    own.knobStyle = 1;
    own.showsMeter = false;
    EXPECT_EQ(store.read(), own);
    store.write(others, chosen);
    EXPECT_EQ(store.read(), own);
    const auto* const kept = defaults.value("Screen")->as<PropertyDictionary>();
    EXPECT_TRUE(kept->at("Later") == PropertyValue(3)); // of a newer program
    defaults.setValue("Screen", "damaged");
    EXPECT_EQ(store.read(), ScreenSettings());
}

TEST(ScreenSettingsStore, KeepsWhatSeveralProgramsChooseInOneInstant) {
    using Choice = void (*)(ScreenSettings&, int round);
    constexpr Choice choices[] = {
        [](ScreenSettings& settings, int round) { settings.zoom = 1.0 + 0.01 * round; },
        [](ScreenSettings& settings, int round) { settings.knobStyle = round % 4; },
        [](ScreenSettings& settings, int round) { settings.showsMeter = round % 2; },
        [](ScreenSettings& settings, int round) { settings.showsScope = round % 2; },
        [](ScreenSettings& settings, int round) { settings.showsSpectrum = round % 2; },
        [](ScreenSettings& settings, int round) { settings.reducedMotion = round % 2 == 0; }};
    constexpr int kRounds = 30;
    const TemporaryFolder folder(quickFolder());
    const fs::path file = folder / "screen.plist";
    std::vector<pid_t> programs;
    ScreenSettings all;
    for (const Choice choose : choices) {
        choose(all, kRounds);
        if (const pid_t program = ::fork(); program != 0) {
            programs.push_back(program);
            continue;
        }
        Log log([](std::string_view) {});
        UserDefaults defaults(file, log);
        ScreenSettings known;
        for (int round = 0; round <= kRounds; ++round) {
            ScreenSettings chosen = known;
            choose(chosen, round);
            ScreenSettingsStore(defaults).write(chosen, known);
            known = chosen;
        }
        ::_exit(comesTrue([&] { return defaults.flush(); }) ? 0 : 1);
    }
    for (const pid_t program : programs) {
        int status = -1;
        EXPECT_EQ(::waitpid(program, &status, 0), program);
        EXPECT_EQ(status, 0);
    }
    Log log;
    UserDefaults defaults(file, log);
    EXPECT_EQ(ScreenSettingsStore(defaults).read(), all);
}

} // namespace
} // namespace zephyra
