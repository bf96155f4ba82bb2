#include "platform/files/file_stamp.h"

#include "platform/files/file_calls.h"

#include <sys/stat.h>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileStamp stampOf(const struct stat& facts) {
    return {static_cast<std::uint64_t>(facts.st_dev), static_cast<std::uint64_t>(facts.st_ino),
            static_cast<std::uint64_t>(facts.st_size), nanoseconds(facts.st_mtim),
            nanoseconds(facts.st_ctim)};
}

} // namespace

std::optional<FileStamp> fileStamp(const fs::path& path) {
    struct stat facts {};
    if (file_calls::facts(path, facts)) return std::nullopt;
    return stampOf(facts);
}

std::optional<FileStamp> fileStamp(int descriptor, const fs::path& path) {
    struct stat facts {};
    if (file_calls::facts(descriptor, path, facts) || !S_ISREG(facts.st_mode)) return std::nullopt;
    return stampOf(facts);
}

} // namespace zephyra
