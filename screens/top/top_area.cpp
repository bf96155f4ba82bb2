#include "screens/top/top_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

TopArea::TopArea(ScreenContext& context) : ScreenArea(context) {}

void TopArea::layOut(const ScreenLayout& layout) {
    setBounds(brush::rectangle(layout.top));
}

void TopArea::frame(const FrameTime&) {}

void TopArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
