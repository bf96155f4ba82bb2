#include "platform/files/file_stamp.h"

#include "platform/files/file_calls.h"

#include <sys/stat.h>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

FileStamp stampOf(const struct stat& facts) {
    return {static_cast<std::uint64_t>(facts.st_dev), static_cast<std::uint64_t>(facts.st_ino),
            static_cast<std::uint64_t>(facts.st_size),
            std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec};
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
