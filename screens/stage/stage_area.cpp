#include "screens/stage/stage_area.h"

#include "screens/draw/brush.h"

namespace zephyra {

StageArea::StageArea(ScreenContext& context) : ScreenArea(context) {}

void StageArea::layOut(const ScreenLayout& layout) {
    setBounds(layout.stage.x, layout.stage.y, layout.stage.width,
              layout.stage.height + layout.ruler.height);
}

void StageArea::frame(const FrameTime&) {}

void StageArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kStage));
}

} // namespace zephyra
