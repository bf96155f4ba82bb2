// FileCallGate: the calls by which Zephyra reads and changes files, each of which a test can let
// fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

struct stat;

namespace zephyra {

/// What is about to be called.
enum class FileCall {
    status,
    makeFolder,
    open,
    read,
    write,
    resize,
    permissions,
    flush,
    close,
    lock,
    rename,
    remove,
    list,
    attribute,
};

/// Asked before every call with the file concerned; answers 0 to let it happen, or the errno with
/// which it fails instead (a failing write first writes half of its bytes). It may also end the
/// process.
using FileCallGate = std::function<int(FileCall call, const std::filesystem::path& path)>;

/// gate is asked from now on; an empty one lets everything happen. Returns the gate set before.
/// For tests; nobody may be in a file call meanwhile.
FileCallGate setFileCallGate(FileCallGate gate);

/// Thin wrappers over the system's calls, each through the gate. All but RENDER. Interrupted calls
/// are taken up again.
namespace file_calls {

std::error_code makeFolder(const std::filesystem::path& path);  ///< an existing one is an error
std::error_code makeFolders(const std::filesystem::path& path); ///< with its parents; may exist
/// name's last six characters must be XXXXXX and are replaced.
std::error_code makeUniqueFolder(std::string& name);

/// flags as for open(2), O_CLOEXEC is added; a new file gets mode 0666 less the process's mask.
/// The descriptor, -1 after a failure.
int open(const std::filesystem::path& path, int flags, std::error_code& error);
/// Another descriptor of what is open there; -1 after a failure. For the gate an open.
int duplicate(int descriptor, const std::filesystem::path& path, std::error_code& error);
/// The descriptor is gone also after a failure.
std::error_code close(int descriptor, const std::filesystem::path& path);
/// An empty file; fails with std::errc::file_exists, and changes nothing, when the name is taken.
std::error_code makeFile(const std::filesystem::path& path);
/// All of bytes, or an error.
std::error_code write(int descriptor, std::span<const std::byte> bytes,
                      const std::filesystem::path& path);
/// The same from offset on, wherever the descriptor stands.
std::error_code writeAt(int descriptor, std::uint64_t offset, std::span<const std::byte> bytes,
                        const std::filesystem::path& path);
/// Cuts the open file, or fills it with zeros, to that many bytes.
std::error_code resize(int descriptor, std::uint64_t bytes, const std::filesystem::path& path);
/// As many as there are, at most those of bytes.
std::size_t read(int descriptor, std::span<std::byte> bytes, const std::filesystem::path& path,
                 std::error_code& error);
/// The same from offset on, wherever the descriptor stands.
std::size_t readAt(int descriptor, std::uint64_t offset, std::span<std::byte> bytes,
                   const std::filesystem::path& path, std::error_code& error);
/// What is there to be read now, by one call: fewer bytes than there is room for do not mean the
/// end, none do.
std::size_t readSome(int descriptor, std::span<std::byte> bytes, const std::filesystem::path& path,
                     std::error_code& error);
std::error_code flush(int descriptor, const std::filesystem::path& path);
/// Takes an exclusive lock of the open file; std::errc::operation_would_block while another has it.
std::error_code tryLock(int descriptor, const std::filesystem::path& path);
/// Lets go of it, which closing alone does not do while a forked process has the file open, too.
/// Cannot fail, and the gate is not asked.
void unlock(int descriptor);

std::filesystem::file_status status(const std::filesystem::path& path, std::error_code& error);
/// stat(2), also of an open file.
std::error_code facts(const std::filesystem::path& path, struct stat& facts);
std::error_code facts(int descriptor, const std::filesystem::path& path, struct stat& facts);
/// Absolute and free of links as far as it exists; one that leads nowhere stays.
std::filesystem::path resolved(const std::filesystem::path& path, std::error_code& error);
std::error_code mayWrite(const std::filesystem::path& path); ///< an error when this user may not
/// Every name in folder, in no order; none after an error.
std::vector<std::string> list(const std::filesystem::path& folder, std::error_code& error);
std::error_code permissions(const std::filesystem::path& path, std::filesystem::perms permissions);
std::error_code rename(const std::filesystem::path& from, const std::filesystem::path& to);
/// Fails with std::errc::file_exists, and changes nothing, when something stands at to.
std::error_code renameNew(const std::filesystem::path& from, const std::filesystem::path& to);
std::error_code remove(const std::filesystem::path& path); ///< a missing one is an error
/// Sets an extended attribute; an empty value removes it, and a missing one is no error then.
std::error_code setAttribute(const std::filesystem::path& path, const char* name,
                             const std::string& value);

} // namespace file_calls
} // namespace zephyra
