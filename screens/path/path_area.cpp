#include "screens/path/path_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

PathArea::PathArea(ScreenContext& context) : ScreenArea(context) {}

void PathArea::layOut(const ScreenLayout& layout) {
    setBounds(brush::rectangle(layout.path));
}

void PathArea::frame(const FrameTime&) {}

void PathArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
