#include "platform/files/folders.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <pwd.h>
#include <sstream>
#include <string>
#include <sys/auxv.h>
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
    const auto places =
        installedPlaces(programFolder(), "share/zephyra/resources", ZEPHYRA_BUILT_RESOURCES);
    const auto found = std::ranges::find_if(places, [](const fs::path& place) {
        std::error_code ignored;
        return fs::is_directory(place, ignored);
    });
    return found == places.end() ? places.front() : *found;
}

/// The prefixes of a desktop's data folders; the user's own stands first.
std::vector<fs::path> knownPrefixes() {
    const char* const named = std::getenv("XDG_DATA_DIRS");
    std::istringstream folders(named && *named ? named : "/usr/local/share:/usr/share");
    std::vector<fs::path> prefixes = {homeFolder() / ".local"};
    for (std::string folder; std::getline(folders, folder, ':');)
        if (fs::path(folder).is_absolute()) prefixes.push_back(fs::path(folder) / "..");
    return prefixes;
}

fs::path absoluteFromEnvironment(const char* name) {
    const fs::path path = fromEnvironment(name);
    return path.is_absolute() ? path : fs::path();
}

fs::path userFolder(const char* name, const char* belowHome) {
    if (const fs::path named = absoluteFromEnvironment(name); !named.empty())
        return named / "zephyra";
    const fs::path home = absoluteFromEnvironment("HOME");
    return home.empty() ? fs::path() : home / belowHome / "zephyra";
}

/// An address of this very library, whatever others of the process call their functions.
const char kHere = 0;

} // namespace

Folders standardFolders() {
    return {inFull(sharedFolder()), inFull(resourceFolder())};
}

UserFolders userFolders() {
    return {userFolder("XDG_CONFIG_HOME", ".config"), userFolder("XDG_STATE_HOME", ".local/state")};
}

std::vector<fs::path> installedPlaces(const fs::path& folder, const fs::path& place,
                                      const fs::path& built) {
    std::vector<fs::path> places;
    for (fs::path above = folder; above.has_relative_path(); above = above.parent_path())
        if (const fs::path name = above.filename();
            name == "bin" || name == "lib" || name == "lib64")
            places.push_back(above.parent_path() / place);
    if (!built.empty()) places.push_back(built);
    for (const fs::path& prefix : knownPrefixes())
        places.push_back((prefix / place).lexically_normal());
    return places;
}

fs::path programFolder() {
    // The program itself is known by what its caller wrote, which PATH may have completed; a
    // library by what it was opened as.
    Dl_info here{}, program{};
    if (::dladdr(&kHere, &here) == 0) return {};
    const bool isProgram =
        ::dladdr(reinterpret_cast<const void*>(::getauxval(AT_ENTRY)), &program) != 0 &&
        program.dli_fbase == here.dli_fbase;
    std::error_code error;
    const fs::path file = fs::canonical(isProgram ? "/proc/self/exe" : here.dli_fname, error);
    return error ? fs::path() : file.parent_path();
}

} // namespace zephyra
