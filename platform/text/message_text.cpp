#include "platform/text/message_text.h"

#include <algorithm>
#include <cstddef>

namespace zephyra {

std::string onOneLine(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isSecondBlock =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (byte < 0x20 || byte == 0x7F) text[i] = '?';
        if (isSecondBlock) text.replace(i, 2, "?");
    }
    return text;
}

std::string inQuotes(std::string_view name) {
    constexpr std::size_t kMost = 80;
    std::size_t shown = std::min(name.size(), kMost);
    if (shown < name.size()) // between characters, not within one
        while (shown > 0 && (name[shown] & 0xC0) == 0x80) --shown;
    return '"' + std::string(name.substr(0, shown)) + (shown < name.size() ? "..." : "") + '"';
}

std::string spokenList(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) list += i + 1 == names.size() ? " and " : ", ";
        list += names[i];
    }
    return list;
}

} // namespace zephyra
