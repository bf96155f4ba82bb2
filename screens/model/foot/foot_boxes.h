// FootBoxes: where everything of the foot stands. FootTab: its drawers by name.
#pragma once

#include "screens/model/help_texts.h"
#include "screens/model/screen_context.h"

#include <array>

namespace zephyra {

/// A drawer's tab.
struct FootTab {
    Drawer drawer;
    const char* title;
    HelpId help;
};

/// In their order from the left.
inline constexpr std::array<FootTab, kDrawers> kFootTabs{{
    {Drawer::presets, "Presets", HelpId::presetsDrawer},
    {Drawer::samples, "Samples", HelpId::samplesDrawer},
    {Drawer::modulation, "Modulation", HelpId::modulationDrawer},
    {Drawer::takes, "Takes", HelpId::takesDrawer},
    {Drawer::keys, "Keys", HelpId::keysDrawer},
    {Drawer::pad, "Pad", HelpId::padDrawer},
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
