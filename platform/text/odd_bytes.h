// typedFromBytes and its kin: names of files, which may hold any bytes, as text.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zephyra {

/// bytes with \xHH, as bash's $'...' takes it, for each byte of what is not plain in it: control
/// characters (of Unicode, too) and what is not UTF-8; and \x5C for a backslash that stands there
/// as if in such an escape, so that no two names look the same. Most come out as they are. Any
/// thread but RENDER.
std::string typedFromBytes(std::string_view bytes);

/// What typedFromBytes made typed from; escapes are taken in either case. Any thread but RENDER.
std::string bytesFromTyped(std::string_view typed);

/// A file's path as messages, logs and lists show it: typedFromBytes of it. Any thread but RENDER.
std::string shownFile(const std::filesystem::path& file);

} // namespace zephyra
