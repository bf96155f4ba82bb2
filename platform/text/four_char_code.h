// FourCharCode: the four-character codes that name file types, formats and errors.
#pragma once

#include <cstdint>
#include <string>

namespace zephyra {

using FourCharCode = std::uint32_t;
using OSStatus = std::int32_t; ///< 0, or an error code, most of them four characters

/// fourCC("WAVE"): the first character in the most significant byte.
constexpr FourCharCode fourCC(const char (&text)[5]) noexcept {
    FourCharCode code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<FourCharCode>(static_cast<unsigned char>(text[i]));
    return code;
}

/// The four characters of code, most significant byte first; unprintable ones as '?'.
inline std::string fourCharText(FourCharCode code) {
    std::string text(4, '?');
    for (int i = 0; i < 4; ++i) {
        const auto byte = static_cast<unsigned char>(code >> (24 - 8 * i));
        if (byte >= 0x20 && byte < 0x7f)
            text[static_cast<std::size_t>(i)] = static_cast<char>(byte);
    }
    return text;
}

} // namespace zephyra
