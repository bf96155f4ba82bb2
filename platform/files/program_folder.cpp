#include "platform/files/program_folder.h"

#include <dlfcn.h>

namespace zephyra {

namespace fs = std::filesystem;

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
