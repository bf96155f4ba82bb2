#include "screens/draw/switch_pill.h"

#include "screens/draw/brush.h"

namespace zephyra {

using namespace palette;

void drawSwitchPill(juce::Graphics& graphics, juce::Rectangle<float> box, const SwitchPill& pill) {
    const float line = box.getHeight() / 9, corner = box.getHeight() / 2;
    const juce::Colour off = brush::colour(pill.isHovered ? kBright : kFaint);
    graphics.setColour(pill.isOn ? brush::colour(pill.isHovered ? kBright : kArc) : off);
    if (pill.isOn)
        graphics.fillRoundedRectangle(box, corner);
    else
        graphics.drawRoundedRectangle(box.reduced(line / 2), corner - line / 2, line);
    const float dot = box.getHeight() - 5 * line;
    const float x = pill.isOn ? box.getRight() - corner : box.getX() + corner;
    graphics.setColour(pill.isOn ? brush::colour(kInk) : off);
    graphics.fillEllipse(juce::Rectangle(dot, dot).withCentre({x, box.getCentreY()}));
}

} // namespace zephyra
