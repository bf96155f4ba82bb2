// AtomicFile: a file that appears under its name complete or not at all.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <system_error>

namespace zephyra {

/// Order of calls: open, write to path() by any means and close it there, commit. The file grows in
/// a private folder beside its target, under its final name, so that libraries which look at the
/// name or leave a second file beside it need no special care. What stood at the target stays until
/// commit and, when the file is abandoned, for good. Not copyable; MAIN or WORKER.
class AtomicFile {
public:
    AtomicFile() = default;
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;
    ~AtomicFile() { abandon(); }

    /// Makes the private folder, after abandoning what was open before. A symbolic link is
    /// followed: the file it names is replaced, not the link (one that leads nowhere is). Refused:
    /// a missing or unwritable folder, an existing file that may not be written to, and a target
    /// that is no ordinary file (a folder, a device, a pipe). Private folders that a process left
    /// there when it died are removed once nothing in them has changed for a day.
    std::error_code open(const std::filesystem::path& target);

    /// Where to write meanwhile; empty when nothing is open.
    const std::filesystem::path& path() const noexcept { return path_; }

    /// Makes path() a file of these bytes, for what is at hand as a whole.
    std::error_code write(std::span<const std::byte> bytes);

    /// Flushes to disk and renames over the target, which keeps its permissions. Files that were
    /// left beside path() go first, to the target's folder. After a failure the target is as it was
    /// and the new file is gone.
    std::error_code commit() { return finish(Target::replaced); }

    /// The same where nothing stands at the target: std::errc::file_exists, and nothing changed,
    /// when something does by now.
    std::error_code commitNew() { return finish(Target::created); }

    /// Removes what was written. Nothing happens when nothing is open.
    void abandon() noexcept;

private:
    enum class Target { replaced, created };
    std::error_code finish(Target target);
    std::error_code renameAll(Target target);

    std::filesystem::path target_;
    std::filesystem::path path_;
};

} // namespace zephyra
