// A pipe is kept whole or not at all: whichever call fails, one line says so.

#include "platform/files/streamed_files.h"
#include "tests/support/counted_reads.h"
#include "tests/support/testing.h"

#include <fcntl.h>
#include <unistd.h>
#include <variant>

namespace zephyra {
namespace {

/// A pipe's reading end, in which all of text stands, and whose writer has gone.
struct FilledPipe {
    explicit FilledPipe(const std::string& text) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) std::abort();
        EXPECT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
        ::close(ends[1]);
        end = ends[0];
        name = "/dev/fd/" + std::to_string(end);
    }
    ~FilledPipe() { ::close(end); }
    int end;
    fs::path name;
};

TEST(StreamedFiles, AreKeptWholeOrFailInOneLineWhicheverCallFails) {
    const TemporaryFolder kept;
    ::setenv("TMPDIR", kept.path().c_str(), 1);
    const auto descriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), {});
    };
    const std::string text(50000, 'x');
    const auto before = descriptors();
    int failing = 0;
    for (bool taken = false; !taken; ++failing) {
        SCOPED_TRACE(failing);
        const FilledPipe pipe(text);
        StreamedFiles streams;
        {
            int call = 0;
            const GateScope gate([&](FileCall kind, const fs::path&) {
                return kind == FileCall::close || call++ != failing ? 0 : EIO;
            });
            const Result<void> result = streams.take(pipe.name, {.mostBytes = text.size()});
            taken = result.ok();
            const std::string line = taken ? "" : result.message();
            EXPECT_TRUE(taken || line.starts_with(pipe.name.string() + " cannot be ")) << line;
        }
        EXPECT_TRUE(fs::is_empty(kept.path()));
        EXPECT_EQ(std::holds_alternative<FileBytes>(streams.open(pipe.name)), taken);
        if (!taken) continue;
        const FilledPipe tooLong(text + "x");
        EXPECT_FALSE(streams.take(tooLong.name, {.mostBytes = text.size()}).ok());
        EXPECT_EQ(std::get<FileBytes>(streams.open(pipe.name)).size(), text.size());
    }
    EXPECT_GE(failing, 9) << "status, folder, file, its removals, two reads, two writes";
    EXPECT_EQ(descriptors(), before);
    ::unsetenv("TMPDIR");
}

TEST(StreamedFiles, KnowStandardInputByEachOfItsNames) {
    for (const char* name : {"-", "/dev/stdin", "/dev/fd/0", "/proc/self/fd/0"})
        EXPECT_TRUE(isStandardInput(name)) << name;
    for (const char* name : {"./-", "/dev/fd/", "/dev/fd/1", "/dev/fd/4294967296"})
        EXPECT_FALSE(isStandardInput(name)) << name;
}

} // namespace
} // namespace zephyra
