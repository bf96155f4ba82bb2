#include "screens/strip/strip_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

StripArea::StripArea(ScreenContext& context) : ScreenArea(context) {}

void StripArea::layOut(const ScreenLayout& layout) {
    setBounds(0, layout.spectrum.y, layout.window.width, layout.spectrum.height);
}

void StripArea::frame(const FrameTime&) {}

void StripArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
