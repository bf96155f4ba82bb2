#include "stream/sample_search.h"

#include "platform/content_hash.h"
#include "platform/sound_file.h"

#include <algorithm>
#include <system_error>
#include <vector>

namespace zephyra {

namespace {

using Path = std::filesystem::path;

bool isFile(const Path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

/// Whether a relative path leads to somewhere inside the folder that it begins in.
bool isBelow(const Path& path) {
    const Path normal = path.lexically_normal();
    return !normal.empty() && normal.is_relative() && *normal.begin() != "..";
}

using Wanted = std::function<bool()>;

bool hasContent(const Path& path, const std::string& hash, const Wanted& wanted) {
    const Result<std::string> found = contentHashOfFile(path, wanted);
    return found && found.value() == hash;
}

bool hasSoundExtension(const Path& path) {
    const std::string extension = path.extension().string();
    return !extension.empty() &&
           std::ranges::find(kSoundFileExtensions, std::string_view(extension).substr(1)) !=
               kSoundFileExtensions.end();
}

/// The sound files that stand in folder, by name.
std::vector<Path> soundFiles(const Path& folder) {
    std::vector<Path> files;
    std::error_code ended;
    for (std::filesystem::directory_iterator entry(folder, ended), last; !ended && entry != last;
         entry.increment(ended))
        if (hasSoundExtension(entry->path()) && isFile(entry->path()))
            files.push_back(entry->path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

Path findSample(const SampleReference& reference, const Folders& folders, const Wanted& wanted) {
    const Path path(reference.path), name = path.filename();
    std::vector<Path> candidates = {path, folders.shared / name, folders.resources / name};
    if (const Path below(reference.relativePath); isBelow(below))
        candidates.insert(candidates.begin() + 1, folders.shared / below);
    std::erase_if(candidates, [](const Path& candidate) { return !isFile(candidate); });

    const std::string& hash = reference.contentHash;
    if (candidates.size() == 1 || (hash.empty() && !candidates.empty())) return candidates.front();
    if (hash.empty()) return path;
    for (const Path& candidate : candidates)
        if (hasContent(candidate, hash, wanted)) return candidate;
    if (!candidates.empty()) return candidates.front();
    for (const Path& file : soundFiles(folders.shared))
        if (hasContent(file, hash, wanted)) return file;
    return path;
}

} // namespace zephyra
