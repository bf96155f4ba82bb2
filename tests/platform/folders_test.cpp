// Where what comes with the program is looked for, from every place that it may stand in.
#include "platform/files/folders.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

/// The variable has value while this lives.
struct Environment {
    Environment(const char* name, const char* value) : name_(name) {
        if (const char* const before = std::getenv(name))
            before_ = before;
        else
            wasSet_ = false;
        ::setenv(name, value, 1);
    }
    ~Environment() {
        if (wasSet_)
            ::setenv(name_, before_.c_str(), 1);
        else
            ::unsetenv(name_);
    }
    const char* name_;
    std::string before_;
    bool wasSet_ = true;
};

TEST(Folders, WhatIsInstalledIsFoundFromEveryPlaceThatHostsLoadFrom) {
    const Environment home("HOME", "/home/ada");
    const Environment data("XDG_DATA_DIRS", "/usr/local/share/:relative:/usr/share");
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
    const Environment none("XDG_DATA_DIRS", "");
    EXPECT_THAT(installedPlaces("", "lib/z", ""),
                ElementsAre("/home/ada/.local/lib/z", "/usr/local/lib/z", "/usr/lib/z"));
}

} // namespace
} // namespace zephyra
