#include "platform/files/folders.h"

#include <cstdlib>
#include <dlfcn.h>
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

/// States name files below the folder, wherever the program that reads them runs.
fs::path inFull(const fs::path& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    return error ? path : whole.lexically_normal();
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

fs::path resourceFolder() {
    const fs::path named = fromEnvironment("ZEPHYRA_RESOURCE_FOLDER");
    if (!named.empty()) return named;
    const fs::path installed = (programFolder() / "../share/zephyra").lexically_normal();
    std::error_code ignored;
    if (fs::is_directory(installed, ignored)) return installed;
    return ZEPHYRA_RESOURCE_FOLDER_DEFAULT;
}

} // namespace

Folders standardFolders() {
    return {inFull(sharedFolder()), inFull(resourceFolder())};
}

fs::path programFolder() {
    // A program that was found through PATH is reported without a folder, hence the second way.
    Dl_info info{};
    const bool known = ::dladdr(reinterpret_cast<const void*>(&programFolder), &info) != 0;
    const fs::path object = known && info.dli_fname ? info.dli_fname : "";
    std::error_code error;
    const fs::path file = fs::canonical(object.is_absolute() ? object : "/proc/self/exe", error);
    return error ? fs::path() : file.parent_path();
}

} // namespace zephyra
