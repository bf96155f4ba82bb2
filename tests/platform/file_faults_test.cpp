// Every call of a write fails in turn: what stands under the name is the old file or the new one.

#include "platform/files/whole_file.h"
#include "tests/support/failing_calls.h"

namespace zephyra {
namespace {

constexpr std::string_view kNew = "what is written over it, and is longer";

bool replace(const std::filesystem::path& path) {
    return replaceFile(path, std::as_bytes(std::span(kNew))).ok();
}

bool create(const std::filesystem::path& path) {
    const auto created = createFile(path, std::as_bytes(std::span(kNew)));
    return created && created.value();
}

TEST(FileFaults, LeaveTheOldFileOrTheNewOneWholeAndNothingBeside) {
    expectWholeOrNotAtAll(replace, "what stood there");
    expectWholeOrNotAtAll(replace, {});
    expectWholeOrNotAtAll(create, {});
}

} // namespace
} // namespace zephyra
