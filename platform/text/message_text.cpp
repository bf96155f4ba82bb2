#include "platform/text/message_text.h"

#include "platform/text/characters.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>

namespace zephyra {

std::string onOneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const Character next = firstCharacter(text);
        const std::string_view bytes = text.substr(0, next.bytes);
        line += next.isControl() ? "?" : next.code < 0 ? typedFromBytes(bytes) : std::string(bytes);
        text.remove_prefix(next.bytes);
    }
    return line;
}

std::string inQuotes(std::string_view name) {
    constexpr std::size_t kMost = 80;
    std::size_t shown = std::min(name.size(), kMost);
    if (shown < name.size()) // between characters, not within one
        while (shown > 0 && (name[shown] & 0xC0) == 0x80) --shown;
    return '"' + std::string(name.substr(0, shown)) + (shown < name.size() ? "..." : "") + '"';
}

std::string spokenList(const std::vector<std::string>& names, const std::string& lastly) {
    std::string list;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) list += i + 1 == names.size() ? " " + lastly + " " : ", ";
        list += names[i];
    }
    return list;
}

std::string counted(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

} // namespace zephyra
