// currentSeconds: the time of day in seconds, which seeds the grain generator.
#pragma once

#include <cstdint>

namespace zephyra {

using SecondsSource = std::uint32_t (*)();

/// Whole seconds since 1970, modulo 2^32. Any thread but RENDER.
std::uint32_t currentSeconds() noexcept;

/// Replaces the clock (null brings the system's back) and returns the source set before: a fixed
/// one makes a test or a render repeatable. MAIN or OFF.
SecondsSource setSecondsSource(SecondsSource source) noexcept;

} // namespace zephyra
