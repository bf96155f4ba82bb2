// isFileName: whether a text can be the name of a file in a folder, and nothing else.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zephyra {

inline constexpr std::size_t kMostFileNameBytes = 255;

/// False for an empty text, one with "/", NUL or other control characters (of Unicode, too), ".",
/// "..", more than kMostFileNameBytes, or bytes that are not UTF-8. Any thread.
bool isFileName(std::string_view text);

/// text with %XX taken for the byte it stands for; what is no such escape stays. Any thread.
std::string percentDecoded(std::string_view text);

/// text without white space at either end. Any thread.
std::string_view trimmed(std::string_view text);

} // namespace zephyra
