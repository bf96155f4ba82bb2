#include "screens/sheet/panel.h"

#include "screens/draw/brush.h"

namespace zephyra {

void drawPanel(juce::Graphics& graphics, juce::Rectangle<int> panel, double scale) {
    constexpr float kDimmed = 0.6f;
    const auto corner = static_cast<float>(8.0 * scale);
    graphics.fillAll(brush::colour(palette::kGround, kDimmed));
    graphics.setColour(brush::colour(palette::kStage));
    graphics.fillRoundedRectangle(panel.toFloat(), corner);
    graphics.setColour(brush::colour(palette::kLine));
    graphics.drawRoundedRectangle(panel.toFloat(), corner, 1.0f);
}

} // namespace zephyra
