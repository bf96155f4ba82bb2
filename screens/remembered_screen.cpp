#include "screens/remembered_screen.h"

#include "platform/files/folders.h"
#include "screens/model/screen_settings_store.h"

#include <filesystem>

namespace zephyra {

namespace {

UserDefaults screenDefaults(Log& log) {
    const std::filesystem::path folder = userFolders().config;
    return folder.empty() ? UserDefaults() : UserDefaults(folder / "screen.plist", log);
}

} // namespace

ScreenSettings rememberedSettings() {
    Log nobody([](std::string_view) {}); // a window says what is wrong with the file
    UserDefaults defaults = screenDefaults(nobody);
    return ScreenSettingsStore(defaults).read();
}

std::unique_ptr<ZephyraScreen> makeRememberedScreen(PluginInstance& plugin) {
    auto defaults = std::make_shared<UserDefaults>(screenDefaults(plugin.system().instance.log));
    auto screen = std::make_unique<ZephyraScreen>(plugin, ScreenSettingsStore(*defaults).read());
    ScreenContext& context = screen->context();
    context.settingsChanged = [defaults, &context, known = context.settings,
                               changed = std::move(context.settingsChanged)]() mutable {
        ScreenSettingsStore(*defaults).write(context.settings, known);
        known = context.settings;
        changed();
    };
    return screen;
}

} // namespace zephyra
