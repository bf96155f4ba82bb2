#include "library/named_sample.h"

#include <system_error>

namespace zephyra {

namespace fs = std::filesystem;

fs::path namedSample(const fs::path& typed, const Folders& folders) {
    std::error_code error;
    if (typed.empty() || typed.has_parent_path() || fs::exists(typed, error)) return typed;
    for (const fs::path& folder : {folders.shared, folders.resources})
        if (fs::is_regular_file(folder / typed, error)) return folder / typed;
    return typed;
}

} // namespace zephyra
