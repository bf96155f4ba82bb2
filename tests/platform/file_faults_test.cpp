// Every call of a write fails in turn: what stands under the name is the old file or the new one.

#include "platform/files/file_calls.h"
#include "platform/files/whole_file.h"
#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>

namespace zephyra {
namespace {

namespace fs = std::filesystem;

const std::string kOld = "what stood there", kNew = "what is written over it, and is longer";

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

bool replace(const fs::path& path) {
    return replaceFile(path, bytesOf(kNew)).ok();
}

bool create(const fs::path& path) {
    const auto created = createFile(path, bytesOf(kNew));
    return created && created.value();
}

struct Attempt {
    bool succeeded = false, removalRefused = false;
    int calls = 0;
    std::string content; ///< of the target afterwards
    bool keptPermissions = false;
    std::ptrdiff_t entries = 0; ///< what stands in the folder then
};

/// One write, whose call number `failing` answers `number`, and so do all later ones if asked.
Attempt attempt(bool (*write)(const fs::path&), bool exists, int failing, int number,
                bool allLater = false) {
    TemporaryFolder folder;
    const fs::path target = folder / "target";
    if (exists) writeText(target, kOld);
    if (exists) fs::permissions(target, fs::perms(0600));
    Attempt result;
    setFileCallGate([&](FileCall call, const fs::path&) {
        const int at = result.calls++;
        const bool fails = at == failing || (allLater && at > failing);
        result.removalRefused |= fails && call == FileCall::remove;
        return fails ? number : 0;
    });
    result.succeeded = write(target);
    setFileCallGate({});
    result.content = readText(target);
    result.keptPermissions = !exists || fs::status(target).permissions() == fs::perms(0600);
    result.entries = folder.entries();
    return result;
}

TEST(FileFaults, LeaveTheOldFileOrTheNewOneWholeAndNothingBeside) {
    const std::pair<bool (*)(const fs::path&), bool> writes[] = {
        {&replace, true}, {&replace, false}, {&create, false}};
    for (const auto& [write, exists] : writes) {
        const Attempt dry = attempt(write, exists, -1, 0);
        ASSERT_TRUE(dry.succeeded && dry.content == kNew && dry.keptPermissions);
        ASSERT_GE(dry.calls, 15);
        const auto check = [&, old = exists ? kOld : ""](const Attempt& got, int failing) {
            EXPECT_EQ(got.content, got.succeeded ? kNew : old) << "call " << failing;
            EXPECT_TRUE(got.keptPermissions) << "call " << failing;
            EXPECT_TRUE(got.removalRefused || got.entries == !got.content.empty()) << failing;
        };
        for (int failing = 0; failing < dry.calls; ++failing) {
            for (const int number : {ENOSPC, EACCES, EIO})
                check(attempt(write, exists, failing, number), failing);
            check(attempt(write, exists, failing, EIO, true), failing);
        }
    }
}

} // namespace
} // namespace zephyra
