#include "stream/reserved_name.h"

#include "platform/files/file_calls.h"
#include "platform/files/incremental_name.h"
#include "platform/sound/audio_file_error.h"

#include <system_error>

namespace zephyra {

Result<std::filesystem::path> reserveName(const std::filesystem::path& folder,
                                          const std::string& base, FirstName first) {
    if (const std::error_code error = file_calls::makeFolders(folder))
        return writeFailure(folder, audioFileStatus(error));
    std::filesystem::path path = folder / (base + ".wav"), last;
    std::error_code error = first == FirstName::plain
                                ? file_calls::makeFile(path)
                                : std::make_error_code(std::errc::file_exists);
    while (error == std::errc::file_exists) {
        path = folder / (getIncrementalNameFromDocumentsFolder(folder, base) + ".wav");
        if (path == last)
            return Failure{path.string() + " is the highest number there is; rename it"};
        error = file_calls::makeFile(path);
        last = path;
    }
    if (error) return writeFailure(path, audioFileStatus(error));
    return path;
}

} // namespace zephyra
