// findSample: the file that a reference names, also where its folder or name is another one now.
#pragma once

#include "platform/folders.h"
#include "stream/sample_reference.h"

#include <filesystem>
#include <functional>

namespace zephyra {

/// Of the reference's path, its relative path below the shared folder, and its file name in the
/// shared and the resource folder, the first file with the reference's content, else the first that
/// exists, else any file of the shared folder with that content; the reference's path when there is
/// none. It may read many files, as long as wanted answers true. MAIN or WORKER.
std::filesystem::path findSample(const SampleReference& reference, const Folders& folders,
                                 const std::function<bool()>& wanted = {});

} // namespace zephyra
