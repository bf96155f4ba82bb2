// tryRestoring: a property list as the state of a whole system.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

/// Restores the dictionary that bytes hold (nothing happens when they hold none), renders a little
/// while MIDI and tilt come in, saves, restores and saves again. Answers what was wrong: a sample
/// that is not finite, what firstFault() finds, a state that cannot be written, or one that does
/// not stay the same. Empty when all is well. The last byte chooses the component's type.
std::string tryRestoring(std::span<const std::byte> bytes);

} // namespace zephyra
