// Shortcut: what a key does anywhere in the window.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zephyra {

enum class Shortcut : std::uint8_t {
    playStop,
    rewind,
    freeze,
    live,
    undo,
    redo,
    load,
    zoomIn,
    zoomOut,
    settings,
};
inline constexpr std::size_t kShortcuts = 10;

/// A key as the system names it: the character in lower case, ' ' for the space bar.
struct KeyStroke {
    char32_t key = 0;
    bool command = false; ///< Ctrl, or the system's own
    bool shift = false, alt = false;
};

/// Which key does what; the first of a shortcut is the one that texts name.
struct ShortcutKey {
    Shortcut shortcut;
    KeyStroke stroke;
    const char* keys;         ///< as people read it
    bool isWhereItIs = false; ///< with Shift or without, as keyboards have the sign
};
inline constexpr std::array kShortcutKeys{
    ShortcutKey{Shortcut::playStop, {U' '}, "Space"},
    ShortcutKey{Shortcut::rewind, {U'r'}, "R"},
    ShortcutKey{Shortcut::freeze, {U'f'}, "F"},
    ShortcutKey{Shortcut::live, {U'l'}, "L"},
    ShortcutKey{Shortcut::undo, {U'z', true}, "Ctrl+Z"},
    ShortcutKey{Shortcut::redo, {U'z', true, true}, "Ctrl+Shift+Z"},
    ShortcutKey{Shortcut::redo, {U'y', true}, "Ctrl+Y"},
    ShortcutKey{Shortcut::load, {U'o', true}, "Ctrl+O"},
    ShortcutKey{Shortcut::zoomIn, {U'+', true}, "Ctrl++", true},
    ShortcutKey{Shortcut::zoomIn, {U'=', true}, "Ctrl+=", true},
    ShortcutKey{Shortcut::zoomOut, {U'-', true}, "Ctrl+-", true},
    ShortcutKey{Shortcut::settings, {U',', true}, "Ctrl+,"},
};

/// None for what the window leaves to its host. Any thread.
constexpr std::optional<Shortcut> shortcutOf(const KeyStroke& stroke) {
    if (stroke.alt) return {};
    for (const ShortcutKey& bound : kShortcutKeys)
        if (bound.stroke.key == stroke.key && bound.stroke.command == stroke.command &&
            (bound.isWhereItIs || bound.stroke.shift == stroke.shift))
            return bound.shortcut;
    return {};
}

/// "Ctrl+Z", as texts name it. Any thread.
constexpr const char* keysOf(Shortcut shortcut) {
    for (const ShortcutKey& bound : kShortcutKeys)
        if (bound.shortcut == shortcut) return bound.keys;
    return "";
}

} // namespace zephyra
