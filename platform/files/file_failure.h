// fileFailure: one line that says of a file what cannot be done with it, and why.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace zephyra {

/// "PATH cannot be DONE: reason". Any thread but RENDER, as the others.
Failure fileFailure(const std::filesystem::path& path, const char* done, const std::string& reason);
/// The same with the system's reason, and what would be right where that helps.
Failure fileFailure(const std::filesystem::path& path, const char* done, std::error_code error);

/// An ordinary file, or what streams took by that name; a device or pipe is not even opened.
Result<FileBytes> openToRead(const std::filesystem::path& path, const StreamedFiles& streams = {});

} // namespace zephyra
