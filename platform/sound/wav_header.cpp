#include "platform/sound/wav_header.h"

#include <cmath>
#include <limits>

namespace zephyra {

namespace {

std::string littleEndian(std::uint64_t value, int bytes) {
    std::string field;
    for (int i = 0; i < bytes; ++i, value >>= 8) field += static_cast<char>(value & 0xFF);
    return field;
}

std::string chunk(const char* name, const std::string& content) {
    return name + littleEndian(content.size(), 4) + content;
}

} // namespace

std::string wavHeader(WavSamples samples, double sampleRate, std::uint32_t channels,
                      std::uint64_t frames) {
    constexpr std::uint64_t kMostBytes = std::numeric_limits<std::uint32_t>::max() - 4096ull;
    const bool isFloat = samples == WavSamples::floats;
    const std::uint64_t frameBytes = std::uint64_t{channels} * (isFloat ? 4 : 2);
    if (frames > kMostBytes / frameBytes) return {};
    const auto rate = static_cast<std::uint64_t>(std::lround(sampleRate));
    std::string chunks =
        chunk("fmt ", littleEndian(isFloat ? 3 : 1, 2) + littleEndian(channels, 2) +
                          littleEndian(rate, 4) + littleEndian(rate * frameBytes, 4) +
                          littleEndian(frameBytes, 2) + littleEndian(isFloat ? 32 : 16, 2));
    if (isFloat) // the second where a file that is written in place has room for peaks
        chunks += chunk("fact", littleEndian(frames, 4)) +
                  chunk("PAD ", std::string(8 + std::size_t{8} * channels, '\0'));
    chunks += "data" + littleEndian(frames * frameBytes, 4);
    return "RIFF" + littleEndian(4 + chunks.size() + frames * frameBytes, 4) + "WAVE" + chunks;
}

} // namespace zephyra
