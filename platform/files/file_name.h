// isFileName and its kin: texts as names of files in a folder.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace zephyra {

inline constexpr std::size_t kMostFileNameBytes = 255;

/// Whether text can be the name of a file in a folder, and nothing else. False for an empty text,
/// one with "/", NUL or other control characters (of Unicode, too), ".",
/// "..", more than kMostFileNameBytes, or bytes that are not UTF-8. Any thread.
bool isFileName(std::string_view text);

/// The same where the extension is not shown: without it, too, text must be such a name. Any
/// thread.
bool isFileNameWithoutExtension(std::string_view text);

/// text with %XX taken for the byte it stands for; what is no such escape stays. Any thread.
std::string percentDecoded(std::string_view text);

/// text without white space at either end. Any thread.
std::string_view trimmed(std::string_view text);

/// "base N", without an extension. N is one more than the largest whole number that follows base
/// (and blanks) in the name of an entry of folder, at most that of std::int64_t; 1 when there is
/// none, also for a folder that cannot be read. A number counts up to the next base in the name.
/// MAIN or WORKER.
std::string getIncrementalNameFromDocumentsFolder(const std::filesystem::path& folder,
                                                  const std::string& base);

} // namespace zephyra
