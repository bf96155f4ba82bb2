// PluginSettings: what a player chooses about an instance in a host, kept in its state.
#pragma once

#include <cstdint>

namespace zephyra {

/// What a key of an instrument does besides tuning it.
enum class NotesBegin : std::uint8_t {
    start, ///< the first one starts it
    tune,  ///< nothing: Play starts it
};

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
    NotesBegin notesBegin = NotesBegin::start;
    /// Sounds of up to so many seconds go along in the state; 0 for none.
    double embedSeconds = 60.0;

    bool operator==(const PluginSettings&) const = default;
};

} // namespace zephyra
