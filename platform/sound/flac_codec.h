// encodeFlac and decodeFlac: a mono sound as FLAC bytes, for keeping audio inside a state.
#pragma once

#include "platform/text/result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zephyra {

/// A mono sound as 24-bit FLAC. FLAC holds -1..1 only, so louder sounds are scaled down first.
struct FlacSound {
    std::vector<std::byte> bytes;
    double scale = 1.0; ///< factor that restores the level, at least 1
};

struct DecodedFlac {
    std::vector<float> samples; ///< as they were encoded, to 24 bits of the loudest
    double sampleRate = 0.0;    ///< Hz
};

/// rate in Hz: a whole number to 65535, or a multiple of 10 to 655350. Fails for no samples,
/// another rate, and samples that are not finite. MAIN or WORKER.
Result<FlacSound> encodeFlac(std::span<const float> samples, double rate);

/// Fails for bytes that are no FLAC, are damaged, are not mono, or hold more than maxFrames. scale
/// must be finite and from 1 up, else it counts as 1. MAIN or WORKER.
Result<DecodedFlac> decodeFlac(std::span<const std::byte> bytes, double scale,
                               std::uint64_t maxFrames);

} // namespace zephyra
