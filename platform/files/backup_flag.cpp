#include "platform/files/backup_flag.h"

#include "platform/files/file_calls.h"

namespace zephyra {

bool skipBackupiCloudForItemAtURL_skip(const std::filesystem::path& file, bool skip) {
    return !file_calls::setAttribute(file, "user.xdg.robots.backup", skip ? "false" : "");
}

} // namespace zephyra
