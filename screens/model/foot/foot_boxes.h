// FootBoxes: where everything of the foot stands. FootTab: its drawers by name.
#pragma once

#include "screens/model/screen_context.h"

#include <array>

namespace zephyra {

/// A drawer's tab.
struct FootTab {
    Drawer drawer;
    const char* title;
    const char* help; ///< one sentence
};

/// In their order from the left.
inline constexpr std::array<FootTab, kDrawers> kFootTabs{{
    {Drawer::presets, "Presets", "Presets: search, try and choose them, bank by bank"},
    {Drawer::samples, "Samples", "Samples: the sound files at hand, to try and choose"},
    {Drawer::modulation, "Modulation", "Modulation: what moves which knob, by LFO, MIDI or hand"},
    {Drawer::takes, "Takes", "Takes: record the way of the scan, and play it again"},
    {Drawer::keys, "Keys", "Keys: play the pitch"},
    {Drawer::pad, "Pad", "Pad: play pitch and density with one finger"},
}};

/// In pixels of the foot; a tab of a drawer that is not there is empty. Plain data.
struct FootBoxes {
    std::array<Box, kDrawers> tabs;
    Box help, cpu, dropped;
    bool operator==(const FootBoxes&) const = default;
};

/// What the boxes depend on besides the window: widths of texts, pixels, as they are at most.
struct FootWidths {
    std::array<int, kDrawers> tabs{}; ///< 0: the drawer is not there
    int cpu = 0, dropped = 0;
    bool operator==(const FootWidths&) const = default;
};

FootBoxes footBoxes(const ScreenLayout& layout, const FootWidths& widths);

} // namespace zephyra
