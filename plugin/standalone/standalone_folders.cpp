#include "plugin/standalone/standalone_folders.h"

#include <cstdlib>

namespace zephyra {

namespace {

namespace fs = std::filesystem;

fs::path absoluteFromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    const fs::path path = value ? value : "";
    return path.is_absolute() ? path : fs::path();
}

fs::path folder(const char* name, const char* belowHome) {
    if (const fs::path named = absoluteFromEnvironment(name); !named.empty())
        return named / "zephyra";
    const fs::path home = absoluteFromEnvironment("HOME");
    return home.empty() ? fs::path() : home / belowHome / "zephyra";
}

} // namespace

StandaloneFolders standaloneFolders() {
    return {folder("XDG_CONFIG_HOME", ".config"), folder("XDG_STATE_HOME", ".local/state")};
}

} // namespace zephyra
