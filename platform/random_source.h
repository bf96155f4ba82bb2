// systemRandom32: the system's random source, for the Random envelope and random gestures.
#pragma once

#include <cstdint>
#include <functional>

namespace zephyra {

using RandomSource = std::function<std::uint32_t()>;

/// 32 random bits: from the operating system's cryptographic generator, unless a source was set.
/// MAIN or WORKER, never RENDER.
std::uint32_t systemRandom32();

/// Draws from source from now on; an empty one brings the system's generator back. Returns the
/// source set before. A seeded source makes offline renders repeatable. MAIN or OFF.
RandomSource setRandomSource(RandomSource source);

} // namespace zephyra
