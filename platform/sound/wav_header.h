// wavHeader: what stands before the samples of a WAV, where nobody can come back to correct it.
#pragma once

#include <cstdint>
#include <string>

namespace zephyra {

enum class WavSamples { shorts, floats };

/// The same bytes that a file of that many frames has (AudioFile); sampleRate is rounded to whole
/// Hz. Empty for more than the 4 gigabytes that its sizes can count. Any thread but RENDER.
std::string wavHeader(WavSamples samples, double sampleRate, std::uint32_t channels,
                      std::uint64_t frames);

} // namespace zephyra
