// onOneLine: a text from outside as one line of a message can hold it.
#pragma once

#include <cstddef>
#include <string>

namespace zephyra {

/// text with "?" for line breaks and other control characters (up to U+009F), as file names and
/// states may have them; a terminal would act on them. Any thread but RENDER.
inline std::string onOneLine(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isSecondBlock =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (byte < 0x20 || byte == 0x7F) text[i] = '?';
        if (isSecondBlock) text.replace(i, 2, "?");
    }
    return text;
}

} // namespace zephyra
