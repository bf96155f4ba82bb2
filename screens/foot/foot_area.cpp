#include "screens/foot/foot_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

FootArea::FootArea(ScreenContext& context) : ScreenArea(context) {}

void FootArea::layOut(const ScreenLayout& layout) {
    setBounds(brush::rectangle(layout.foot));
}

void FootArea::frame(const FrameTime&) {}

void FootArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
