// expectWholeOrNotAtAll: lets every call by which a file is written fail in turn.
#pragma once

#include "platform/files/file_calls.h"
#include "tests/support/testing.h"

namespace zephyra {

/// Writes the file of that name; whether that succeeded.
using WriteFile = std::function<bool(const fs::path&)>;

/// What one write did, and what stands in the folder afterwards.
struct WriteAttempt {
    bool succeeded = false, keptPermissions = false, removalRefused = false;
    std::vector<std::pair<FileCall, bool>> calls = {}; ///< true: of the folder itself
    std::string content;
    std::ptrdiff_t entries = 0;
};

/// A write over old, if there is one, whose call number failing answers number, and so do all later
/// ones if asked.
inline WriteAttempt attemptToWrite(const WriteFile& write, const std::optional<std::string>& old,
                                   std::size_t failing, int number, bool allLater = false) {
    namespace fs = std::filesystem;
    const TemporaryFolder folder(quickFolder());
    const fs::path target = folder / "target.sd2"; // whose type has a second file
    if (old) writeText(target, *old);
    if (old) fs::permissions(target, fs::perms(0600));
    WriteAttempt result;
    setFileCallGate([&](FileCall call, const fs::path& path) {
        const std::size_t at = result.calls.size();
        result.calls.emplace_back(call, path == folder.path());
        const bool fails = at == failing || (allLater && at > failing);
        result.removalRefused |= fails && call == FileCall::remove;
        return fails ? number : 0;
    });
    result.succeeded = write(target);
    setFileCallGate({});
    result.content = readText(target);
    result.keptPermissions = !old || fs::status(target).permissions() == fs::perms(0600);
    result.entries = folder.entries();
    return result;
}

/// Whatever fails, the old file or the new one stands there and nothing beside; from the first
/// byte to the new name every failure counts. files: how many the write makes.
inline void expectWholeOrNotAtAll(const WriteFile& write, const std::optional<std::string>& old,
                                  std::ptrdiff_t files = 1) {
    const WriteAttempt dry = attemptToWrite(write, old, SIZE_MAX, 0);
    ASSERT_TRUE(dry.succeeded && dry.keptPermissions && dry.entries == files);
    std::size_t first = SIZE_MAX, named = 0;
    std::string lasting; // what makes the bytes, and then the name, outlive a power cut
    for (std::size_t at = 0; at < dry.calls.size(); ++at) {
        const auto [call, ofFolder] = dry.calls[at];
        if (call == FileCall::write) first = std::min(first, at);
        if (call == FileCall::flush) lasting += ofFolder ? 'F' : 'f';
        if (call == FileCall::rename) lasting += 'r', named = at;
    }
    EXPECT_TRUE(lasting.ends_with(files > 1 ? "ffrrF" : "frF")) << lasting;
    ASSERT_LT(first, named);
    for (std::size_t failing = 0; failing < dry.calls.size(); ++failing)
        for (const auto& [number, allLater] :
             {std::pair(ENOSPC, false), {EIO, false}, {EIO, true}}) {
            SCOPED_TRACE(testing::Message() << "call " << failing << ": " << number << allLater);
            const WriteAttempt got = attemptToWrite(write, old, failing, number, allLater);
            EXPECT_FALSE(got.succeeded && failing >= first && failing <= named);
            EXPECT_TRUE(got.content == (got.succeeded ? dry.content : old.value_or("")));
            EXPECT_TRUE(got.keptPermissions);
            // A second file that has its name is not called back when the first does not get its.
            const bool half = files > 1 && failing == named;
            EXPECT_TRUE(got.removalRefused ||
                        got.entries == (got.succeeded ? files : old.has_value() + half));
        }
}

} // namespace zephyra
