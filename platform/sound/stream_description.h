// StreamDescription: how samples lie in a stream or file.
#pragma once

#include "platform/text/four_char_code.h"

#include <cstdint>

namespace zephyra {

/// Bits of StreamDescription::formatFlags for the format 'lpcm'.
namespace linear_flags {
inline constexpr std::uint32_t isFloat = 1;
inline constexpr std::uint32_t isBigEndian = 2;
inline constexpr std::uint32_t isSignedInteger = 4;
inline constexpr std::uint32_t isPacked = 8;
inline constexpr std::uint32_t isNonInterleaved = 32;
} // namespace linear_flags

/// A plain record; 0 stands for "does not apply" (compressed formats have no bytes per frame).
struct StreamDescription {
    double sampleRate = 0.0;     ///< Hz
    FourCharCode formatCode = 0; ///< 'lpcm', 'ima4', 'aac '
    std::uint32_t formatFlags = 0;
    std::uint32_t bytesPerPacket = 0;
    std::uint32_t framesPerPacket = 0;
    std::uint32_t bytesPerFrame = 0;
    std::uint32_t channelsPerFrame = 0;
    std::uint32_t bitsPerChannel = 0;

    bool operator==(const StreamDescription&) const = default;
};

} // namespace zephyra
