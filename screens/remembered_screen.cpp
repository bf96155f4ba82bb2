#include "screens/remembered_screen.h"

#include "platform/files/folders.h"
#include "screens/model/screen_settings_store.h"

#include <filesystem>

namespace zephyra {

namespace {

UserDefaults screenDefaults(PluginInstance& plugin) {
    Log& log = plugin.system().instance.log;
    const std::filesystem::path folder = userFolders().config;
    if (folder.empty()) return {};
    std::error_code error; // a folder that cannot be made is the write's to complain of
    std::filesystem::create_directories(folder, error);
    return {folder / "screen.plist", log};
}

} // namespace

ScreenSettings rememberedSettings(PluginInstance& plugin) {
    UserDefaults defaults = screenDefaults(plugin);
    return ScreenSettingsStore(defaults).read();
}

std::unique_ptr<ZephyraScreen> makeRememberedScreen(PluginInstance& plugin) {
    auto screen = std::make_unique<ZephyraScreen>(plugin, rememberedSettings(plugin));
    ScreenContext& context = screen->context();
    context.settingsChanged = [&plugin, &context, known = context.settings,
                               changed = std::move(context.settingsChanged)]() mutable {
        // Read anew, since another window may have written what this one does not know.
        UserDefaults defaults = screenDefaults(plugin);
        ScreenSettingsStore(defaults).write(context.settings, known);
        known = context.settings;
        changed();
    };
    return screen;
}

} // namespace zephyra
