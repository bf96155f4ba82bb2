#include "platform/folders.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// Empty when it is not set.
fs::path fromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value ? fs::path(value) : fs::path();
}

fs::path homeFolder() {
    const fs::path home = fromEnvironment("HOME");
    if (!home.empty()) return home;
    const passwd* const user = ::getpwuid(::geteuid());
    return user && user->pw_dir ? fs::path(user->pw_dir) : fs::path("/");
}

fs::path sharedFolder() {
    const fs::path shared = fromEnvironment("ZEPHYRA_SHARED_FOLDER");
    if (!shared.empty()) return shared;
    // The desktop's convention has relative paths ignored.
    const fs::path data = fromEnvironment("XDG_DATA_HOME");
    return (data.is_absolute() ? data : homeFolder() / ".local/share") / "zephyra";
}

} // namespace

Folders standardFolders() {
    const fs::path resources = fromEnvironment("ZEPHYRA_RESOURCE_FOLDER");
    return {sharedFolder(),
            resources.empty() ? fs::path(ZEPHYRA_RESOURCE_FOLDER_DEFAULT) : resources};
}

} // namespace zephyra
