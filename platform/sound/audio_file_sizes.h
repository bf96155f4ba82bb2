// correctSizes: sets the sizes in a sound file's header right where the encoding library errs.
#pragma once

#include "platform/text/four_char_code.h"

#include <cstdint>

namespace zephyra {

class WrittenFile;

inline constexpr std::uint64_t kFramesPerIma4Packet = 64;

/// To be called for the complete file of each type, before it is closed; others than these three
/// are right already. libsndfile (1.2.0) pads an odd number of data bytes in 'AIFF' and 'caff' and
/// counts the pad byte as data: 8-bit files gain a sample, others get a size that ends inside a
/// frame. 'caff' knows no pad, so it is cut off. In 'AIFC' with two channels it counts half the
/// packets; the count is of packets there, not of frames, as other programs read it. frames and
/// dataBytes are the true ones. Returns 0, or a code when the file cannot be read or written. MAIN
/// or WORKER.
OSStatus correctSizes(WrittenFile& file, FourCharCode type, std::uint64_t frames,
                      std::uint64_t dataBytes);

} // namespace zephyra
