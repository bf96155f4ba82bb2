// Icon: the signs of the window, as paths that are sharp at every size.
#pragma once

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

enum class Icon {
    play,
    stop,
    rewind,
    freeze,
    left, ///< chevrons
    right,
    up,
    down,
    star,
    starFull,
    dice,
    undo,
    redo,
    sliders,
    download,
    close,
};

/// Drawn in a square of 20 units: outlines of 1.5 units, filled bodies as they are. Cheap enough
/// for every paint. Message thread.
juce::Path iconPath(Icon icon);

/// As large as fits into box, in its middle.
void drawIcon(juce::Graphics& graphics, Icon icon, juce::Rectangle<float> box, juce::Colour colour);

} // namespace zephyra
