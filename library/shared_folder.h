// prepareSharedFolder: the shared folder as a program finds it on its first start.
#pragma once

#include "platform/files/folders.h"
#include "platform/text/result.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

/// Makes the shared folder when missing and copies the built-in samples there, each once in the
/// folder's life and never over a file that is there: one that the user deleted stays away (a
/// hidden file in the folder remembers what was copied). Fails with one line. MAIN or WORKER.
Result<void> prepareSharedFolder(const Folders& folders);

} // namespace zephyra
