// PluginSettings: what a player chooses about an instance in a host, kept in its state.
#pragma once

#include <cstdint>

namespace zephyra {

/// What an instrument does when the last key and the pedal are up.
enum class NotesEnd : std::uint8_t {
    fade, ///< fades out by its fade time
    goOn, ///< plays on until it is stopped
};

/// When generator, interval, scan, LFO phases and take go back to where the state has them.
enum class StartAnew : std::uint8_t {
    inBounces, ///< at each transport start while the host renders offline
    always,    ///< at each transport start
    never,
};

/// Plain data. Going offline starts anew whatever startAnew says, unless it is never.
struct PluginSettings {
    NotesEnd notesEnd = NotesEnd::fade; ///< of a state that does not say: goOn
    StartAnew startAnew = StartAnew::inBounces;
    bool followsPrograms = false; ///< MIDI program changes and bank selects choose presets

    bool operator==(const PluginSettings&) const = default;
};

} // namespace zephyra
