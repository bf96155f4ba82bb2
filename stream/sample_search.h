// findSample: the file that a reference names, also where its folder or name is another one now.
#pragma once

#include "platform/files/file_bytes.h"
#include "platform/files/folders.h"
#include "platform/sound/file_facts.h"
#include "stream/sample_reference.h"
#include "stream/sample_report.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace zephyra {

struct FoundSample {
    std::filesystem::path path; ///< absolute as far as the folders are; empty: nowhere
    /// Whether it holds what the reference means; true as well when that is not known.
    bool hasContent = false;
    SampleRoad road = SampleRoad::none;
    std::optional<FileBytes> bytes = {}; ///< where it had to be read to know that
};

/// Looks at the reference's path, if that is absolute, its relative path and its file name below
/// the shared and the resource folder, and then through the sound files of the shared folder: the
/// first with the reference's content, else the first of the former that exists. It may read many
/// files, as long as wanted answers true. MAIN or WORKER.
FoundSample findSample(const SampleReference& reference, const Folders& folders, FileFacts& files,
                       const std::function<bool()>& wanted = {});

/// path relative to folder, with generic separators; empty when it is not below, also through
/// links. MAIN or WORKER.
std::string pathBelow(const std::filesystem::path& path, const std::filesystem::path& folder);

} // namespace zephyra
