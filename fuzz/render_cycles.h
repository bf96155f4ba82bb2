// playRenderCycles: arbitrary bytes as what a host, its user and its threads do to an audio unit.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

/// Builds the system once, without its demonstration sample, and does one thing after another:
/// render cycles with any events, buffers, input, music and transport; controls, buttons, sounds,
/// states; time; allocation anew. The number of steps and frames is bounded. Answers what was wrong
/// with a cycle: its status, a sample that is not finite, a frame written that nobody asked for, or
/// a notice lost. Empty when all is well. The first byte is the component's type.
std::string playRenderCycles(std::span<const std::byte> bytes);

} // namespace zephyra
