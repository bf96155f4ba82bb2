// FileFacts: what is known of sound files, so that nothing is read again to learn it.
#pragma once

#include "platform/files/file_bytes.h"
#include "platform/sound/sound_file.h"
#include "platform/text/result.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace zephyra {

/// Content hashes and headers by path and stamp: a file that has changed is read again. What was
/// learnt of a file that was written less than 2 s before is right for that moment and not kept
/// (FileStamp::isSettledAt). May be shared by any number of instances, and each kept fact takes a
/// few hundred bytes. Everything is MAIN or WORKER, also at the same time: whoever asks about a
/// file that another one reads waits for him instead of reading it as well.
class FileFacts {
public:
    /// As long as it answers true, a file is read on; empty: to its end.
    using Wanted = std::function<bool()>;

    struct Hashed {
        std::string hash;
        std::optional<FileBytes> bytes = {}; ///< where the file had to be opened for it
    };

    /// The hash of the file at path, with the failures of openToHash and contentHash.
    Result<Hashed> contentHash(const std::filesystem::path& path, const Wanted& wanted = {});
    /// The same of an opened file, whatever its name stands for by now.
    Result<std::string> contentHash(const FileBytes& file, const Wanted& wanted = {});
    /// Only what is known; the file is not opened.
    std::optional<std::string> knownHash(const std::filesystem::path& path);

    /// The readSoundFileInfo of path, with the same failures.
    Result<SoundFileInfo> soundInfo(const std::filesystem::path& path);

private:
    struct Facts {
        FileStamp stamp;
        std::string hash; // empty: not known
        std::optional<SoundFileInfo> info;
    };
    struct Entry {
        std::mutex reading; // held while the file is
        Facts facts;
    };
    Entry& entryOf(const std::filesystem::path& path);
    static Facts& factsOf(Entry& entry, const FileStamp& stamp);
    static void forgetUnsettled(Entry& entry, const FileBytes& file);
    static std::optional<std::string> hashIn(const Entry& entry, const std::filesystem::path& path);
    static Result<std::string> hashIn(Entry& entry, const FileBytes& file, const Wanted& wanted);

    std::mutex mutex_;
    std::map<std::filesystem::path, Entry> entries_; // none ever goes
};

} // namespace zephyra
