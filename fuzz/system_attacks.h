// playHands, playRenderCycles, tryPluginState: arbitrary bytes as what comes at a whole system.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

// Each builds a system once, without its demonstration sample, and answers what was wrong; empty
// when all is well. Steps, frames and time are bounded.

/// One thing after another: fingers on every surface and knob, buttons, assignments and their
/// panel, learning, MIDI, tilt, takes, tempo, states, sounds, blocks and time. Wrong are what
/// firstFault() finds, a scan that moves under a finger, a key of no amplitude or one that stays
/// down when its finger is gone, a sample that is not finite, or a state that cannot be written.
std::string playHands(std::span<const std::byte> bytes);

/// One thing after another: render cycles with any events, buffers, input, music and transport;
/// controls, buttons, sounds, states; time; allocation anew. Wrong are a cycle's status, a sample
/// that is not finite, a frame written that nobody asked for, or a notice lost. The first byte is
/// the component's type.
std::string playRenderCycles(std::span<const std::byte> bytes);

/// Hands bytes, or some presets of the bank that they are, to a plug-in's instance as its state,
/// plays a little while MIDI and tilt come in, and hands it its own state twice. Wrong are a
/// refusal of several lines or one that changes something, a sample that is not finite, what
/// firstFault() finds, and its own state refused or not staying the same. The last byte chooses the
/// kind.
std::string tryPluginState(std::span<const std::byte> bytes);

} // namespace zephyra
