// contentHash: a fingerprint that finds a sample again wherever it was moved.
#pragma once

#include "platform/files/file_bytes.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

namespace zephyra {

/// The XXH3 hash of 128 bits as 32 lower-case hexadecimal digits. Any thread but RENDER.
std::string contentHash(std::span<const std::byte> bytes);

/// Opens the file for that; fails with one line that names it. MAIN or WORKER.
Result<FileBytes> openToHash(const std::filesystem::path& path);

/// The same of a file's bytes, as many as it had when it was opened, read piece by piece (unless it
/// is loaded) as long as wanted answers true (an empty one always does). What is not wanted any
/// more fails. MAIN or WORKER.
Result<std::string> contentHash(const FileBytes& file, const std::function<bool()>& wanted = {});

} // namespace zephyra
