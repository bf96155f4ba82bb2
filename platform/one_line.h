// onOneLine: a text from outside as one line of a message can hold it.
#pragma once

#include <algorithm>
#include <string>
#include <utility>

namespace zephyra {

/// text with "?" for line breaks and other control characters, as file names and states may have
/// them. Any thread but RENDER.
inline std::string onOneLine(std::string text) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    std::ranges::replace_if(text, isControl, '?');
    return text;
}

} // namespace zephyra
