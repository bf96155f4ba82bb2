#include "library/shared_folder.h"

#include "library/built_in_samples.h"
#include "platform/files/file_calls.h"
#include "platform/files/whole_file.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <span>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// A name a line, of the samples that were once copied; in the shared folder.
constexpr const char* kMemory = ".zephyra-built-in";
constexpr std::size_t kMostMemoryBytes = 65536;
constexpr std::size_t kMostSampleBytes = std::size_t{64} << 20;

using Names = std::set<std::string, std::less<>>;

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(file_calls::status(path, error));
}

Result<Names> remembered(const fs::path& memory) {
    Names names;
    if (!isThere(memory)) return names;
    const auto file = readWholeFile(memory, kMostMemoryBytes);
    if (!file) return Failure{file.message()};
    std::string name;
    for (const std::byte byte : file.value().bytes) {
        const char c = static_cast<char>(byte);
        if (c != '\n')
            name += c;
        else
            names.insert(std::exchange(name, {}));
    }
    return names;
}

Result<void> remember(const fs::path& memory, const Names& names) {
    std::string lines;
    for (const std::string& name : names) lines += name + "\n";
    return replaceFile(memory, std::as_bytes(std::span(lines)));
}

/// Nothing where a file of that name stands already.
Result<void> copySample(const fs::path& from, const fs::path& to) {
    const auto file = readWholeFile(from, kMostSampleBytes);
    if (!file) return Failure{file.message()};
    if (const Result<bool> created = createFile(to, file.value().bytes); !created)
        return Failure{created.message()};
    return {};
}

} // namespace

Result<void> prepareSharedFolder(const Folders& folders) {
    if (folders.shared.empty()) return Failure{"no shared folder is named; name one"};
    if (const std::error_code error = file_calls::makeFolders(folders.shared))
        return Failure{folders.shared.string() + " cannot be made: " + error.message() +
                       "; a folder that you may write to is needed"};
    const fs::path memory = folders.shared / kMemory;
    Result<Names> names = remembered(memory);
    if (!names) return Failure{names.message()}; // or what the user deleted would come back
    Result<void> result;
    bool isNew = false;
    for (const std::string_view name : kBuiltInSamples) {
        const fs::path from = folders.resources / name;
        if (names.value().contains(name) || folders.resources.empty() || !isThere(from)) continue;
        if (const auto copied = copySample(from, folders.shared / name); !copied) {
            result = copied;
            continue;
        }
        names.value().emplace(name);
        isNew = true;
    }
    if (isNew)
        if (const auto kept = remember(memory, names.value()); !kept) return kept;
    return result;
}

} // namespace zephyra
