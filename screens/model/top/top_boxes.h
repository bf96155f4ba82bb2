// TopBoxes: where everything of the top stands.
#pragma once

#include "screens/model/screen_layout.h"

#include <array>

namespace zephyra {

/// What the top's boxes depend on besides the window. Widths are of texts, in pixels.
struct TopWishes {
    int presetWidth = 0, sampleWidth = 0;
    bool showsClear = false; ///< beside LIVE
    bool showsLocate = false;
    bool operator==(const TopWishes&) const = default;
};

/// In pixels of the top; those that are not shown are empty. Plain data.
struct TopBoxes {
    Box play, rewind, freeze, live, clear;
    Box previous, next, preset;
    Box sample, locate; ///< the compact step has the sample's name on the stage
    Box random, undo, redo;
    Box compare, compareA, compareB; ///< the cell around both, and they
    Box tempo, bar, settings;
    std::array<int, 4> lines{}; ///< x of what parts the groups; 0 for none
};

TopBoxes topBoxes(const ScreenLayout& layout, const TopWishes& wishes);

} // namespace zephyra
