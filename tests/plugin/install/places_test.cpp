// Libraries that stand where hosts load bundles from, and find what belongs to them.
#include "tests/support/testing.h"

#include <dlfcn.h>

namespace zephyra {
namespace {

struct PlacesTest : testing::Test {
    PlacesTest() {
        fs::create_directories(prefix / "share/zephyra/resources");
        fs::create_directories(prefix / "lib/zephyra/modules");
        fs::copy(AAC_MODULE, prefix / "lib/zephyra/modules");
        for (const char* const name :
             {"ZEPHYRA_RESOURCE_FOLDER", "ZEPHYRA_MODULES", "XDG_DATA_DIRS"})
            ::unsetenv(name);
    }
    /// What a library at place finds; it is opened by path.
    std::pair<fs::path, fs::path> foundFrom(const fs::path& place, const fs::path& path) {
        fs::create_directories(place);
        fs::copy(PLACES_MODULE, place / "plugin.so");
        void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(library, nullptr) << ::dlerror();
        if (!library) return {};
        char resources[4096] = {}, module[4096] = {};
        reinterpret_cast<void (*)(char*, char*, std::size_t)>(::dlsym(library, "findPlaces"))(
            resources, module, sizeof resources);
        return {resources, module};
    }

    TemporaryFolder folder;
    const fs::path prefix = folder / "usr";
};

TEST_F(PlacesTest, FindWhatIsInstalledWithThem) {
    const auto installed = std::pair(prefix / "share/zephyra/resources",
                                     prefix / "lib/zephyra/modules/libzephyra_aac.so");
    for (const char* const place :
         {"lib/lv2/zephyra.lv2", "lib/vst3/Zephyra Instrument.vst3/Contents/x86_64-linux"})
        EXPECT_EQ(foundFrom(prefix / place, prefix / place / "plugin.so"), installed) << place;
    // A link in the user's folder is followed.
    fs::create_directories(folder / ".lv2");
    fs::create_directory_symlink(prefix / "lib/lv2/linked.lv2", folder / ".lv2/zephyra.lv2");
    EXPECT_EQ(foundFrom(prefix / "lib/lv2/linked.lv2", folder / ".lv2/zephyra.lv2/plugin.so"),
              installed);
    // The host stands elsewhere when the library was opened by a path from its current folder.
    const fs::path before = fs::current_path();
    fs::current_path(prefix / "lib/lv2");
    EXPECT_EQ(foundFrom(prefix / "lib/lv2/near.lv2", "near.lv2/plugin.so"), installed);
    fs::current_path(before);
}

TEST_F(PlacesTest, FindWhatTheyWereBuiltWithWhenTheyWereCopied) {
    const fs::path copied = folder / ".vst3/Zephyra.vst3/Contents/x86_64-linux";
    const auto [resources, module] = foundFrom(copied, copied / "plugin.so");
    EXPECT_EQ(resources, fs::path(ZEPHYRA_SOURCE_DIR) / "resources");
    EXPECT_EQ(module, fs::path(AAC_MODULE));
}

} // namespace
} // namespace zephyra
