#include "screens/remembered_screen.h"

#include "screens/model/screen_settings_store.h"

#include <cstdlib>
#include <filesystem>

namespace zephyra {

namespace {

namespace fs = std::filesystem;

fs::path absoluteFromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    const fs::path path = value ? value : "";
    return path.is_absolute() ? path : fs::path();
}

UserDefaults screenDefaults(PluginInstance& plugin) {
    Log& log = plugin.system().instance.log;
    fs::path folder = absoluteFromEnvironment("XDG_CONFIG_HOME");
    if (const fs::path home = absoluteFromEnvironment("HOME"); folder.empty() && !home.empty())
        folder = home / ".config";
    if (folder.empty()) return {};
    std::error_code error; // a folder that cannot be made is the write's to complain of
    fs::create_directories(folder / "zephyra", error);
    return {folder / "zephyra" / "screen.plist", log};
}

} // namespace

ScreenSettings rememberedSettings(PluginInstance& plugin) {
    UserDefaults defaults = screenDefaults(plugin);
    return ScreenSettingsStore(defaults).read();
}

std::unique_ptr<ZephyraScreen> makeRememberedScreen(PluginInstance& plugin) {
    auto screen = std::make_unique<ZephyraScreen>(plugin, rememberedSettings(plugin));
    ScreenContext& context = screen->context();
    context.settingsChanged = [&plugin, &context, changed = std::move(context.settingsChanged)] {
        // Read anew, since another window may have written what this one does not know.
        UserDefaults defaults = screenDefaults(plugin);
        ScreenSettingsStore(defaults).write(context.settings);
        changed();
    };
    return screen;
}

} // namespace zephyra
