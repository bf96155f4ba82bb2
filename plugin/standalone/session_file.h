// SessionFile: what the standalone program keeps from one start to the next.
#pragma once

#include "platform/files/file_lock.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Programs that run at the same time have a file each: the first session-1.plist, the next
/// session-2.plist, held by a lock until the program ends, however it ends. So each goes on with a
/// session that nobody else writes. A file is replaced completely or not at all. MAIN.
class SessionFile {
public:
    static constexpr int kMost = 32; ///< programs at once; one more keeps nothing

    /// In folder, which is made when missing. Fails with one line; then nothing is kept.
    Result<void> open(const std::filesystem::path& folder);
    /// Empty before open().
    const std::filesystem::path& path() const { return path_; }

    /// Nothing where there is none; fails with one line that names the file.
    Result<std::optional<std::vector<std::byte>>> read() const;

    /// Writes state unless it is what was saved last, or empty. Nothing happens before open().
    Result<void> save(std::string_view state);

    /// Keeps the file, if there is one, as session-1.WORD.plist instead of what stands there. Fails
    /// with one line; then it stays, and nothing is saved over it.
    Result<void> setAside(std::string_view word);

private:
    FileLock lock_;
    std::filesystem::path path_;
    std::string saved_;
};

} // namespace zephyra
