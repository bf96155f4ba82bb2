// readSmallFile: a whole file that is meant to be short.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace zephyra {

inline constexpr std::size_t kMostSmallFileBytes = std::size_t{16} << 20;

/// The bytes of the file at path, or of what streams took by that name. Fails with one line for
/// what cannot be read, is no regular file, or is larger than kMostSmallFileBytes.
Result<std::string> readSmallFile(const std::filesystem::path& path,
                                  const StreamedFiles& streams = {});

} // namespace zephyra
