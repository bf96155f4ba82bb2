// onOneLine, inQuotes and their kin: texts from outside as the one line of a message holds them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

// Any thread but RENDER.

/// text with "?" for line breaks and other control characters (up to U+009F), and \xHH for each
/// byte that is not UTF-8, as states and what was typed may have them; a terminal would act on
/// them. Names of files are shown by shownFile (odd_bytes.h).
std::string onOneLine(std::string_view text);

/// name between double quotes; a long one is cut.
std::string inQuotes(std::string_view name);

/// names one after the other as people say them: "a", "a and b", "a, b and c"; lastly stands before
/// the last.
std::string spokenList(const std::vector<std::string>& names, const std::string& lastly = "and");

/// "1 preset", "2 presets", of one that takes an s.
std::string counted(std::size_t count, const std::string& one);

} // namespace zephyra
