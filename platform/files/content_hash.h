// contentHash: a fingerprint that finds a sample again wherever it was moved.
#pragma once

#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

namespace zephyra {

/// The XXH3 hash of 128 bits as 32 lower-case hexadecimal digits. Any thread but RENDER.
std::string contentHash(std::span<const std::byte> bytes);

/// The same of a file's bytes, as many as it has when it is opened, read piece by piece as long as
/// wanted answers true (an empty one always does). What is not wanted any more fails. MAIN or
/// WORKER.
Result<std::string> contentHashOfFile(const std::filesystem::path& path,
                                      const std::function<bool()>& wanted = {});

} // namespace zephyra
