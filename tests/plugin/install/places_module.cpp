// As much of a plug-in as looks for what was installed with it.
#include "platform/files/folders.h"
#include "platform/sound/aac_codec.h"

#include <cstring>
#include <dlfcn.h>

/// The resources' folder and the AAC module's file, or why there is none, as a plug-in finds them.
extern "C" void findPlaces(char* resources, char* module, std::size_t size) {
    std::strncpy(resources, zephyra::standardFolders().resources.c_str(), size - 1);
    const auto aac = zephyra::aacModule();
    Dl_info info{};
    const bool found = aac && ::dladdr(aac.value(), &info);
    std::strncpy(module, found ? info.dli_fname : aac.message().c_str(), size - 1);
}
