// Shortcut: what a key does anywhere in the window.
#pragma once

#include <cstdint>
#include <optional>

namespace zephyra {

enum class Shortcut : std::uint8_t {
    playStop, ///< Space
    rewind,   ///< R
    freeze,   ///< F
    live,     ///< L
    undo,     ///< Ctrl+Z
    redo,     ///< Ctrl+Shift+Z, Ctrl+Y
    load,     ///< Ctrl+O
    zoomIn,   ///< Ctrl++
    zoomOut,  ///< Ctrl+-
};

/// A key as the system names it: the character in lower case, ' ' for the space bar.
struct KeyStroke {
    char32_t key = 0;
    bool command = false; ///< Ctrl, or the system's own
    bool shift = false, alt = false;
};

/// None for what the window leaves to its host. Any thread.
constexpr std::optional<Shortcut> shortcutOf(const KeyStroke& stroke) {
    if (stroke.alt) return {};
    if (stroke.command) {
        switch (stroke.key) {
        case U'z':
            return stroke.shift ? Shortcut::redo : Shortcut::undo;
        case U'y':
            return Shortcut::redo;
        case U'o':
            return Shortcut::load;
        case U'+':
        case U'=':
            return Shortcut::zoomIn;
        case U'-':
            return Shortcut::zoomOut;
        default:
            return {};
        }
    }
    if (stroke.shift) return {};
    switch (stroke.key) {
    case U' ':
        return Shortcut::playStop;
    case U'r':
        return Shortcut::rewind;
    case U'f':
        return Shortcut::freeze;
    case U'l':
        return Shortcut::live;
    default:
        return {};
    }
}

} // namespace zephyra
