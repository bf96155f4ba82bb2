// playHands: arbitrary bytes as what fingers, MIDI and tilt do to a whole system.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

/// Builds the system once and does one thing after another: fingers on every surface and knob,
/// buttons, assignments and their panel, learning, MIDI, tilt, takes, tempo, states, sounds, blocks
/// and time. Steps and frames are bounded. Answers what was wrong: what firstFault() finds, a scan
/// that moves under a finger, a key that goes up or down twice or stays down when its finger is
/// gone, a sample that is not finite, or a state that cannot be written. Empty when all is well.
std::string playHands(std::span<const std::byte> bytes);

} // namespace zephyra
