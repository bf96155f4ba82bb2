// Finds and opens the AAC module, and gives it files to write to.

#include "platform/sound/aac_codec.h"

#include "platform/files/folders.h"
#include "platform/files/written_file.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <span>
#include <vector>

namespace zephyra {
namespace {

constexpr const char* kModuleFile = "libzephyra_aac.so";
constexpr const char* kEntryPoint = "zephyraAacModule";

std::vector<std::filesystem::path> moduleFolders() {
    std::vector<std::filesystem::path> folders;
    if (const char* named = std::getenv("ZEPHYRA_MODULES"); named && *named)
        folders.emplace_back(named);
    const std::filesystem::path own = programFolder();
    folders.push_back(own);
    const auto installed = installedPlaces(own, "lib/zephyra/modules", ZEPHYRA_BUILT_MODULES);
    folders.insert(folders.end(), installed.begin(), installed.end());
    return folders;
}

Result<const AacModule*> openModule(const std::filesystem::path& file) {
    // Local, so that the decoder's libraries do not mix with a host's; never closed, since those
    // libraries keep thread-local state.
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return Failure{"the AAC module cannot be loaded (" + std::string(dlerror()) +
                       "); install the FFmpeg libraries it was built with"};
    const auto entry = reinterpret_cast<const AacModule* (*)()>(dlsym(handle, kEntryPoint));
    const AacModule* module = entry ? entry() : nullptr;
    if (!module || module->version != kAacModuleVersion)
        return Failure{file.string() + " is of another version of Zephyra; install both from the "
                                       "same build"};
    return module;
}

Result<const AacModule*> findModule() {
    std::string lookedIn;
    for (const auto& folder : moduleFolders()) {
        const auto file = folder / kModuleFile;
        std::error_code ignored;
        if (std::filesystem::exists(file, ignored)) return openModule(file);
        lookedIn += (lookedIn.empty() ? "" : ", ") + folder.string();
    }
    return Failure{"m4a files need " + std::string(kModuleFile) + ", which is not in " + lookedIn +
                   "; set ZEPHYRA_MODULES to its folder"};
}

int put(void* file, const std::uint8_t* bytes, std::uint32_t count) {
    auto& to = *static_cast<WrittenFile*>(file);
    to.write(std::as_bytes(std::span(bytes, count)));
    return to.error().value();
}

int seek(void* file, std::uint64_t position) {
    static_cast<WrittenFile*>(file)->seek(position);
    return 0;
}

} // namespace

AacTarget aacTarget(WrittenFile& file) noexcept {
    return {&file, put, seek};
}

Result<const AacModule*> aacModule() {
    static const Result<const AacModule*> module = findModule();
    return module;
}

} // namespace zephyra
