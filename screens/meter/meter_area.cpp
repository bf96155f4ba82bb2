#include "screens/meter/meter_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

MeterArea::MeterArea(ScreenContext& context) : ScreenArea(context) {}

void MeterArea::layOut(const ScreenLayout& layout) {
    setBounds(brush::rectangle(layout.meter));
}

void MeterArea::frame(const FrameTime&) {}

void MeterArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
