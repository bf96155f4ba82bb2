#include "stream/sample_search.h"

#include "platform/files/folder_entries.h"
#include "platform/sound/sound_file.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

using Path = std::filesystem::path;
using Wanted = std::function<bool()>;

bool isFile(const Path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

/// Whether a relative path leads to somewhere inside the folder that it begins in.
bool isBelow(const Path& path) {
    const Path normal = path.lexically_normal();
    return normal.has_filename() && normal.is_relative() && *normal.begin() != "..";
}

struct NamedFile {
    Path path;
    SampleRoad road;
};

/// The file, if it has that content.
std::optional<FoundSample> foundAt(const NamedFile& file, const std::string& hash, FileFacts& files,
                                   const Wanted& wanted) {
    auto hashed = files.contentHash(file.path, wanted);
    if (!hashed || hashed.value().hash != hash) return std::nullopt;
    return FoundSample{file.path, true, file.road, std::move(hashed.value().bytes)};
}

/// Every file that the reference may mean by its name, the likeliest first.
std::vector<NamedFile> namedFiles(const SampleReference& reference, const Folders& folders) {
    using enum SampleRoad;
    const Path asked(reference.path);
    std::vector<NamedFile> files;
    if (asked.is_absolute()) files.push_back({asked, path});
    for (const Path& below : {Path(reference.relativePath), asked, asked.filename()}) {
        if (!isBelow(below)) continue;
        const SampleRoad shared = below.has_parent_path() ? relativePath : name;
        if (!folders.shared.empty()) files.push_back({folders.shared / below, shared});
        if (!folders.resources.empty()) files.push_back({folders.resources / below, builtIn});
    }
    std::erase_if(files, [](const NamedFile& file) { return !isFile(file.path); });
    return files;
}

/// Whether its content is worth a look; files are seldom renamed to another extension.
bool isCandidate(const std::string& name, const SampleReference& reference) {
    const std::string_view extension = extensionOf(name);
    return extension == extensionOf(reference.path) ||
           std::ranges::find(kSoundFileExtensions, extension) != kSoundFileExtensions.end();
}

std::string relativeTo(const Path& folder, const Path& path) {
    const Path relative = path.lexically_relative(folder);
    if (relative.empty() || *relative.begin() == ".." || relative == ".") return {};
    return relative.generic_string();
}

} // namespace

FoundSample findSample(const SampleReference& reference, const Folders& folders, FileFacts& files,
                       const Wanted& wanted) {
    const std::vector<NamedFile> named = namedFiles(reference, folders);
    const std::string& hash = reference.contentHash;
    if (!hash.empty()) {
        for (const NamedFile& file : named)
            if (auto found = foundAt(file, hash, files, wanted)) return std::move(*found);
        for (const std::string& name : folderEntries(folders.shared))
            if (isCandidate(name, reference))
                if (auto found =
                        foundAt({folders.shared / name, SampleRoad::content}, hash, files, wanted))
                    return std::move(*found);
    }
    if (named.empty()) return {};
    return {named.front().path, hash.empty(), named.front().road, {}};
}

std::string pathBelow(const Path& path, const Path& folder) {
    if (folder.empty()) return {};
    std::string below = relativeTo(folder.lexically_normal(), path.lexically_normal());
    if (!below.empty() || !path.is_absolute()) return below;
    // Either may be named through a link.
    std::error_code error;
    const Path from = std::filesystem::weakly_canonical(folder, error);
    const Path to = error ? Path() : std::filesystem::weakly_canonical(path, error);
    return error ? std::string() : relativeTo(from, to);
}

} // namespace zephyra
