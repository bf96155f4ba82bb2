// Where what comes with the program is looked for, from every place that it may stand in.
#include "platform/files/folders.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Folders, WhatIsInstalledIsFoundFromEveryPlaceThatHostsLoadFrom) {
    ::setenv("HOME", "/home/ada", 1); // of a process of its own
    ::setenv("XDG_DATA_DIRS", "/usr/local/share/:relative:/usr/share", 1);
    // A bundle that was copied finds what it was built with, then what is installed.
    const std::vector<fs::path> elsewhere = {"/built", "/home/ada/.local/share/z",
                                             "/usr/local/share/z", "/usr/share/z"};
    const std::pair<const char*, std::vector<fs::path>> cases[] = {
        {"/usr/bin", {"/usr/share/z"}},
        {"/opt/zephyra/bin", {"/opt/zephyra/share/z"}},
        {"/usr/lib/lv2/zephyra.lv2", {"/usr/share/z"}},
        {"/usr/lib64/lv2/zephyra.lv2", {"/usr/share/z"}},
        {"/usr/lib/x86_64-linux-gnu/lv2/zephyra.lv2", {"/usr/share/z"}},
        {"/usr/local/lib/vst3/Zephyra.vst3/Contents/x86_64-linux", {"/usr/local/share/z"}},
        {"/home/ada/.local/lib/vst3/Zephyra.vst3/Contents/x86_64-linux",
         {"/home/ada/.local/share/z"}},
        // The innermost prefix comes first: a chroot, or a folder that is called like one.
        {"/home/ada/lib/root/usr/lib/lv2/zephyra.lv2",
         {"/home/ada/lib/root/usr/share/z", "/home/ada/share/z"}},
        {"/home/ada/.lv2/zephyra.lv2", {}},
        {"/home/ada/.vst3/Zephyra.vst3/Contents/x86_64-linux", {}},
        {"/home/ada/libzephyra/release/cli", {}},
        {"/", {}},
        {"", {}}};
    for (auto [folder, places] : cases) {
        places.insert(places.end(), elsewhere.begin(), elsewhere.end());
        EXPECT_EQ(installedPlaces(folder, "share/z", "/built"), places) << folder;
    }
    EXPECT_THAT(
        installedPlaces("/usr/bin", "lib/z", ""),
        ElementsAre("/usr/lib/z", "/home/ada/.local/lib/z", "/usr/local/lib/z", "/usr/lib/z"));
    ::setenv("XDG_DATA_DIRS", "", 1);
    EXPECT_THAT(installedPlaces("", "lib/z", ""),
                ElementsAre("/home/ada/.local/lib/z", "/usr/local/lib/z", "/usr/lib/z"));
}

TEST(Folders, WhatAUsersProgramsRememberFollowsTheDesktopsConvention) {
    const struct {
        const char *config, *home;
        std::vector<fs::path> folders;
    } rows[] = {
        {"/set", "/home/ada", {"/set/zephyra", "/home/ada/.local/state/zephyra"}},
        {"relative", "/home/ada", {"/home/ada/.config/zephyra", "/home/ada/.local/state/zephyra"}},
        {"", "ada", {"", ""}}};
    ::unsetenv("XDG_STATE_HOME");
    for (const auto& [config, home, folders] : rows) {
        ::setenv("XDG_CONFIG_HOME", config, 1);
        ::setenv("HOME", home, 1);
        EXPECT_EQ((std::vector{userFolders().config, userFolders().state}), folders) << config;
    }
}

} // namespace
} // namespace zephyra
